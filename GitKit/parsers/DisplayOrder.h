// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "GitKit/records/ChangeCounts.h"
#include "GitKit/records/CommitDetail.h"
#include "GitKit/records/FileChange.h"
#include "GitKit/records/GitRef.h"

#include <string>
#include <string_view>
#include <vector>

namespace gitkit {

/// Appends a key for `path`. Keys compare byte by byte in the order of a file browser: folder by folder, with upper
/// case, lower case and accented letters alike and runs of digits as numbers.
void appendDisplayKey(std::string& keys, std::string_view path);

/// Sorts `files` by their paths as a file browser does, and paths that are equal there by their bytes. Stable. Fast
/// where git's order is the same.
void sortForDisplay(std::vector<FileChange>& files);
void sortForDisplay(std::vector<CommitFile>& files);
void sortForDisplay(std::vector<ChangeCounts>& files);

/// Sorts branches, remote branches and tags, in this order, by their names, with runs of digits as numbers. The newest
/// version comes first among the tags.
void sortForDisplay(std::vector<GitRef>& refs);

} // namespace gitkit
