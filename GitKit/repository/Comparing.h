// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "GitKit/records/CommitFile.h"
#include "GitKit/records/Comparison.h"
#include "GitKit/records/ParsedDiff.h"

#include <cstddef>
#include <string>
#include <vector>

namespace gitkit {

class GitRepository;

// What lies between two commits, given by full hashes. Any thread; these block and throw as the methods of GitRepository
// do. What differs in files is told by TreeChanges.h.

/// Returns the best common ancestors: usually one, several after merges in both directions, none of unrelated histories.
std::vector<std::string> mergeBases(const GitRepository& repo, const std::string& one, const std::string& other);

/// Returns the newest `most` commits that only one of both has.
std::vector<CommitApart> commitsApart(const GitRepository& repo, const std::string& first, const std::string& second,
                                      std::size_t most);

/// Returns the files of a merge that differ from those of each parent.
std::vector<CommitFile> mergedFiles(const GitRepository& repo, const std::string& merge);
/// Returns the diff of such a file against all parents at once.
ParsedDiff mergeDiff(const GitRepository& repo, const std::string& merge, const CommitFile& file, DiffReading reading);

} // namespace gitkit
