// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "GitKit/records/GitDirectories.h"

#include <string>
#include <vector>

namespace gitkit {

class GitRepository;

// Which folders of a working tree hold git's own data, and which git ignores. Any thread; these block and throw as the
// methods of GitRepository do. Folders are relative to the root and have no final slash.

GitDirectories gitDirectories(const GitRepository& repo);

/// The paths of the submodules in the index.
std::vector<std::string> submodulePaths(const GitRepository& repo);

/// Returns whether a repository's root is a bare repository's own folder. Looks at the disk and runs no git.
bool isBare(const std::filesystem::path& root);

/// The folders whose whole content git ignores, without the folders inside them.
std::vector<std::string> ignoredFolders(const GitRepository& repo);

/// Those of `folders` that git ignores. Folders inside submodules never are.
std::vector<std::string> ignoredAmong(const GitRepository& repo, const std::vector<std::string>& folders);

} // namespace gitkit
