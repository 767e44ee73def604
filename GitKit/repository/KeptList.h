// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "GitKit/repository/FileCopies.h"

#include <filesystem>
#include <string>
#include <vector>

namespace gitkit {

/// One file that is kept: how it stood before and after what took it. Beside the list, the folder holds a copy of the
/// file before, of this name, one of the file after, with ".after" appended, and one of the content that was staged before,
/// with ".staged", unless they are too large.
struct KeptFile {
    std::string path;
    std::string copy;
    FileKind before = FileKind::none;
    FileKind after = FileKind::none;
    std::string afterIdentity;              ///< empty when it is not known
    std::vector<std::string> entriesBefore; ///< of the index, as `ls-files -s` prints them
    std::vector<std::string> entriesAfter;  ///< likewise
    bool isNew = false;                     ///< HEAD has no such file
    bool isIntended = false;                ///< the index had it as an intention (add -N)
};

/// Reads the list of a folder. Returns an empty list when there is none, or none that can be read.
std::vector<KeptFile> readKeptList(const std::filesystem::path& folder);

/// Writes the list of a folder in one step. Throws GitError.
void writeKeptList(const std::filesystem::path& folder, const std::vector<KeptFile>& files);

} // namespace gitkit
