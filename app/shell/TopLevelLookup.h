// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <filesystem>

namespace plovik {

/// Begins to look for the working tree of a folder on a thread of its own. Called before the toolkit starts, it is done
/// when the toolkit is.
void beginTopLevelLookup(const std::filesystem::path& folder);

/// The top level of the working tree that holds `folder`: what beginTopLevelLookup() found, once, or else git's answer
/// now. Blocks, and throws, as GitRepository::topLevel does.
std::filesystem::path topLevelOf(const std::filesystem::path& folder);

} // namespace plovik
