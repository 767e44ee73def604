// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <filesystem>
#include <string_view>

namespace gitkit {

/// Whether a line of a regular file begins as git marks a conflict. False when the file cannot be read. Any thread;
/// never waits for a pipe or a device.
bool holdsConflictMarkers(const std::filesystem::path& file);

/// Whether a line of a text begins so.
bool hasConflictMarkers(std::string_view text);

} // namespace gitkit
