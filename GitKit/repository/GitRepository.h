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
#include "GitKit/records/TreePair.h"
#include "GitKit/runner/GitRunner.h"

#include <filesystem>
#include <optional>
#include <string>
#include <vector>

namespace gitkit {

/// The door to a repository: a working tree's root, or a bare repository, of which the reads that need no files work, and the first operations on it. Others are free functions over this
/// class, with one pair of files for each topic in this folder.
///
/// An immutable value. Every method blocks until its git process has ended. Methods may run on any thread, several at
/// once, but callers must run writing operations one after another. Throws GitError when git refuses, LaunchError when
/// git cannot be started, RunStopped when the context requests a stop. Paths and ref names are the bytes that git
/// printed.
class GitRepository {
public:
    /// `root` is what topLevel() returns.
    explicit GitRepository(std::filesystem::path root, RunContext context = {});
    /// Returns the same repository with another context for its runs.
    GitRepository in(RunContext context) const { return GitRepository(root_, std::move(context)); }
    /// Returns the same repository for runs that nobody listens to and that no stop ends.
    GitRepository unheard() const;

    const std::filesystem::path& root() const { return root_; }
    /// Runs git in the root. Only for the functions over this class.
    const GitRunner& runner() const { return runner_; }

    /// The top level of the working tree that holds `folder`, or the folder of the bare repository that does.
    static std::filesystem::path topLevel(const std::filesystem::path& folder);

    /// Runs git with any arguments and returns what it printed, repaired for showing.
    std::string git(const std::vector<std::string>& arguments) const;

    /// Throws when the current branch's ref is damaged, which git itself shows as a branch without commits.
    RepoStatus status() const;
    /// In display order. A ref that cannot be read has no hash.
    std::vector<GitRef> refs() const;
    std::vector<std::string> remotes() const;
    std::vector<Stash> stashes() const;
    /// Returns the newest `limit` commits of `scope` that match `filter`, if there is a filter.
    std::vector<Commit> log(const HistoryScope& scope, int limit, const std::optional<HistoryFilter>& filter) const;
    /// The full message of one commit, repaired for showing.
    std::string commitMessage(const std::string& hash) const;

    /// Returns the newest `limit` commits up to `revision`, or to HEAD, that changed a file. Git follows renames along
    /// one path: a file that was renamed on two branches is followed on one of them.
    std::vector<FileRevision> fileLog(const std::string& path, const std::optional<std::string>& revision,
                                      int limit) const;
    /// Returns who last changed each line of a file in `revision`, or in the working tree when there is none.
    std::vector<BlameLine> blame(const std::string& path, const std::optional<std::string>& revision) const;

    /// Returns a commit with its changes against its first parent. A stash has its untracked files, too.
    CommitDetail commitDetail(const std::string& hash, CommitKind kind) const;
    /// Returns the diff of a file that commitDetail() listed.
    ParsedDiff commitDiff(const std::string& hash, const CommitFile& file, DiffReading reading = {}) const;
    /// Returns the diff of a file that changedFiles() listed for these trees.
    ParsedDiff treeDiff(const TreePair& trees, const CommitFile& file, DiffReading reading = {}) const;
    /// Returns the diffs of a changed file: first the unstaged one, then the staged one. Reads no more than is asked
    /// for.
    std::vector<DiffSection> workingDiff(const FileChange& file, DiffReading reading = {}) const;

    StagedChanges stagedChanges() const;
    /// Returns the bytes of HEAD's message, converted to UTF-8 if the commit names another encoding.
    std::string lastCommitMessage() const;

    // The methods below change the index, the working tree or refs. Callers run them one after another.

    /// Stages the unstaged changes of these files. Changes nothing when git cannot stage one of them.
    void stage(const std::vector<FileChange>& files) const;
    void unstage(const std::vector<FileChange>& files) const;
    void stageAll() const;
    /// Keeps conflicts and an operation in progress.
    void unstageAll() const;

    /// Stages or unstages parts of a file. Throws when the index no longer has the blob that the patch was made from.
    void applyToIndex(const PartialChange& change) const;

    /// Brings files back to HEAD, one after another, and stops at the first that fails. What git does not know is moved
    /// to the Trash and never deleted.
    void discard(const std::vector<FileChange>& files, const Trash& trash) const;

    /// Records the message unchanged, but ends its last line. An amended message that equals HEAD's is not touched.
    void commit(const std::string& message, CommitMode mode, CommitHooks hooks = CommitHooks::run) const;
    // Existing refs are given by their full name (refs/heads/main) or by a hash, which are unambiguous. New names, and
    // names that can only be those of a branch or only those of a tag, are short.

    /// Attaches HEAD to a branch (refs/heads/...) and detaches it at every other ref.
    void checkout(const std::string& ref) const;
    /// Makes a branch that tracks a remote one (refs/remotes/...) and checks it out.
    void checkoutTracking(const std::string& remoteBranch, const std::string& localName) const;

    void createBranch(const std::string& name, const std::optional<std::string>& startPoint, AfterCreating after) const;
    void deleteBranch(const std::string& name, Deletion deletion) const;
    /// With a message, makes an annotated tag.
    void createTag(const std::string& name, const std::string& target, const std::string& message = {}) const;
    void deleteTag(const std::string& name) const;
    void merge(const std::string& ref) const;

    void stashSave(const std::string& message, UntrackedFiles untracked) const;
    /// Looks the stash up by its hash, because its number may have changed. Stages again what was staged if git can.
    StagedPart stashApply(const Stash& stash, StashUse use) const;
    void stashDrop(const Stash& stash) const;

    void fetch() const;
    void pull(PullBy how = PullBy::setting, const std::optional<std::string>& fetched = {}) const;
    /// Pushes `branch` to the branch of the same name. With `upstreamRemote`, pushes there and sets it as the upstream;
    /// otherwise `branch` must be the current one. Returns what pushBranch() does.
    std::string push(const std::string& branch, const std::optional<std::string>& upstreamRemote) const;

private:
    std::filesystem::path root_;
    GitRunner runner_;
};

} // namespace gitkit
