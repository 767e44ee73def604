// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <filesystem>

namespace plovik {

/// Returns the application's folder for what can be made again, which may not exist yet; empty when there is no place for
/// it. Any thread.
std::filesystem::path cacheFolder();

} // namespace plovik
