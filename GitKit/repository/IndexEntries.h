// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "GitKit/runner/GitRunner.h"

#include <string>
#include <string_view>
#include <vector>

namespace gitkit {

/// What the index has at a path. A conflicted path has several, one a stage.
struct IndexEntry {
    std::string mode; ///< in octal, as git prints it
    std::string hash;
    std::string path; ///< as bytes

    bool isLink() const { return mode == "120000"; }
    bool isSubmodule() const { return mode == "160000"; }
    bool isExecutable() const { return mode == "100755"; }
};

/// Reads what `git ls-files -s -z` prints.
std::vector<IndexEntry> parseIndexEntries(std::string_view listed);

/// The entries at exactly this path, and those in a folder of this name, which cannot be there at the same time unless
/// the path is in conflict. Throws as GitRunner::bytes() does.
struct EntriesAtPath {
    std::vector<IndexEntry> own;
    std::vector<IndexEntry> inside;
};
EntriesAtPath indexEntries(const GitRunner& runner, const std::string& path, const RunOptions& options = {});

} // namespace gitkit
