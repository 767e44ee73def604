// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <filesystem>

namespace gitkit {

/// Whether a line of a regular file begins as git marks a conflict. False when the file cannot be read. Any thread;
/// never waits for a pipe or a device.
bool holdsConflictMarkers(const std::filesystem::path& file);

} // namespace gitkit
