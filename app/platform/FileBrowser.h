// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <filesystem>
#include <functional>
#include <string>
#include <vector>

namespace plovik {

/// Shows `files`, absolute paths, in the desktop's file browser, selected where it can do that; otherwise opens the
/// folder of the first. Returns at once; `failed` is called on the main thread with a sentence for the user when
/// nothing could be shown. Main thread only.
void revealFiles(const std::vector<std::filesystem::path>& files, std::function<void(std::string problem)> failed);

} // namespace plovik
