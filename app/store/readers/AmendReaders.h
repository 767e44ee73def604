// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "GitKit/records/CommitFile.h"

#include <string>
#include <vector>

namespace gitkit {
class GitRepository;
} // namespace gitkit

namespace plovik {

// What the commit box reads, for Latest. All functions may be called on any thread, block, and throw gitkit::GitError.

/// The facts about a commit that matter before it is amended.
struct AmendedCommit {
    std::vector<gitkit::CommitFile> files;   ///< that the new commit will hold besides the staged ones
    std::vector<std::string> remoteBranches; ///< some of those that contain it, by their short names
};
/// `hash` is the full hash of the commit.
AmendedCommit readAmendedCommit(const gitkit::GitRepository& repo, const std::string& hash);

/// Returns the messages of the newest commits, each once, the newest first.
std::vector<std::string> readRecentMessages(const gitkit::GitRepository& repo);

/// Returns "Name <address>" as git would record it for a new commit.
std::string readIdentity(const gitkit::GitRepository& repo);

} // namespace plovik
