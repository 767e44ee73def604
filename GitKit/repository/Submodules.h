// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "GitKit/records/Submodule.h"

#include <filesystem>
#include <string>
#include <vector>

namespace gitkit {

class GitRepository;

// Repositories inside a working tree. Any thread; these block and throw as the methods of GitRepository do.

/// Returns whether there may be submodules: a file .gitmodules, or repositories of some. Runs nothing.
bool mayHaveSubmodules(const std::filesystem::path& root);

/// Returns them by path. Runs nothing and returns an empty list where mayHaveSubmodules() is false.
std::vector<Submodule> submodules(const GitRepository& repo);

/// Returns the commits that updating these submodules would leave on no branch, remote branch or tag of theirs.
std::vector<StrayCommits> strayCommits(const GitRepository& repo, const std::vector<Submodule>& submodules);

/// Makes a branch for such commits in each submodule.
void keepStrayCommits(const GitRepository& repo, const std::vector<StrayCommits>& commits);

/// Initialises submodules that are not, and checks out the recorded commits, which are fetched where they are missing.
/// Never by force: git refuses where changes would be lost. Goes on inside those alone that are initialised by it.
void updateSubmodules(const GitRepository& repo, const std::vector<std::string>& paths);

/// Lists the commits between two that are recorded of a submodule. Empty hashes stand for none.
SubmoduleLog submoduleLog(const GitRepository& repo, const std::string& path, const std::string& from,
                          const std::string& to);

} // namespace gitkit
