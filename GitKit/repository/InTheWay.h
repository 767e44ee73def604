// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "GitKit/records/InTheWay.h"

#include <filesystem>
#include <optional>
#include <string>
#include <vector>

namespace gitkit {

class GitRepository;

// Files that git does not know and that stand where it is about to write. They block and throw as the methods of
// GitRepository do.

/// Returns the file, or the folder of files, that would have to go for a file at `path`; nullopt when nothing would.
std::optional<std::string> standingInPlaceOf(const std::filesystem::path& root, const std::string& path);

enum class Unknown { untracked, ignored, both };

/// Returns the files of that kind at these paths and in folders of these names.
std::vector<std::string> unknownFiles(const GitRepository& repo, Unknown kind, const std::vector<std::string>& paths);

/// Finds what moving the working tree from one tree to another would overwrite or delete. A file in both trees that was
/// changed is not among it: git refuses to overwrite it.
InTheWay inTheWay(const GitRepository& repo, const std::string& fromTree, const std::string& toTree);

/// The same for the files that a command lists, each ended by a zero byte; nothing where the command fails.
InTheWay standingAt(const GitRepository& repo, const std::vector<std::string>& command);

// The same for what git is about to do. `ref`, `hash` and `commit` are full names or hashes. Nothing is in the way of what
// git will refuse in words of its own.

/// The same where these paths are written.
InTheWay inTheWayOf(const GitRepository& repo, const std::vector<std::string>& paths);
InTheWay inTheWayOfCheckout(const GitRepository& repo, const std::string& ref);
InTheWay inTheWayOfMerge(const GitRepository& repo, const std::string& ref);
InTheWay inTheWayOfStash(const GitRepository& repo, const std::string& commit);

/// Moves files away into `folder`, with their paths, bytes, modes and times; nothing is copied where both are on one file
/// system. Throws GitError when one cannot be moved; those before it are back in their places then.
void moveAside(const GitRepository& repo, const std::vector<std::string>& paths, const std::filesystem::path& folder);

/// Moves files back from there. Returns those whose places are taken, or that are not there any more.
std::vector<std::string> moveBack(const GitRepository& repo, const std::vector<std::string>& paths,
                                  const std::filesystem::path& folder);

} // namespace gitkit
