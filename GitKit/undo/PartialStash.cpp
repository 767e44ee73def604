// SPDX-License-Identifier: GPL-3.0-or-later
#include "GitKit/undo/PartialStash.h"

#include "GitKit/Text.h"
#include "GitKit/repository/FileCopies.h"
#include "GitKit/repository/Folders.h"
#include "GitKit/repository/GitRepository.h"
#include "GitKit/repository/InTheWay.h"
#include "GitKit/repository/Operations.h"
#include "GitKit/repository/Overwriting.h"
#include "GitKit/repository/PartialDiscard.h"
#include "GitKit/repository/ScratchIndex.h"
#include "GitKit/repository/TellingCommand.h"
#include "GitKit/repository/Upstream.h"
#include "GitKit/runner/GitError.h"
#include "GitKit/undo/HelperRuns.h"
#include "GitKit/undo/TreeMove.h"
#include "GitKit/undo/UndoWay.h"

#include <algorithm>
#include <set>
#include <unistd.h>

namespace gitkit {

namespace {

namespace fs = std::filesystem;
using Names = std::vector<std::string>;
using Paths = std::set<std::string>;

[[noreturn]] void refuse(const std::string& sentence, ErrorKind kind) { throw GitError("stash", 1, sentence, kind); }

std::string lineOf(const GitRepository& repo, const Names& command, const RunOptions& options = helperOptions())
{
    return std::string(withoutLineEnd(repo.runner().bytes(command, options)));
}

/// What a stash is made from.
struct Base {
    std::string commit;
    std::string tree;
    std::string index; ///< tree of what is staged
};

Base baseNow(const GitRepository& repo, const fs::path& gitDirectory)
{
    waitForIndex(repo);
    requireNothingBegun(repo, "stash");
    Base base{.commit = headCommit(repo), .tree = {}, .index = {}};
    if (base.commit.empty())
        refuse("Before the first commit there is nothing that changes could be put aside from.", ErrorKind::noSuchRef);
    IndexContents index = indexContents(repo, gitDirectory);
    if (!index.conflicts.empty())
        refuse("Resolve and stage the conflicted files first.", ErrorKind::conflicts);
    base.tree = lineOf(repo, {"rev-parse", "--verify", base.commit + "^{tree}"});
    base.index = std::move(index.tree);
    return base;
}

/// Makes a commit in the user's name; as git itself does, in another one where the user has none.
std::string commitTree(const GitRepository& repo, const std::string& tree, const Names& parents,
                       const std::string& message)
{
    Names command{"commit-tree", tree};
    for (const std::string& parent : parents)
        command.insert(command.end(), {"-p", parent});
    RunOptions own;
    own.input = message + '\n';
    const GitOutput made = repo.runner().output(command, own);
    if (made.status == 0)
        return std::string(withoutLineEnd(made.stdoutBytes));
    return lineOf(repo, command, helperOptions(own));
}

/// The trees of a stash.
struct Trees {
    std::string index;
    std::string files;
    std::string untracked = {}; ///< empty for none
};

/// Makes a stash and puts it into the list. Returns its hash.
std::string storeStash(const GitRepository& repo, const Base& base, const Trees& trees, const std::string& message)
{
    const GitOutput branch = repo.runner().output({"symbolic-ref", "--quiet", "--short", "HEAD"}, helperOptions());
    const std::string on = branch.status == 0 ? std::string(withoutLineEnd(branch.stdoutBytes)) : "(no branch)";
    const std::string where = on + ": " + lineOf(repo, {"log", "-1", "--no-decorate", "--format=%h %s", base.commit});
    Names parents{base.commit, commitTree(repo, trees.index, {base.commit}, "index on " + where)};
    if (!trees.untracked.empty())
        parents.push_back(commitTree(repo, trees.untracked, {}, "untracked files on " + where));
    const std::string title = message.empty() ? "WIP on " + where : "On " + on + ": " + message;
    const std::string stash = commitTree(repo, trees.files, parents, title);
    repo.runner().accepted({"stash", "store", "--quiet", "-m", title, stash}, helperOptions());
    return stash;
}

/// Takes the newest stash out of the list again, if it is still this one.
void dropAgain(const GitRepository& repo, const std::string& stash)
{
    const GitOutput newest = repo.runner().output({"rev-parse", "--verify", "--quiet", "refs/stash"}, helperOptions());
    if (withoutLineEnd(newest.stdoutBytes) == stash)
        repo.runner().output({"stash", "drop", "--quiet", "stash@{0}"}, helperOptions());
}

void moveOrStay(const GitRepository& repo, const fs::path& gitDirectory, const UndoWay& way)
{
    try {
        moveAll(repo, gitDirectory, way, {}, {});
    } catch (const std::exception&) {
        moveAllBack(repo, gitDirectory, way, {}, {});
        throw;
    }
}

/// Refuses where files come back in whose places there is something that git does not know.
void requireRoom(const GitRepository& repo, const UndoWay& way, const Paths& leaving)
{
    InTheWay found = inTheWay(repo, way.from.filesTree, way.to.filesTree);
    found.untracked.insert(found.untracked.end(), found.ignored.begin(), found.ignored.end());
    std::erase_if(found.untracked, [&leaving](const std::string& path) { return leaving.contains(path); });
    if (!found.untracked.empty())
        refuse(inQuotes(found.untracked.front()) +
                   " stands in the place of a file that comes back. Move it away first.",
               ErrorKind::wouldOverwriteUnknownFiles);
}

/// Removes untracked files that a tree holds. One that was written meanwhile stays.
void removeKept(const GitRepository& repo, const fs::path& gitDirectory, const Names& paths, const std::string& tree)
{
    for (const std::string& path : filesAsIn(repo, gitDirectory, paths, tree)) {
        ::unlink((repo.root() / path).c_str());
        std::error_code hasMore;
        // Git keeps no empty folders either.
        for (fs::path folder = fs::path(path).parent_path(); !folder.empty(); folder = folder.parent_path()) {
            if (!fs::remove(repo.root() / folder, hasMore) || hasMore)
                break;
        }
    }
}

/// Returns what is staged taken out of `tree`, which has it. Throws where other changes are in the same lines.
std::string withoutStaged(const GitRepository& repo, const Base& base, const std::string& tree)
{
    const std::string patch = repo.runner().bytes(
        {"diff-tree", "-r", "-p", "--binary", "--full-index", "--no-renames", "--no-ext-diff", "--no-textconv",
         "--src-prefix=a/", "--dst-prefix=b/", "--no-relative", "-U3", base.tree, base.index, "--"},
        helperOptions());
    const ScratchIndex scratch(repo.runner());
    RunOptions options = helperOptions(scratch.options());
    repo.runner().accepted({"read-tree", tree}, options);
    RunOptions applying = options;
    applying.input = patch;
    if (!patch.empty() &&
        repo.runner().output({"apply", "--cached", "--reverse", "--whitespace=nowarn", "-p1", "-"}, applying).status !=
            0)
        refuse("What is staged cannot be taken out of a file that has other changes in the same lines.",
               ErrorKind::wouldOverwriteLocalChanges);
    return lineOf(repo, {"write-tree"}, options);
}

/// Returns `tree` with the lines that a reverse change would take out of the working tree.
std::string withLines(const GitRepository& repo, const std::string& tree, const PartialChange& change)
{
    const ScratchIndex scratch(repo.runner());
    RunOptions options = helperOptions(scratch.options());
    repo.runner().accepted({"read-tree", tree}, options);
    RunOptions applying = options;
    applying.input = change.patch;
    if (repo.runner().output({"apply", "--cached", "--whitespace=nowarn", "-p1", "-"}, applying).status != 0)
        refuse("These lines cannot be stashed by themselves: they build on others that are not committed.",
               ErrorKind::wouldOverwriteLocalChanges);
    return lineOf(repo, {"write-tree"}, options);
}

bool isOnlyAnnounced(const FileChange& file) { return file.index == '.' && file.worktree == 'A'; }

} // namespace

Names pathsToStash(const std::vector<FileChange>& files)
{
    Names paths;
    for (const FileChange& file : files) {
        if (!file.isSubmodule)
            std::ranges::move(file.allPaths(), std::back_inserter(paths));
    }
    std::ranges::sort(paths);
    paths.erase(std::ranges::unique(paths).begin(), paths.end());
    return paths;
}

void stashFiles(const GitRepository& repo, const std::vector<FileChange>& files, const std::string& message)
{
    const fs::path gitDirectory = gitDirectories(repo).own;
    const Base base = baseNow(repo, gitDirectory);
    if (const auto announced = std::ranges::find_if(files, isOnlyAnnounced); announced != files.end())
        refuse(inQuotes(announced->path) + " is announced to git, but not staged. Stage it first.",
               ErrorKind::changedMeanwhile);
    Names unknown;
    Paths known;
    for (const FileChange& file : files) {
        for (std::string& path : pathsToStash({file})) {
            if (file.isUntracked())
                unknown.push_back(std::move(path));
            else
                known.insert(std::move(path));
        }
    }
    const std::string level = levelTree(repo, gitDirectory, {known.begin(), known.end()});
    UndoWay way;
    way.from.filesTree = level;
    way.from.indexTree = base.index;
    way.to.filesTree = partlyMoved(repo, level, {.from = level, .to = base.tree}, known);
    way.to.indexTree = partlyMoved(repo, base.index, {.from = base.index, .to = base.tree}, known);
    Trees trees{.index = partlyMoved(repo, base.tree, {.from = base.tree, .to = base.index}, known),
                .files = partlyMoved(repo, base.tree, {.from = base.tree, .to = level}, known)};
    const std::string withUnknown = unknown.empty() ? std::string() : levelTree(repo, gitDirectory, unknown);
    if (!unknown.empty())
        trees.untracked = partlyMoved(repo, lineOf(repo, {"hash-object", "-t", "tree", "-w", "--stdin"}),
                                      {.from = base.index, .to = withUnknown}, {unknown.begin(), unknown.end()});
    if (trees.index == base.tree && trees.files == base.tree && trees.untracked.empty())
        refuse("There are no changes in these files any more.", ErrorKind::changedMeanwhile);
    requireRoom(repo, way, {unknown.begin(), unknown.end()});
    storeStash(repo, base, trees, message);
    removeKept(repo, gitDirectory, unknown, withUnknown);
    moveOrStay(repo, gitDirectory, way);
}

Names stagedPaths(const GitRepository& repo)
{
    return splitNul(repo.runner().bytes(
        {"diff", "--cached", "--name-only", "-z", "--no-renames", "--no-ext-diff", "--ignore-submodules=all"},
        helperOptions()));
}

void stashStaged(const GitRepository& repo, const std::string& message)
{
    const fs::path gitDirectory = gitDirectories(repo).own;
    const Base base = baseNow(repo, gitDirectory);
    if (base.index == base.tree)
        refuse("Nothing is staged.", ErrorKind::changedMeanwhile);
    UndoWay way;
    way.from.filesTree = levelTree(repo, gitDirectory, stagedPaths(repo));
    way.from.indexTree = base.index;
    way.to.filesTree = withoutStaged(repo, base, way.from.filesTree);
    way.to.indexTree = base.tree;
    requireRoom(repo, way, {});
    storeStash(repo, base, {.index = base.index, .files = base.index}, message);
    moveOrStay(repo, gitDirectory, way);
}

void stashLines(const GitRepository& repo, const PartialChange& change, const std::string& message)
{
    const fs::path gitDirectory = gitDirectories(repo).own;
    const Base base = baseNow(repo, gitDirectory);
    const Trees trees{.index = base.tree, .files = withLines(repo, base.tree, change)};
    const std::string stash = storeStash(repo, base, trees, message);
    try {
        discardPart(repo, change);
    } catch (const std::exception&) { // the file is as it was
        dropAgain(repo, stash);
        throw;
    }
}

std::string stashBase(const GitRepository& repo, const std::string& stash)
{
    return lineOf(repo, {"rev-parse", "--verify", stash + "^1"});
}

} // namespace gitkit
