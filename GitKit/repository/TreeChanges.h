// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "GitKit/records/ChangeCounts.h"
#include "GitKit/records/CommitFile.h"
#include "GitKit/records/TreePair.h"

#include <string>
#include <vector>

namespace gitkit {

class GitRepository;

// What differs between two trees, given by the hashes of trees or of commits. Any thread; these block and throw as the
// methods of GitRepository do. GitRepository::treeDiff() reads the diff of one file.

/// Whether a file that was moved is one renamed file, or one that is gone and one that is new.
enum class Renames { paired, apart };

/// Returns the files that differ, in git's order.
std::vector<CommitFile> changedFiles(const GitRepository& repo, const TreePair& trees, Renames renames);

/// Returns how many lines each of these files gains and loses, in the same order. Costs what all the diffs cost.
std::vector<ChangeCounts> changeCounts(const GitRepository& repo, const TreePair& trees, Renames renames);

/// Returns the arguments of `git diff` that name both sides.
std::vector<std::string> treeArguments(const TreePair& trees);

/// Returns the hash of the tree without files. Nothing is written.
std::string emptyTreeHash(const GitRepository& repo);

} // namespace gitkit
