// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "GitKit/records/BlameLine.h"
#include "GitKit/records/BranchChange.h"
#include "GitKit/records/Commit.h"
#include "GitKit/records/CommitDetail.h"
#include "GitKit/records/CommitKind.h"
#include "GitKit/records/CommitMode.h"
#include "GitKit/records/DiffSection.h"
#include "GitKit/records/FileRevision.h"
#include "GitKit/records/GitRef.h"
#include "GitKit/records/HistoryFilter.h"
#include "GitKit/records/HistoryScope.h"
#include "GitKit/records/ParsedDiff.h"
#include "GitKit/records/PartialChange.h"
#include "GitKit/records/RepoStatus.h"
#include "GitKit/records/StagedChanges.h"
#include "GitKit/records/Stash.h"
#include "GitKit/records/Trash.h"
#include "GitKit/runner/GitRunner.h"

#include <filesystem>
#include <optional>
#include <string>
#include <vector>

namespace gitkit {

/// The one door to a repository: a working tree's root, and every git operation on it.
///
/// An immutable value. Every method blocks until its git process has ended and may run on any thread, any number at
/// once; callers keep writing operations apart. Throws GitError when git refuses, LaunchError when git cannot be
/// started, RunStopped when its context asked for the end. Paths and ref names are the bytes that git printed.
class GitRepository {
public:
    /// `root` is a working tree's top level as topLevel() returns it.
    explicit GitRepository(std::filesystem::path root, RunContext context = {});
    /// The same repository, its runs in another context.
    GitRepository in(RunContext context) const { return GitRepository(root_, std::move(context)); }

    const std::filesystem::path& root() const { return root_; }
    /// Runs git in the root. For the topics beside this class only.
    const GitRunner& runner() const { return runner_; }

    /// The top level of the working tree that holds `folder`.
    static std::filesystem::path topLevel(const std::filesystem::path& folder);

    /// Runs git with any arguments and returns what it printed, repaired for showing.
    std::string git(const std::vector<std::string>& arguments) const;

    /// Fails when the current branch's ref is damaged, which git shows as a branch without commits.
    RepoStatus status() const;
    std::vector<GitRef> refs() const;
    std::vector<std::string> remotes() const;
    std::vector<Stash> stashes() const;
    /// The newest `limit` commits of `scope`, only those that match `filter` when there is one.
    std::vector<Commit> log(const HistoryScope& scope, int limit, const std::optional<HistoryFilter>& filter) const;
    /// The full message of one commit, repaired for showing.
    std::string commitMessage(const std::string& hash) const;

    /// The newest `limit` commits that touched a file, as `revision` and its parents know it; HEAD without. Followed
    /// through renames as far as git follows one path: a file that was renamed on two branches is followed on one.
    std::vector<FileRevision> fileLog(const std::string& path, const std::optional<std::string>& revision,
                                      int limit) const;
    /// Who last changed each line of a file in `revision`; in the working tree without.
    std::vector<BlameLine> blame(const std::string& path, const std::optional<std::string>& revision) const;

    /// A commit with its changes against its first parent; a stash with its untracked files too.
    CommitDetail commitDetail(const std::string& hash, CommitKind kind) const;
    /// One file's diff in a commit, as commitDetail() lists the file.
    ParsedDiff commitDiff(const std::string& hash, const CommitFile& file,
                          WhiteSpace whiteSpace = WhiteSpace::compared) const;
    /// The diffs of a changed file: what is not staged, then what is. Reading stops where no more is shown.
    std::vector<DiffSection> workingDiff(const FileChange& file, WhiteSpace whiteSpace = WhiteSpace::compared) const;

    StagedChanges stagedChanges() const;
    /// HEAD's message, as its bytes; as UTF-8 when the commit names another encoding.
    std::string lastCommitMessage() const;

    // What follows changes the index or the working tree. Writers of one repository run one after another, which is
    // for the caller to see to.

    /// Stages what is not staged of these files; one that git cannot stage leaves them all as they are.
    void stage(const std::vector<FileChange>& files) const;
    void unstage(const std::vector<FileChange>& files) const;
    void stageAll() const;
    /// Leaves conflicts and an operation in progress as they are.
    void unstageAll() const;

    /// Stages or unstages parts of a file. Refuses when the index no longer holds what the patch was made from.
    void applyToIndex(const PartialChange& change) const;

    /// Brings files back to HEAD, one after another; stops at the first that fails. What git does not know goes to the
    /// Trash, never away.
    void discard(const std::vector<FileChange>& files, const Trash& trash) const;

    /// Records the message as it is; a last line that has no end gets one, unless it is HEAD's own and unchanged.
    void commit(const std::string& message, CommitMode mode) const;
    // A ref that exists is named in full (refs/heads/main) or by a hash, so that it is taken for no other; names that
    // are given to something new, or that only a branch or only a tag can have, are short.

    /// Attaches HEAD to a branch (refs/heads/...); detaches it at anything else.
    void checkout(const std::string& ref) const;
    /// Makes a branch that tracks a remote one (refs/remotes/...) and checks it out.
    void checkoutTracking(const std::string& remoteBranch, const std::string& localName) const;

    void createBranch(const std::string& name, const std::optional<std::string>& startPoint, AfterCreating after) const;
    void deleteBranch(const std::string& name, Deletion deletion) const;
    void createTag(const std::string& name, const std::string& target) const;
    void deleteTag(const std::string& name) const;
    void merge(const std::string& ref) const;
    void cherryPick(const std::string& hash) const;
    void revert(const std::string& hash) const;

    void stashSave(const std::string& message, UntrackedFiles untracked) const;
    /// Finds the stash again by its hash first: its number may have changed since it was listed. What was staged is
    /// staged again where git can do that.
    void stashApply(const Stash& stash, StashUse use) const;
    void stashDrop(const Stash& stash) const;

    void fetch() const;
    void pull() const;
    /// Pushes `branch`, which must be the current one without a remote, to the branch of that name; sets its upstream
    /// on `upstreamRemote` when one is given.
    void push(const std::string& branch, const std::optional<std::string>& upstreamRemote) const;

private:
    std::filesystem::path root_;
    GitRunner runner_;
};

} // namespace gitkit
