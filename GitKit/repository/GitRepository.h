// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "GitKit/records/BlameLine.h"
#include "GitKit/records/BranchChange.h"
#include "GitKit/records/ChangeCounts.h"
#include "GitKit/records/Commit.h"
#include "GitKit/records/CommitDetail.h"
#include "GitKit/records/CommitKind.h"
#include "GitKit/records/CommitMode.h"
#include "GitKit/records/DiffSection.h"
#include "GitKit/records/DiffSides.h"
#include "GitKit/records/FileRevision.h"
#include "GitKit/records/FileSample.h"
#include "GitKit/records/GitDirectories.h"
#include "GitKit/records/GitRef.h"
#include "GitKit/records/HistoryFilter.h"
#include "GitKit/records/HistoryScope.h"
#include "GitKit/records/OperationInProgress.h"
#include "GitKit/records/PartialChange.h"
#include "GitKit/records/RepoStatus.h"
#include "GitKit/records/SideSizes.h"
#include "GitKit/records/StagedChanges.h"
#include "GitKit/records/Stash.h"
#include "GitKit/records/Trash.h"
#include "GitKit/runner/GitRunner.h"

#include <chrono>
#include <filesystem>
#include <functional>
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
    /// How many commits log() lists before the one with this full hash; nothing when `scope` does not hold it. Costs
    /// what walking the whole history costs.
    std::optional<int> position(const HistoryScope& scope, const std::string& hash) const;

    GitDirectories gitDirectories() const;

    /// Folders, relative to the root and without a final slash, whose whole content git ignores. Folders inside them
    /// are not listed.
    std::vector<std::string> ignoredFolders() const;

    /// Those of `folders` (relative to the root) that git ignores. Folders inside submodules never are.
    std::vector<std::string> ignoredAmong(const std::vector<std::string>& folders) const;

    /// The full message of one commit, repaired for showing.
    std::string commitMessage(const std::string& hash) const;

    /// The newest `limit` commits that touched a file, as `revision` and its parents know it; HEAD without. Followed
    /// through renames as far as git follows one path: a file that was renamed on two branches is followed on one.
    std::vector<FileRevision> fileLog(const std::string& path, const std::optional<std::string>& revision,
                                      int limit) const;
    /// What stands at a path of `revision`, of the working tree without, and up to `bytes` of its beginning.
    FileSample fileSample(const std::string& path, const std::optional<std::string>& revision, std::size_t bytes) const;
    /// Who last changed each line of a file in `revision`; in the working tree without.
    std::vector<BlameLine> blame(const std::string& path, const std::optional<std::string>& revision) const;

    /// A commit with its changes against its first parent; a stash with its untracked files too.
    CommitDetail commitDetail(const std::string& hash, CommitKind kind) const;
    /// How many lines each file of commitDetail() adds and removes, in the same order. Costs what all the diffs cost.
    std::vector<ChangeCounts> changeCounts(const std::string& hash, CommitKind kind) const;
    /// One file's diff in a commit, as commitDetail() lists the file.
    ParsedDiff commitDiff(const std::string& hash, const CommitFile& file,
                          WhiteSpace whiteSpace = WhiteSpace::compared) const;
    /// The diffs of a changed file: what is not staged, then what is. Reading stops where no more is shown.
    std::vector<DiffSection> workingDiff(const FileChange& file, WhiteSpace whiteSpace = WhiteSpace::compared) const;

    /// The whole files of a diff, those of up to `limit` bytes.
    DiffSides diffSides(const DiffSource& source, std::size_t limit) const;
    /// How large the files of a diff are, whatever their size.
    SideSizes diffSizes(const DiffSource& source) const;
    /// Blobs by their hashes, in the order asked for; nothing for one that is missing or larger than `limit` bytes.
    std::vector<std::optional<std::string>> blobs(const std::vector<std::string>& hashes, std::size_t limit) const;
    /// The hash of the commit that a hash, a part of one or a ref's name stands for.
    std::string resolveCommit(const std::string& name) const;

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

    /// Takes changes out of a file of the working tree: `change` is a reverse one. Refuses when the file is no longer
    /// what the patch was made from. The result is nothing for a file too large to keep.
    std::optional<PartialDiscard> discardPart(const PartialChange& change) const;
    /// Brings back what discardPart() took, while the file is still as that left it. Refuses otherwise.
    void undoDiscard(const PartialDiscard& discard) const;

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

    // What git stopped in the middle of. `gitDirectory` is gitDirectories().own, which callers remember.

    /// Reads git's own files; runs git only for the counts of a bisect that is not as it was `before`, and of several
    /// commits that are picked or reverted. What cannot be found out is absent; throws nothing but RunStopped.
    std::optional<OperationInProgress> operationInProgress(const std::filesystem::path& gitDirectory,
                                                           const std::optional<OperationInProgress>& before = {}) const;
    /// A message that git prepared, by git's rules for comments and blanks.
    std::string withoutComments(const std::string& message) const;
    /// Goes on, leaves the stopped commit out, or goes back to where it began; `forget` leaves everything as it is and
    /// ends the operation all the same.
    void proceed(const OperationInProgress& operation, OperationStep step) const;
    /// Marks the commit that is checked out.
    void mark(const OperationInProgress::Bisect& bisect, BisectMark mark) const;

    AbortLoss abortLoss(const OperationInProgress& operation, const std::filesystem::path& gitDirectory) const;

    /// Resolves conflicts in these paths by taking one side whole, which may mean that the file is gone. A working file
    /// that was edited since git wrote it goes to the Trash first, and so does one that the side does not have.
    void takeSide(const std::vector<std::string>& paths, ConflictSide side, const std::filesystem::path& gitDirectory,
                  const Trash& trash) const;

    void fetch() const;
    void pull() const;
    /// Pushes `branch`, which must be the current one without a remote, to the branch of that name; sets its upstream
    /// on `upstreamRemote` when one is given.
    void push(const std::string& branch, const std::optional<std::string>& upstreamRemote) const;

private:
    using Arguments = std::vector<std::string>;
    std::string walkHistory(const HistoryScope& scope,
                            const std::function<Arguments(const Arguments& scope)>& command) const;
    ParsedDiff diff(const std::vector<std::string>& arguments, const std::vector<int>& accepting,
                    WhiteSpace whiteSpace) const;
    void requireIndexHolds(const PartialChange& change) const;
    void requireWorkingTreeHolds(const PartialChange& change) const;
    bool resolvesHead() const;
    void requireReadableHead() const;
    void countBisect(OperationInProgress::Bisect& bisect) const;
    void countSequence(OperationInProgress& operation, const std::filesystem::path& gitDirectory) const;
    /// `slack` after the stop a file's time may still be git's doing.
    std::vector<std::string> changedSinceStop(const std::filesystem::path& gitDirectory,
                                              const std::vector<FileChange>& files, std::chrono::seconds slack) const;

    std::filesystem::path root_;
    GitRunner runner_;
};

} // namespace gitkit
