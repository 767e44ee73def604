// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "GitKit/records/RemoteBranch.h"

#include <optional>
#include <string>
#include <vector>

namespace gitkit {

/// A branch that has become another one here, while its place on the remote still has what it was.
struct RewrittenBranch {
    std::string branch; ///< the local one, without refs/heads
    RemoteBranch to;
    std::string there = {}; ///< full hash that the remote's branch is known to have
    int missed = 0;         ///< commits that only the remote has; the branch has had them all

    bool operator==(const RewrittenBranch&) const = default;
};

/// What a push sends, and where it goes.
struct Push {
    std::string branch; ///< the local one, without refs/heads
    RemoteBranch to;
    std::string there = {}; ///< full hash that the remote's branch is known to have; empty when it is not there
    bool replaces = false;  ///< the commits there go away, if they are still those
    bool setsUpstream = false;
    std::vector<std::string> tags = {};      ///< that go along, all or nothing; without refs/tags
    std::vector<RewrittenBranch> along = {}; ///< that replace what is there by the same push, all or nothing

    bool operator==(const Push&) const = default;
};

/// The tags of a repository beside those of a remote. Names are without refs/tags.
struct TagsBeside {
    std::vector<std::string> missing;   ///< there
    std::vector<std::string> different; ///< there, under the same name

    bool operator==(const TagsBeside&) const = default;
};

/// A branch of a remote that a push has replaced or deleted.
struct LostThere {
    RemoteBranch branch;
    std::string had;  ///< full hash that it had before
    std::string left; ///< full hash that it was left with; empty when it was deleted

    bool operator==(const LostThere&) const = default;
};

/// A commit that a remote has and the pushed branch does not.
struct ForeignCommit {
    std::string hash;
    std::string author;
    std::string subject;

    bool operator==(const ForeignCommit&) const = default;
};

/// A pair of commits of two versions of a branch, or one that only one of them has.
struct RangeDiffRow {
    enum class Kind { same, changed, gone, come };

    Kind kind = Kind::same;
    std::string before; ///< full hash; empty for one that comes
    std::string after;  ///< full hash; empty for one that goes
    std::string subject;

    bool operator==(const RangeDiffRow&) const = default;
};

/// What is asked about a push before it begins.
struct PushQuestion {
    std::string branch;
    RemoteBranch to;
    std::optional<std::string> seen = {}; ///< what the remote has said to have; nullopt: what was fetched last counts

    bool operator==(const PushQuestion&) const = default;
};

/// What a push would do.
struct PushPreview {
    std::string ours;                     ///< full hash of the local branch
    std::string there;                    ///< full hash of the remote's, as far as known; empty when none is known
    int sent = 0;                         ///< commits that the remote gets
    int missed = 0;                       ///< commits that only the remote has
    int strangers = 0;                    ///< commits among these that the branch has never had
    std::vector<ForeignCommit> foreign;   ///< the newest of these
    std::vector<RewrittenBranch> along;   ///< other branches that could be pushed with it
    std::vector<RangeDiffRow> comparison; ///< of both versions, the oldest first; empty where they are too long
    std::vector<std::string> tags;        ///< on the commits that the remote gets
    bool isUpstream = false;              ///< the branch follows that one already

    bool operator==(const PushPreview&) const = default;
};

} // namespace gitkit
