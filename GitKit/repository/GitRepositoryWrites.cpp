// SPDX-License-Identifier: GPL-3.0-or-later
// Staging, committing, branches, tags, stashes and remotes.
//
// This table says where the commands differ from the obvious ones. GitEnvironment.cpp has what holds for every run.
//
//   update-index            stages and unstages single paths (StagedPaths.h), each given exactly.
//   add -A                  stages everything. A repository inside this one is taken out again and named.
//   reset -q -- .           unstages everything. Without a path git would also end a merge, a cherry-pick or a revert,
//                           and the next commit would have one parent. When there are conflicts, only the staged files
//                           are named, so that the conflicts stay.
//   commit                  has --cleanup=verbatim, so that the message is recorded as it was typed, with lines that
//                           begin with "#". No pin sets this, because git must still clean the message that it prepares
//                           for a merge. A line end is added to the last line if it has none, but an amended message
//                           that equals HEAD's keeps its bytes.
//   checkout, merge,        take full ref names, which tell a tag and a branch of one name apart and never look like an
//   branch, tag             option. Only by its short name does git attach HEAD to a branch, so checkout gets that one;
//                           where git would read the short name as something else, HEAD is detached and then pointed at
//                           the branch. A merge gets the short name for its message where that means the same ref.
//                           Where git would end a merge without a word, checkout and stash refuse.
//                           Ignored files are not overwritten, which is git's default: checkout has an option for it,
//                           and for merge, cherry-pick, revert and stash apply the files are looked at before.
//   push                    names the remote and refs/heads/B:refs/heads/B. Without a refspec, or with a short one, the
//                           remote's settings would add other branches, a leading "+" would force, and tags and
//                           submodules would go along. The remote is the one that git would choose with
//                           push.default=simple, and as there, the branch must still be the current one.
//   fetch, pull, push       have --progress, which git otherwise prints for a terminal only.
//   stash apply, stash pop  have --index, so that staged changes are staged again. It is left out where git cannot do
//                           that and while an operation is in progress, which --index would end.
//   stash apply, pop, drop  name the stash by the number that its hash has now: the number may have changed.

#include "GitKit/Text.h"
#include "GitKit/WebAddress.h"
#include "GitKit/repository/Folders.h"
#include "GitKit/repository/GitRepository.h"
#include "GitKit/repository/Identity.h"
#include "GitKit/repository/Overwriting.h"
#include "GitKit/repository/Pushing.h"
#include "GitKit/repository/RefArguments.h"
#include "GitKit/repository/StagedPaths.h"
#include "GitKit/repository/StaleChange.h"
#include "GitKit/repository/TellingCommand.h"
#include "GitKit/repository/Upstream.h"
#include "GitKit/runner/GitError.h"
#include "GitKit/runner/GitMessages.h"

#include <algorithm>
#include <array>
#include <string_view>

