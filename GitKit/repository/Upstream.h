// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "GitKit/records/BranchChange.h"
#include "GitKit/records/Divergence.h"

#include <optional>
#include <string>

namespace gitkit {

class GitRepository;

// The current branch and the one that it follows. Any thread; these block and throw as the methods of GitRepository do.

/// What is known of the upstream since the last fetch.
struct Upstream {
    std::string branch;       ///< short name of the current branch
    std::string name;         ///< short name, as origin/main
    Divergence counts;        ///< of the current branch
    bool isPushedTo = false;  ///< a push goes to the same remote
    bool mustForward = false; ///< pull.ff lets a pull do nothing but fast-forward

    bool operator==(const Upstream&) const = default;
};

/// Returns nullopt while HEAD is detached and for a branch without upstream.
std::optional<Upstream> upstreamNow(const GitRepository& repo);

/// Fetches from the remote of the current branch. Returns the full name of the remote-tracking branch that then is what a
/// pull would join; nullopt where that is not one such branch, so that only `git pull` itself can tell.
std::optional<std::string> fetchToPull(const GitRepository& repo);

/// Returns whether such a pull replays the current branch's own commits.
bool rebases(const GitRepository& repo, PullBy how);

/// Writes how pulls join from now on into the repository's own configuration, as `pull.rebase`.
void rememberPullBy(const GitRepository& repo, PullBy how);

/// Returns the full hash of HEAD's commit; empty before the first one.
std::string headCommit(const GitRepository& repo);

} // namespace gitkit
