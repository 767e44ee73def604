// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "GitKit/repository/KeptList.h"

#include <filesystem>
#include <map>
#include <string>
#include <vector>

namespace gitkit {

class GitRepository;

// The index entries of kept files. All functions block and throw as the methods of GitRepository do; callers keep the
// writers of one repository apart. `folder` is the one that the files are kept in.

/// By path, as `ls-files -s` prints them.
using IndexEntries = std::map<std::string, std::vector<std::string>>;

/// Returns the index entries of each of these files. A file without entries has no key.
IndexEntries indexEntriesOf(const GitRepository& repo, const std::vector<KeptFile>& files);

/// Keeps copies of the staged contents that were taken from the index, because in time git removes what nothing leads to.
/// Large ones are left to git.
void keepStaged(const GitRepository& repo, const std::filesystem::path& folder, const std::vector<KeptFile>& files);

/// The place of such a copy; nothing is there for a file without one.
std::filesystem::path stagedCopy(const std::filesystem::path& folder, const KeptFile& file);

/// Gives a file, whose index entries are `now`, the entries that it had before. Returns false when the contents that they
/// name are gone.
bool restoreEntries(const GitRepository& repo, const std::filesystem::path& folder, const KeptFile& file,
                    const std::vector<std::string>& now);

} // namespace gitkit