namespace gitkit {

namespace {

using Arguments = std::vector<std::string>;

constexpr const char* keepsIgnored = "--no-overwrite-ignore";

constexpr std::string_view branchPrefix = "refs/heads/";

/// The branch's short name; nullopt for a ref that is no branch.
std::optional<std::string> branchName(const std::string& ref)
{
    if (!ref.starts_with(branchPrefix))
        return std::nullopt;
    return ref.substr(branchPrefix.size());
}

/// The working tree that has `branch` checked out; empty when none has. Throws when the branch is gone, because git
/// would take its short name for a tag.
std::string workingTreeOf(const GitRunner& runner, const std::string& branch)
{
    const std::string found = runner.bytes({"for-each-ref", "--format=%(refname)%00%(worktreepath)", branch});
    const std::string start = branch + '\0';
    if (!found.starts_with(start))
        throw GitError("checkout", 1, "There is no branch " + inQuotes(branch.substr(branchPrefix.size())) + ".",
                       ErrorKind::noSuchRef);
    return std::string(trimmed(std::string_view(found).substr(start.size()), "\n"));
}

/// The remote that a branch is pushed to. Throws when that has no branch of this name for an upstream, unless the branch
/// is pushed elsewhere than it is pulled from.
std::string pushRemote(const GitRunner& runner, const std::string& ref)
{
    const std::vector<std::string> found = splitNul(
        trimmed(runner.bytes({"for-each-ref",
                              "--format=%(upstream:remotename)%00%(upstream:remoteref)%00%(push:remotename)%00", ref}),
                "\n"));
    const std::string name = inQuotes(ref.substr(branchPrefix.size()));
    if (found.size() != 3)
        throw GitError("push", 1, "There is no branch " + name + ".", ErrorKind::noSuchRef);
    const std::string& pulledFrom = found[0].empty() ? "origin" : found[0];
    const std::string& upstream = found[1];
    const std::string& remote = found[2];
    if (!remote.empty() && remote != pulledFrom)
        return remote;
    if (upstream.empty())
        throw GitError("push", 128, "The current branch " + name + " has no upstream branch.", ErrorKind::noUpstream);
    if (upstream != ref)
        throw GitError("push", 128,
                       "The upstream branch " + inQuotes(upstream) + " does not match the name of the current branch " +
                           name + ". Nothing was pushed.");
    return pulledFrom;
}

bool isOperationInProgress(const std::filesystem::path& gitDirectory)
{
    constexpr std::array marks{"MERGE_HEAD", "CHERRY_PICK_HEAD", "REVERT_HEAD", "SQUASH_MSG"};
    return std::ranges::any_of(marks, [&](const char* mark) { return std::filesystem::exists(gitDirectory / mark); });
}

/// A stash's full name: its short one may be that of a branch.
std::string fullStashName(const std::string& ref) { return ref.starts_with("refs/") ? ref : "refs/" + ref; }

/// The full name that a stash has in `stashes`. Throws when it is not there.
std::string currentRef(const std::vector<Stash>& stashes, const Stash& wanted)
{
    if (std::ranges::find_if(stashes, [&](const Stash& one) {
            return one.hash == wanted.hash && one.ref == wanted.ref;
        }) != stashes.end())
        return fullStashName(wanted.ref);
    const auto found = std::ranges::find(stashes, wanted.hash, &Stash::hash);
    if (found == stashes.end())
        throw GitError("stash", 1, "The stash " + inQuotes(wanted.message) + " is no longer in the list.",
                       ErrorKind::changedMeanwhile);
    return fullStashName(found->ref);
}

/// The command that lists the paths which such a comparison finds.
Arguments listOf(const char* command, const Arguments& comparison)
{
    Arguments arguments{command, "--name-only", "-z", "--no-renames", "--no-ext-diff"};
    arguments.insert(arguments.end(), comparison.begin(), comparison.end());
    arguments.emplace_back("--");
    return arguments;
}

/// Git records no more of it than its current commit, which nobody else has.
GitError embeddedRepository(const std::string& path)
{
    return {"add", 1,
            inQuotes(path) + " is a repository of its own, so it was not staged. Add it as a submodule, or have git "
                             "ignore it."};
}

/// Whether the file, or the submodule, is in the working tree. What is behind a link belongs to another path.
bool standsAt(const std::filesystem::path& root, const FileChange& file)
{
    std::error_code ignored;
    for (std::size_t end = file.path.find('/'); end != std::string::npos; end = file.path.find('/', end + 1)) {
        if (!std::filesystem::is_directory(std::filesystem::symlink_status(root / file.path.substr(0, end), ignored)))
            return false;
    }
    const auto found = std::filesystem::symlink_status(root / file.path, ignored);
    return std::filesystem::is_directory(found) ? file.isSubmodule && file.worktree != 'D'
                                                : std::filesystem::exists(found);
}

} // namespace

void GitRepository::stage(const std::vector<FileChange>& files) const
{
    Arguments standing;
    Arguments gone;
    for (const FileChange& file : files) {
        if (!file.hasUnstaged() || file.isDirtyInside)
            continue;
        if (file.path.ends_with('/'))
            throw embeddedRepository(file.path.substr(0, file.path.size() - 1));
        const bool stands = standsAt(root_, file);
        if (file.isUntracked() && !stands)
            throw GitError("add", 1, inQuotes(file.path) + " is not there any more.", ErrorKind::fileGone);
        (stands ? standing : gone).push_back(file.path);
        if (file.originalPath && file.index == '.' && file.worktree == 'R')
            gone.push_back(*file.originalPath);
    }
    stagePaths(runner_, standing, gone);
    const auto dirty = std::ranges::find_if(files, &FileChange::isDirtyInside);
    if (dirty != files.end() && standing.empty() && gone.empty())
        throw dirtySubmodule("add", dirty->path);
}

void GitRepository::unstage(const std::vector<FileChange>& files) const
{
    Arguments paths;
    for (const FileChange& file : files) {
        if (!file.hasStaged())
            continue;
        paths.push_back(file.path);
        if (file.originalPath && file.index == 'R')
            paths.push_back(*file.originalPath);
    }
    unstagePaths(runner_, paths);
}

void GitRepository::stageAll() const
{
    const std::vector<std::string> embedded = embeddedRepositories(runner_.accepted({"add", "-A"}));
    if (embedded.empty())
        return;
    forgetPaths(runner_, embedded);
    throw embeddedRepository(embedded.front());
}

void GitRepository::unstageAll() const
{
    const std::vector<FileChange> files = status().files;
    if (std::ranges::any_of(files, &FileChange::isConflicted))
        unstage(files);
    else
        runner_.accepted({"reset", "-q", "--", "."});
}

std::string GitRepository::lastCommitMessage() const
{
    std::string message = runner_.bytes({"log", "-1", "--format=%B"});
    if (message.ends_with('\n')) // added by the format
        message.pop_back();
    return message;
}

void GitRepository::commit(const std::string& message, CommitMode mode, CommitHooks hooks) const
{
    if (trimmed(message).empty())
        throw GitError("commit", 1, "A commit needs a message.");
    Arguments arguments{"commit", "--cleanup=verbatim", "-F", "-"};
    if (mode == CommitMode::amend)
        arguments.emplace_back("--amend");
    if (hooks == CommitHooks::skip)
        arguments.emplace_back("--no-verify");
    std::string input = message;
    if (!input.ends_with('\n') && (mode == CommitMode::create || input != lastCommitMessage()))
        input += '\n';
    runner_.accepted(arguments, {.input = std::move(input)});
}

void GitRepository::checkout(const std::string& ref) const
{
    requireNothingBegun(*this, "checkout");
    const std::optional<std::string> branch = branchName(ref);
    if (!branch) {
        runner_.accepted({"checkout", keepsIgnored, exactArgument("checkout", ref), "--"});
        return;
    }
    const std::string elsewhere = workingTreeOf(runner_, ref);
    if (!branch->starts_with('-') && *branch != "@" && *branch != "HEAD") {
        runner_.accepted({"checkout", keepsIgnored, *branch, "--"});
        return;
    }
    if (!elsewhere.empty() && elsewhere != root_.string())
        throw GitError("checkout", 128, inQuotes(*branch) + " is already checked out in " + inQuotes(elsewhere) + ".",
                       ErrorKind::checkedOutElsewhere);
    runner_.accepted({"checkout", keepsIgnored, ref, "--"});
    runner_.accepted({"symbolic-ref", "-m", "checkout: moving to " + ref, "HEAD", ref});
}

void GitRepository::checkoutTracking(const std::string& remoteBranch, const std::string& localName) const
{
    requireNothingBegun(*this, "checkout");
    runner_.accepted({"checkout", keepsIgnored, "-b", newNameArgument("checkout", localName), "--track",
                      exactArgument("checkout", remoteBranch)});
}

void GitRepository::createBranch(const std::string& name, const std::optional<std::string>& startPoint,
                                 AfterCreating after) const
{
    const char* command = after == AfterCreating::checkOut ? "checkout" : "branch";
    Arguments arguments{command};
    if (after == AfterCreating::checkOut) {
        requireNothingBegun(*this, command);
        arguments.insert(arguments.end(), {keepsIgnored, "-b"});
    }
    arguments.push_back(newNameArgument(command, name));
    if (startPoint && !startPoint->empty())
        arguments.push_back(exactArgument(command, *startPoint));
    runner_.accepted(arguments);
}

void GitRepository::deleteBranch(const std::string& name, Deletion deletion) const
{
    runner_.accepted({"branch", deletion == Deletion::force ? "-D" : "-d", "--", name});
}

void GitRepository::createTag(const std::string& name, const std::string& target, const std::string& message) const
{
    if (trimmed(message).empty()) {
        runner_.accepted({"tag", newNameArgument("tag", name), exactArgument("tag", target)});
        return;
    }
    runner_.accepted(
        {"tag", "-a", "--cleanup=verbatim", "-F", "-", newNameArgument("tag", name), exactArgument("tag", target)},
        {.input = message.ends_with('\n') ? message : message + '\n'});
}

void GitRepository::deleteTag(const std::string& name) const { runner_.accepted({"tag", "-d", "--", name}); }

void GitRepository::merge(const std::string& ref) const
{
    const std::string revision = exactArgument("merge", ref);
    waitForIndex(*this);
    requireIgnoredStay(*this, "merge", listOf("diff", {"--diff-filter=A", "HEAD..." + revision}));
    runTelling(runner_, {"merge", revision.starts_with("refs/") ? shortestName(runner_, revision) : revision});
}

void GitRepository::stashSave(const std::string& message, UntrackedFiles untracked) const
{
    Arguments arguments{"stash", "push"};
    if (untracked == UntrackedFiles::include)
        arguments.emplace_back("--include-untracked");
    if (!message.empty())
        arguments.insert(arguments.end(), {"-m", message});
    waitForIndex(*this);
    requireNothingBegun(*this, "stash");
    requireStashKeeps(*this, untracked);
    runner_.accepted(arguments);
}

StagedPart GitRepository::stashApply(const Stash& stash, StashUse use) const
{
    const std::string ref = currentRef(stashes(), stash);
    const std::string verb = use == StashUse::pop ? "pop" : "apply";
    waitForIndex(*this);
    requireIgnoredStay(*this, "stash", listOf("diff", {"--diff-filter=A", ref + "^1", ref}));
    if (!isOperationInProgress(gitDirectories(*this).own)) {
        try {
            runTelling(runner_, {"stash", verb, "--index", ref});
            return StagedPart::restored;
        } catch (const GitError& error) {
            // Git has changed nothing in this case.
            if (error.kind() != ErrorKind::indexNotRestorable)
                throw;
        }
    }
    runTelling(runner_, {"stash", verb, ref});
    return StagedPart::lost;
}

void GitRepository::stashDrop(const Stash& stash) const
{
    waitForIndex(*this);
    runner_.accepted({"stash", "drop", currentRef(stashes(), stash)});
}

void GitRepository::fetch() const { runTelling(runner_, {"fetch", "--all", "--prune", "--progress"}); }

void GitRepository::pull(PullBy how, const std::optional<std::string>& fetched) const
{
    if (rebases(*this, how))
        requireReplayer(*this, fetched);
    waitForIndex(*this);
    Arguments arguments{"pull", "--progress"};
    // What was chosen holds against pull.ff=only, too.
    if (how == PullBy::merging)
        arguments.insert(arguments.end(), {"--no-rebase", "--ff"});
    if (how == PullBy::rebasing)
        arguments.emplace_back("--rebase");
    if (fetched)
        arguments.insert(arguments.end(), {".", *fetched});
    runTelling(runner_, arguments);
}

std::string GitRepository::push(const std::string& branch, const std::optional<std::string>& upstreamRemote) const
{
    const std::string ref = std::string(branchPrefix) + branch;
    if (!upstreamRemote && trimmed(runner_.output({"symbolic-ref", "--quiet", "HEAD"}).stdoutBytes, "\n") != ref)
        throw GitError("push", 1, inQuotes(branch) + " is not the current branch any more. Nothing was pushed.",
                       ErrorKind::changedMeanwhile);
    const std::string remote = newNameArgument("push", upstreamRemote ? *upstreamRemote : pushRemote(runner_, ref));
    requireNoMirror(*this, remote);
    Arguments arguments{"push", "--progress", "--no-follow-tags", "--recurse-submodules=check"};
    if (upstreamRemote)
        arguments.emplace_back("-u");
    arguments.insert(arguments.end(), {remote, ref + ":" + ref});
    return addressIn(serverLines(runTelling(runner_, arguments)));
}

} // namespace gitkit
