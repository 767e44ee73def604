// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "GitKit/repository/KeptList.h"

#include <map>
#include <string>
#include <vector>

namespace gitkit {

class GitRepository;

// The index entries of kept files. Both functions block and throw as the methods of GitRepository do; callers keep the
// writers of one repository apart.

/// By path, as `ls-files -s` prints them.
using IndexEntries = std::map<std::string, std::vector<std::string>>;

/// Returns the index entries of each of these files. A file without entries has no key.
IndexEntries indexEntriesOf(const GitRepository& repo, const std::vector<KeptFile>& files);

/// Gives a file, whose index entries are `now`, the entries that it had before. Returns false when git no longer has the
/// objects that they name.
bool restoreEntries(const GitRepository& repo, const KeptFile& file, const std::vector<std::string>& now);

} // namespace gitkit
