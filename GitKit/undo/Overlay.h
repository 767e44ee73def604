// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <filesystem>
#include <string>
#include <vector>

namespace gitkit {

class GitRepository;

// Files of the working tree as a tree of git's, with the bytes that they have: no filter and no line end conversion is
// applied, neither on the way in nor on the way back. All functions block and throw as the methods of GitRepository do.

struct OverlayFile {
    std::string path;
    std::string mode; ///< as git writes it: 100644, 100755 or 120000
    std::string hash; ///< of the bytes, or of the target of a link

    bool operator==(const OverlayFile&) const = default;
};

/// Stores the files at these paths below `folder`, or below the working tree's root when that is empty, and returns the
/// hash of a tree that only these functions read. Links are stored as links. Folders, pipes and missing files are left out.
std::string writeOverlay(const GitRepository& repo, std::vector<std::string> paths,
                         const std::filesystem::path& folder = {});

/// Returns the files of such a tree.
std::vector<OverlayFile> overlayFiles(const GitRepository& repo, const std::string& tree);

/// Writes an ordinary tree with the files of such a tree, for git to compare, and returns its hash.
std::string overlayInFolders(const GitRepository& repo, const std::string& tree);

/// Writes files back, each in one step. Returns the paths of those that could not be written: where a folder or a link
/// stands in the way, or the disk is full.
std::vector<std::string> restoreOverlay(const GitRepository& repo, const std::vector<OverlayFile>& files,
                                        const std::filesystem::path& folder = {});

} // namespace gitkit
