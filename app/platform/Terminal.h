// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <filesystem>
#include <functional>
#include <string>

namespace plovik {

/// Opens a terminal in a folder: the one that $TERMINAL names, the desktop's, or the first that is installed. Returns at
/// once; `failed` is called with a sentence for the user when there is none. Main thread only.
void openTerminal(const std::filesystem::path& folder, const std::function<void(std::string problem)>& failed);

} // namespace plovik
