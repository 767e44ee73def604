// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <filesystem>
#include <vector>

namespace gitkit {

/// A folder into which something new is put. Makes it, with its parents, where it is missing, and removes what it has made
/// unless keep() is called; a folder that was there before is left alone. One thread at a time.
class ClaimedFolder {
public:
    /// Throws GitError, told of `command`, when the folder cannot be made.
    ClaimedFolder(const char* command, const std::filesystem::path& folder);
    ~ClaimedFolder();
    ClaimedFolder(const ClaimedFolder&) = delete;
    ClaimedFolder& operator=(const ClaimedFolder&) = delete;

    void keep() { isKept_ = true; }

private:
    void make(const char* command, const std::filesystem::path& folder);

    std::filesystem::path folder_;
    std::vector<std::filesystem::path> made_; ///< the outermost first
    bool isKept_ = false;
};

} // namespace gitkit
