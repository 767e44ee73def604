// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <compare>
#include <optional>
#include <string_view>

namespace gitkit {

/// A version of git, as far as it decides what git can do.
struct GitVersion {
    int major = 0;
    int minor = 0;

    /// What `git version` printed; nullopt when it is something else.
    static std::optional<GitVersion> parse(std::string_view text);

    auto operator<=>(const GitVersion&) const = default;
};

/// The oldest version that understands everything that every run relies on.
constexpr GitVersion leastGitVersion{2, 31};

/// What some versions can do and others cannot.
enum class Ability {
    combinesMessages,         ///< the step "fixup -C" in the list of a rebase
    namesGlobalConfiguration, ///< GIT_CONFIG_GLOBAL
    mergesByOrt,              ///< merges by `ort`, which leaves AUTO_MERGE behind
    signsWithSsh,
    addsOutsideSparseCheckout, ///< add --sparse
    writesZealousConflicts,    ///< conflict style zdiff3
    stashesStaged,             ///< stash push --staged
    guardsCheckedOutBranches,  ///< `fetch . A:B` refuses a branch of another working tree
    listsWorktreesSafely,      ///< worktree list --porcelain -z
    runsHooks,                 ///< git hook run
    mergesInMemory,            ///< merge-tree --write-tree
    movesBranchesInRebase,     ///< rebase --update-refs, and its step "update-ref"
    countsAheadBehind,         ///< for-each-ref %(ahead-behind:...)
    fetchesForPrograms,        ///< fetch --porcelain
    staysOffline,              ///< GIT_NO_LAZY_FETCH
    keepsRefsInTables,         ///< reftable
    dropsEmptyPicks,           ///< cherry-pick --empty
    movesSymbolicRefs,         ///< `symref-update` in update-ref --stdin
    writesReflogs,             ///< git reflog write
    readsHooksFromConfiguration,
    watchesFilesOnLinux, ///< the built-in file system monitor
};

/// The first version with an ability.
GitVersion firstVersionWith(Ability ability);

/// The user's git. Runs `git version` once in a process, and again only after a failure; any thread, blocks. Throws
/// LaunchError when git cannot be run or tells no version.
GitVersion gitVersion();

/// Whether the user's git has an ability. Throws as gitVersion() does.
bool can(Ability ability);

} // namespace gitkit
