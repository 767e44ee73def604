// SPDX-License-Identifier: GPL-3.0-or-later
#include "GitKit/undo/TreeMove.h"

#include "GitKit/Text.h"
#include "GitKit/repository/FileCopies.h"
#include "GitKit/repository/GitRepository.h"
#include "GitKit/repository/ScratchIndex.h"
#include "GitKit/undo/HelperRuns.h"

#include <algorithm>
#include <iterator>

namespace gitkit {

namespace {

namespace fs = std::filesystem;
using Paths = std::set<std::string>;

std::string pathOf(const std::string& entry) { return entry.substr(entry.find('\t') + 1); }

/// Returns what takes a path out of an index. `hash` is any hash of the repository.
std::string removal(const std::string& hash, const std::string& path)
{
    return "0 " + std::string(hash.size(), '0') + '\t' + path + '\0';
}

/// Returns what takes paths out of an index that are in conflict there.
std::string withoutConflicts(const std::vector<std::string>& conflicts)
{
    std::string lines;
    for (const std::string& entry : conflicts) {
        const std::size_t hash = entry.find(' ') + 1;
        lines += removal(entry.substr(hash, entry.find(' ', hash) - hash), pathOf(entry));
    }
    return lines;
}

void feed(const GitRepository& repo, const std::vector<std::string>& command, std::string input, RunOptions options)
{
    if (input.empty())
        return;
    options.input = std::move(input);
    repo.runner().accepted(command, options);
}

std::vector<std::string> conflictsIn(const GitRepository& repo, const RunOptions& options = helperOptions())
{
    return splitNul(repo.runner().bytes({"ls-files", "--unmerged", "-z"}, options));
}

std::string writtenTree(const GitRepository& repo, const RunOptions& options)
{
    return std::string(withoutLineEnd(repo.runner().bytes({"write-tree"}, options)));
}

/// A copy of the index that has the contents of the files for these paths and for those in conflict.
class LevelIndex {
public:
    LevelIndex(const GitRepository& repo, const fs::path& gitDirectory, Paths paths)
        : index_(repo.runner(), gitDirectory / "index"), options_(helperOptions(index_.options()))
    {
        const std::vector<std::string> conflicts = conflictsIn(repo, options_);
        feed(repo, {"update-index", "-z", "--index-info"}, withoutConflicts(conflicts), options_);
        for (const std::string& entry : conflicts)
            paths.insert(pathOf(entry));
        std::string list;
        for (const std::string& path : paths)
            list += path + '\0';
        if (!paths.empty())
            feed(repo, {"update-index", "-z", "--no-assume-unchanged", "--stdin"}, unseen(repo, paths), options_);
        feed(repo, {"update-index", "-z", "--add", "--remove", "--ignore-skip-worktree-entries", "--stdin"}, list,
             options_);
        tree_ = writtenTree(repo, options_);
    }

    const RunOptions& options() const { return options_; }
    const std::string& tree() const { return tree_; }

private:
    /// Returns those of the paths that git takes for unchanged without a look.
    std::string unseen(const GitRepository& repo, const Paths& paths) const
    {
        std::string list;
        // An entry is "FLAG PATH", with a small letter for such a file.
        for (const std::string& entry : splitNul(repo.runner().bytes({"ls-files", "-v", "-z"}, options_))) {
            if (entry.size() > 2 && entry.front() == 'h' && paths.contains(entry.substr(2)))
                list += entry.substr(2) + '\0';
        }
        return list;
    }

