// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string>
#include <vector>

namespace gitkit {

class GitRepository;

// What can be found by its name. Any thread; these block and throw GitError.

enum class RefOrder {
    newest, ///< by the dates of what they point to, which git opens each of them for
    name
};
/// Returns the full names of all branches, remote branches and tags, but for the HEADs of remotes.
std::vector<std::string> refNames(const GitRepository& repo, RefOrder order);

/// Returns the paths of the files in the index, as bytes in git's order, each once.
std::vector<std::string> trackedPaths(const GitRepository& repo);

} // namespace gitkit
