// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "GitKit/records/PartialChange.h"

#include <optional>
#include <string>

namespace gitkit {

class GitRepository;

/// What a file of the working tree is to become.
struct FileContent {
    std::string bytes; ///< of a symbolic link: its target
    bool isLink = false;
    std::optional<bool> isExecutable; ///< absent when the file's mode stays as it is
};

/// Returns what a file of the working tree is without a change, which must be a reverse one; nullopt when there is no
/// such file then. Writes nothing in the working tree. Git's conversions of line ends and its filters are applied as
/// for the diff that the change is of. Throws when the file is no longer what the change was made from.
std::optional<FileContent> reversedFile(const GitRepository& repo, const PartialChange& change);

} // namespace gitkit
