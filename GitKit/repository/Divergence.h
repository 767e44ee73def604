// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "GitKit/records/Divergence.h"

#include <filesystem>
#include <string>
#include <string_view>

namespace gitkit {

class GitRepository;

// Counting the commits between two others, and what besides the two changes the answer. Any thread; these block.

/// Walks the history of both commits, which takes a second or more where their histories have been apart for long.
/// Throws as the methods of GitRepository do.
Divergence countDivergence(const GitRepository& repo, const CommitPair& pair);

/// Returns a text that differs whenever another part of the history is hidden or replaced: by a shallow clone, by
/// grafts, or by the refs that `replacements` lists (RefListing.h). Empty when nothing is. `commonDirectory` is what
/// gitDirectories() calls so.
std::string historyCuts(const std::filesystem::path& commonDirectory, std::string_view replacements);

} // namespace gitkit
