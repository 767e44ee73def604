// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string>
#include <vector>

namespace gitkit {

/// A commit that a plan may do something to.
struct MovableCommit {
    std::string hash;
    std::string message;      ///< UTF-8
    bool isPublished = false; ///< a remote branch leads to it

    bool operator==(const MovableCommit&) const = default;
};

inline std::string subjectOf(const MovableCommit& commit)
{
    return commit.message.substr(0, commit.message.find('\n'));
}

/// A branch that stands on a movable commit, besides the one whose commits they are.
struct BranchOnCommit {
    std::string name; ///< full
    std::string commit;
    std::string
        heldBy; ///< why it stays: the working tree that has it checked out, or the ref that it is another name of

    bool operator==(const BranchOnCommit&) const = default;
};

/// The branch whose commits are meant, and how many of them are looked at.
struct MovablePlace {
    std::string branch = {}; ///< full name; empty for HEAD
    int limit = 300;

    bool operator==(const MovablePlace&) const = default;
};

/// The commits from HEAD, or a branch, down to the first merge, as many as are looked at.
struct MovableCommits {
    std::string branch;                 ///< full name; empty while HEAD is detached
    std::string base;                   ///< the commit beneath the oldest one; empty where that is a root
    std::vector<MovableCommit> commits; ///< the oldest first
    std::vector<BranchOnCommit> branches;
    std::string publishedOn;     ///< a remote branch that has the published ones, as it is shown; empty without any
    bool hasMessageHook = false; ///< a hook prepares messages, which runs only where git itself rebases
    bool isElsewhere = false;    ///< the branch is not what is checked out here
    std::string heldBy = {};     ///< for such a branch: why it cannot be moved, as for BranchOnCommit

    bool operator==(const MovableCommits&) const = default;
};

} // namespace gitkit
