// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "GitKit/records/FileChange.h"
#include "GitKit/records/Identity.h"
#include "GitKit/records/PartialChange.h"
#include "GitKit/records/RemoteBranch.h"
#include "GitKit/records/RemoteSettings.h"
#include "GitKit/records/Stash.h"
#include "GitKit/records/Worktree.h"

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <variant>
#include <vector>

namespace plovik {

/// The modal sheet that a window shows.
struct NewBranchSheet {
    std::optional<std::string> startPoint = {}; ///< nullopt for HEAD
    std::optional<gitkit::Stash> stash = {};    ///< starts where it was made, and applies it there
    bool operator==(const NewBranchSheet&) const = default;
};
/// Lists the untracked files that can go.
struct CleanSheet {
    bool operator==(const CleanSheet&) const = default;
};
/// Asks for the number of a pull or merge request to check out.
struct RequestSheet {
    bool operator==(const RequestSheet&) const = default;
};
struct RenameBranchSheet {
    std::string branch; ///< without refs/heads
    bool operator==(const RenameBranchSheet&) const = default;
};
/// Asks how a branch is merged, and says what comes of it.
struct MergeSheet {
    std::string ref; ///< full name
    bool operator==(const MergeSheet&) const = default;
};
/// Asks what is pushed where.
struct PushSheet {
    std::string branch; ///< without refs/heads
    gitkit::RemoteBranch to;
    std::optional<std::string> seen = {}; ///< hash that the remote was just asked for
    bool replaces = false;                ///< begins with replacing what is there
    bool operator==(const PushSheet&) const = default;
};
/// Asks for a new remote, or changes one that is there.
struct RemoteSheet {
    std::vector<gitkit::RemoteSettings> known = {}; ///< that can be changed; empty for a new one
    std::string remote = {};                        ///< that is shown first
    bool isRename = false;                          ///< its name has the focus
    bool operator==(const RemoteSheet&) const = default;
};
struct NewTagSheet {
    std::string target; ///< full commit hash
    bool operator==(const NewTagSheet&) const = default;
};
/// Lists the working trees of the repository.
struct WorktreesSheet {
    bool operator==(const WorktreesSheet&) const = default;
};
struct NewWorktreeSheet {
    bool operator==(const NewWorktreeSheet&) const = default;
};
/// Asks why a working tree is locked.
struct LockWorktreeSheet {
    gitkit::Worktree tree;
    bool operator==(const LockWorktreeSheet&) const = default;
};
/// Asks how the current branch is moved to a commit, and says what each way loses.
struct ResetSheet {
    std::string target; ///< full commit hash
    bool operator==(const ResetSheet&) const = default;
};
struct StashSheet {
    std::vector<gitkit::FileChange> files = {};      ///< that are selected; empty for no choice
    std::optional<gitkit::PartialChange> lines = {}; ///< only these lines, as discardPart() takes them
    bool operator==(const StashSheet&) const = default;
};
struct GoToCommitSheet {
    bool operator==(const GoToCommitSheet&) const = default;
};
/// Shows what is sent to have a commit message written.
struct SentChangesSheet {
    bool operator==(const SentChangesSheet&) const = default;
};
/// Lists what was discarded and is kept.
struct DiscardedSheet {
    bool operator==(const DiscardedSheet&) const = default;
};
/// Asks who makes the commits, and then has done what git refused without it.
struct IdentitySheet {
    using Then = std::function<void(const gitkit::Identity& identity, gitkit::IdentityPlace place)>;

    gitkit::Identity known;                     ///< what the configuration says already
    std::shared_ptr<const Then> then = nullptr; ///< null for the commit that is being written
    bool operator==(const IdentitySheet&) const = default;
};
/// Shows what stands around a commit.
struct RelationsSheet {
    std::string hash; ///< full
    bool operator==(const RelationsSheet&) const = default;
};
/// Asks for other words for a commit of the plan.
struct CommitMessageSheet {
    std::string commit; ///< full hash
    bool operator==(const CommitMessageSheet&) const = default;
};
/// Asks which changes of a commit become a commit of their own.
struct SplitSheet {
    std::string commit; ///< full hash
    bool operator==(const SplitSheet&) const = default;
};
/// Shows which commits the staged changes belong to, and puts them there.
struct AbsorbSheet {
    bool operator==(const AbsorbSheet&) const = default;
};
/// Asks what commits are put on top of, and says what that comes to.
struct RebaseSheet {
    std::string branch = {}; ///< full name; empty for HEAD
    std::string from = {};   ///< full hash of the oldest of them; empty: all that the other one has not
    bool operator==(const RebaseSheet&) const = default;
};
using SheetKind = std::variant<NewBranchSheet, WorktreesSheet, NewWorktreeSheet, LockWorktreeSheet, PushSheet,
                               MergeSheet, NewTagSheet, StashSheet, GoToCommitSheet, SentChangesSheet, DiscardedSheet,
                               IdentitySheet, ResetSheet, RenameBranchSheet, RequestSheet, CleanSheet, RelationsSheet,
                               CommitMessageSheet, SplitSheet, AbsorbSheet, RebaseSheet, RemoteSheet>;

} // namespace plovik