    ScratchIndex index_;
    RunOptions options_;
    std::string tree_;
};

/// Returns the differences as lines for `update-index --index-info`, what goes before what comes; only those at some paths,
/// if such are given.
std::string changesBetween(const GitRepository& repo, const std::string& from, const std::string& to,
                           const Paths* only = nullptr)
{
    std::string gone;
    std::string come;
    const std::vector<std::string> fields =
        splitNul(repo.runner().bytes({"diff-tree", "-r", "-z", "--no-renames", from, to, "--"}, helperOptions()));
    // A record is ":MODE MODE HASH HASH STATUS" and its path.
    for (std::size_t index = 0; index + 1 < fields.size(); index += 2) {
        if (only && !only->contains(fields[index + 1]))
            continue;
        const std::string& facts = fields[index];
        const std::size_t mode = facts.find(' ') + 1;
        const std::size_t fromHash = facts.find(' ', mode) + 1;
        const std::size_t toHash = facts.find(' ', fromHash) + 1;
        const std::size_t status = facts.find(' ', toHash) + 1;
        const std::string hash = facts.substr(toHash, status - toHash - 1);
        if (facts[status] == 'D')
            gone += removal(hash, fields[index + 1]);
        else
            come += facts.substr(mode, fromHash - mode - 1) + ' ' + hash + '\t' + fields[index + 1] + '\0';
    }
    return gone + come;
}

/// Returns `tree` with the differences between the trees of `move`; only with those at some paths, if such are given.
std::string movedTree(const GitRepository& repo, const std::string& tree, const TreeMove& move,
                      const Paths* only = nullptr)
{
    const ScratchIndex index(repo.runner());
    const RunOptions options = helperOptions(index.options());
    repo.runner().accepted({"read-tree", tree}, options);
    feed(repo, {"update-index", "-z", "--add", "--remove", "--replace", "--index-info"},
         changesBetween(repo, move.from, move.to, only), options);
    return writtenTree(repo, options);
}

Paths differing(const GitRepository& repo, const std::string& from, const std::string& to)
{
    const std::vector<std::string> names = splitNul(
        repo.runner().bytes({"diff-tree", "-r", "-z", "--no-renames", "--name-only", from, to, "--"}, helperOptions()));
    return {names.begin(), names.end()};
}

/// Returns the paths of entries that only one of the lists has.
Paths differing(std::vector<std::string> one, std::vector<std::string> other)
{
    std::ranges::sort(one);
    std::ranges::sort(other);
    std::vector<std::string> entries;
    std::ranges::set_symmetric_difference(one, other, std::back_inserter(entries));
    Paths paths;
    for (const std::string& entry : entries)
        paths.insert(pathOf(entry));
    return paths;
}

/// Returns the paths of `moved` whose contents in `tree` are neither those of one side nor those of the other.
Paths foreign(const GitRepository& repo, const Paths& moved, const std::string& tree, const TreeMove& move)
{
    const Paths notFrom = differing(repo, move.from, tree);
    const Paths notTo = notFrom.empty() ? Paths() : differing(repo, move.to, tree);
    Paths found;
    std::ranges::copy_if(moved, std::inserter(found, found.end()),
                         [&](const std::string& path) { return notFrom.contains(path) && notTo.contains(path); });
    return found;
}

/// Returns the moved paths that are files before the move, and those that come and are not there although the index may
/// have them: git would take them for there.
Paths knownBefore(const GitRepository& repo, const TreeMove& move)
{
    Paths known;
    for (const char* kind : {"--diff-filter=a", "--diff-filter=A"}) {
        for (std::string& path : splitNul(repo.runner().bytes(
                 {"diff-tree", "-r", "-z", "--no-renames", "--name-only", kind, move.from, move.to, "--"},
                 helperOptions())))
        {
            if (std::string_view(kind).ends_with('a') || kindAt(repo.root() / path) == FileKind::none)
                known.insert(std::move(path));
        }
    }
    return known;
}

std::vector<std::string> rehearsed(std::vector<std::string> command)
{
    command.insert(command.begin() + 1, "-n");
    return command;
}

} // namespace

IndexContents indexContents(const GitRepository& repo, const fs::path& gitDirectory)
{
    const ScratchIndex copy(repo.runner(), gitDirectory / "index");
    const RunOptions options = helperOptions(copy.options());
    const GitOutput whole = repo.runner().output({"write-tree"}, options);
    if (whole.status == 0)
        return {std::string(withoutLineEnd(whole.stdoutBytes)), {}};
    IndexContents contents{.tree = {}, .conflicts = conflictsIn(repo, options)};
    feed(repo, {"update-index", "-z", "--index-info"}, withoutConflicts(contents.conflicts), options);
    contents.tree = writtenTree(repo, options);
    return contents;
}

std::string levelTree(const GitRepository& repo, const fs::path& gitDirectory, const std::vector<std::string>& paths)
{
    return LevelIndex(repo, gitDirectory, {paths.begin(), paths.end()}).tree();
}

Paths movedPaths(const GitRepository& repo, const TreeMove& move)
{
    Paths paths = differing(repo, move.from, move.to);
    paths.merge(differing(move.fromConflicts, move.toConflicts));
    return paths;
}

std::vector<std::string> lostPaths(const GitRepository& repo, const TreeMove& move)
{
    return splitNul(repo.runner().bytes(
        {"diff-tree", "-r", "-z", "--no-renames", "--name-only", "--diff-filter=D", move.from, move.to, "--"},
        helperOptions()));
}

std::string partlyMoved(const GitRepository& repo, const std::string& tree, const TreeMove& move, const Paths& paths)
{
    return movedTree(repo, tree, move, &paths);
}

std::vector<std::string> movedSubmodules(const GitRepository& repo, const TreeMove& move)
{
    std::vector<std::string> names;
    if (move.from == move.to || kindAt(repo.root() / ".gitmodules") == FileKind::none)
        return names;
    const std::vector<std::string> fields = splitNul(
        repo.runner().bytes({"diff-tree", "-r", "-z", "--no-renames", move.from, move.to, "--"}, helperOptions()));
    for (std::size_t index = 0; index + 1 < fields.size(); index += 2) {
        // A record is ":MODE MODE HASH HASH STATUS" and its path.
        if (fields[index].starts_with(":160000 160000 "))
            names.push_back(fields[index + 1]);
    }
    return names;
}

std::vector<std::string> editedFiles(const GitRepository& repo, const fs::path& gitDirectory, const TreeMove& move)
{
    const Paths moved = movedPaths(repo, move);
    if (moved.empty())
        return {};
    const Paths edited = foreign(repo, moved, LevelIndex(repo, gitDirectory, knownBefore(repo, move)).tree(), move);
    return {edited.begin(), edited.end()};
}

std::vector<std::string> editedEntries(const GitRepository& repo, const fs::path& gitDirectory, const TreeMove& move)
{
    const Paths moved = movedPaths(repo, move);
    if (moved.empty())
        return {};
    const IndexContents now = indexContents(repo, gitDirectory);
    Paths edited = foreign(repo, moved, now.tree, move);
    for (const std::string& path : differing(now.conflicts, move.fromConflicts)) {
        if (moved.contains(path))
            edited.insert(path);
    }
    return {edited.begin(), edited.end()};
}

std::vector<std::string> filesAsIn(const GitRepository& repo, const fs::path& gitDirectory,
                                   const std::vector<std::string>& paths, const std::string& tree)
{
    if (paths.empty())
        return {};
    const Paths others = differing(repo, levelTree(repo, gitDirectory, paths), tree);
    std::vector<std::string> same;
    std::ranges::copy_if(paths, std::back_inserter(same),
                         [&others](const std::string& path) { return !others.contains(path); });
    return same;
}

void moveFiles(const GitRepository& repo, const fs::path& gitDirectory, const TreeMove& move,
               const std::vector<std::string>& known)
{
    if (move.from == move.to)
        return;
    Paths paths = knownBefore(repo, move);
    const Paths moved = movedPaths(repo, move);
    std::ranges::copy_if(known, std::inserter(paths, paths.end()),
                         [&moved](const std::string& path) { return moved.contains(path); });
    const LevelIndex level(repo, gitDirectory, std::move(paths));
    const std::vector<std::string> command{"read-tree", "-m", "-u", level.tree(), movedTree(repo, level.tree(), move)};
    repo.runner().accepted(rehearsed(command), level.options());
    repo.runner().accepted(command, level.options());
}

void moveIndex(const GitRepository& repo, const fs::path& gitDirectory, const TreeMove& move)
{
    const IndexContents now = indexContents(repo, gitDirectory);
    const std::string to = movedTree(repo, now.tree, move);
    feed(repo, {"update-index", "-z", "--index-info"}, withoutConflicts(now.conflicts), helperOptions());
    if (to != now.tree)
        repo.runner().accepted({"read-tree", "-m", "-i", now.tree, to}, helperOptions());
    std::string conflicts = withoutConflicts(move.toConflicts);
    for (const std::string& entry : move.toConflicts)
        conflicts += entry + '\0';
    feed(repo, {"update-index", "-z", "--index-info"}, conflicts, helperOptions());
    // Its exit status tells only that files are changed.
    repo.runner().output({"update-index", "-q", "--refresh"}, helperOptions());
}

} // namespace gitkit
