// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <filesystem>
#include <string>
#include <utility>
#include <vector>

namespace gitkit {

class GitRepository;

// What git remembers an unfinished operation by: files of its own folder, and refs beside HEAD. Blocking; throws as the
// methods of GitRepository do. `gitDirectory` is what gitDirectories() calls the working tree's own.

struct OperationFiles {
    std::string tree; ///< of the files, under their names in the git directory; empty when there are none
    std::vector<std::pair<std::string, std::string>> refs; ///< names and hashes

    bool operator==(const OperationFiles&) const = default;
};

/// Keeps them as they are now.
OperationFiles operationFiles(const GitRepository& repo, const std::filesystem::path& gitDirectory);

// Both make git remember `to` and nothing else. They are apart because some repositories let no ref be written while
// others are locked. Throw GitError when something cannot be written.

void restoreOperationFiles(const GitRepository& repo, const std::filesystem::path& gitDirectory,
                           const OperationFiles& to);
void restoreOperationRefs(const GitRepository& repo, const std::filesystem::path& gitDirectory,
                          const OperationFiles& to);

} // namespace gitkit
