// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <filesystem>
#include <functional>
#include <string>
#include <vector>

namespace plovik {

/// Starts git in a folder for a program of its own, which goes on when this one ends. Paths among the arguments are taken
/// literally. `failed` is called with a sentence for the user when it cannot be started. Main thread only.
void startGitDetached(const std::vector<std::string>& arguments, const std::filesystem::path& folder,
                      const std::function<void(std::string problem)>& failed);

} // namespace plovik
