// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string>

namespace gitkit {

class GitRepository;

/// A file as a commit has it.
struct FileVersion {
    std::string revision; ///< full hash
    std::string path;     ///< as bytes

    bool operator==(const FileVersion&) const = default;
};

// Any thread; these block and throw as the methods of GitRepository do.

/// Returns the bytes that the file gets in a working tree.
std::string fileBytes(const GitRepository& repo, const FileVersion& version);

/// Writes the file into the working tree, and leaves the index alone. Throws where a folder stands in its place, or a file
/// in that of a folder above it; the caller keeps what else is written over.
void takeFile(const GitRepository& repo, const FileVersion& version);

} // namespace gitkit
