// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "GitKit/runner/RunContext.h"

#include <filesystem>
#include <memory>
#include <mutex>
#include <optional>
#include <string>

namespace gitkit {

class GitRepository;

// A clone that brings contents when they are needed has not all of them. What only looks must not wait for a remote.

/// Fetches what the diffs of a commit need, if that is not here. Blocks; throws as the methods of GitRepository do.
void downloadContents(const GitRepository& repo, const std::string& hash);

/// Keeps the reads of commits, trees and the status from fetching contents in a partial clone: they pair no renames, for
/// which contents would be compared, and fail with ErrorKind::contentsNotHere where they need contents all the same.
/// What follows one file through the history still fetches. Any thread.
class PartialCloneGuard : public RunGuard {
public:
    /// `inner` is asked, too; it may be null. `root` is the repository's.
    PartialCloneGuard(std::shared_ptr<RunGuard> inner, std::filesystem::path root)
        : inner_(std::move(inner)), root_(std::move(root))
    {}

    Restriction before(const std::string& command, const RunContext& context) override;

private:
    bool isPartial(const RunContext& context);

    const std::shared_ptr<RunGuard> inner_;
    const std::filesystem::path root_;
    std::mutex reading_;            ///< guards the following
    std::optional<bool> isPartial_; ///< a clone stays what it was made
};

} // namespace gitkit
