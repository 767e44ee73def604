// SPDX-License-Identifier: GPL-3.0-or-later
#include "GitKit/undo/UndoJournal.h"

#include "GitKit/Text.h"
#include "GitKit/repository/FileCopies.h"
#include "GitKit/repository/GitRepository.h"
#include "GitKit/repository/InTheWay.h"
#include "GitKit/runner/GitError.h"
#include "GitKit/undo/HelperRuns.h"
#include "GitKit/undo/Overlay.h"
#include "GitKit/undo/TreeMove.h"
#include "GitKit/undo/UndoLog.h"
#include "GitKit/undo/UndoRecord.h"

#include <algorithm>
#include <map>
#include <random>
#include <set>
#include <sys/stat.h>
#include <unistd.h>

namespace gitkit {

namespace {

namespace fs = std::filesystem;

using Refs = std::vector<std::pair<std::string, std::string>>;

std::string newId()
{
    std::random_device random;
    constexpr const char* digits = "0123456789abcdef";
    std::string id;
    for (int index = 0; index < 16; ++index)
        id += digits[random() % 16];
    return id;
}

HeadPlace headPlace(const GitRepository& repo)
{
    HeadPlace head;
    const GitOutput branch = repo.runner().output({"symbolic-ref", "--quiet", "HEAD"}, helperOptions());
    if (branch.status == 0)
        head.branch = withoutLineEnd(branch.stdoutBytes);
    const GitOutput hash = repo.runner().output({"rev-parse", "--verify", "--quiet", "HEAD^{commit}"}, helperOptions());
    if (hash.status == 0)
        head.hash = withoutLineEnd(hash.stdoutBytes);
    return head;
}

/// Returns all refs but symbolic ones, which move with others.
Refs directRefs(const GitRepository& repo)
{
    Refs refs;
    const std::string listed =
        repo.runner().bytes({"for-each-ref", "--format=%(objectname)%00%(refname)%00%(symref)%00"}, helperOptions());
    const std::vector<std::string> fields = splitNul(listed);
    for (std::size_t index = 0; index + 2 < fields.size(); index += 3) {
        // Each record but the first begins with the line end of the one before.
        std::string hash = fields[index].front() == '\n' ? fields[index].substr(1) : fields[index];
        if (fields[index + 2].empty())
            refs.emplace_back(fields[index + 1], std::move(hash));
    }
    return refs;
}

std::vector<RefUpdate> movedRefs(const Refs& before, const Refs& after)
{
    std::map<std::string, RefUpdate> moved;
    for (const auto& [name, hash] : before)
        moved[name] = {name, hash, std::nullopt};
    for (const auto& [name, hash] : after) {
        RefUpdate& update = moved.try_emplace(name, RefUpdate{name, std::nullopt, std::nullopt}).first->second;
        update.to = hash;
    }
    std::vector<RefUpdate> updates;
    for (auto& [name, update] : moved) {
        if (update.from != update.to)
            updates.push_back(std::move(update));
    }
    return updates;
}

std::string emptyTree(const GitRepository& repo)
{
    RunOptions options = helperOptions();
    options.input = std::string();
    return std::string(withoutLineEnd(repo.runner().bytes({"mktree"}, options)));
}

std::string treeOfHead(const GitRepository& repo, const HeadPlace& head)
{
    if (head.hash.empty())
        return emptyTree(repo);
    return std::string(withoutLineEnd(repo.runner().bytes({"rev-parse", head.hash + "^{tree}"}, helperOptions())));
}

/// Returns the state as it is now.
UndoPoint pointNow(const GitRepository& repo, const fs::path& gitDirectory, const UndoScope& scope)
{
    UndoPoint point;
    point.head = headPlace(repo);
    if (scope.movesFiles)
        point.filesTree = treeOfHead(repo, point.head);
    if (scope.movesFiles || scope.movesIndex)
        point.indexTree = indexTree(repo, gitDirectory);
    if (!scope.overwrites.empty()) {
        point.overlay = writeOverlay(repo, scope.overwrites);
        for (const std::string& path : scope.overwrites) {
            struct stat status{};
            if (::lstat((repo.root() / path).c_str(), &status) != 0)
                point.absent.push_back(path);
            else if (S_ISREG(status.st_mode))
                point.modes.emplace_back(path, status.st_mode & 07777U);
        }
    }
    return point;
}

/// Returns the paths of an overlay together with those that it says are absent.
std::vector<std::string> pathsOf(const GitRepository& repo, const UndoPoint& point)
{
    std::vector<std::string> paths = point.absent;
    if (!point.overlay.empty()) {
        for (OverlayFile& file : overlayFiles(repo, point.overlay))
            paths.push_back(std::move(file.path));
    }
    return paths;
}

/// Returns the tracked paths that differ between the index and the files.
std::vector<std::string> changedPaths(const GitRepository& repo)
{
    std::vector<std::string> paths;
    for (const FileChange& file : repo.status().files) {
        if (!file.isUntracked() && file.worktree != '.' && !file.isSubmodule)
            paths.push_back(file.path);
    }
    return paths;
}

[[noreturn]] void refuse(const std::string& sentence)
{
    throw GitError("undo", 1, sentence, ErrorKind::changedMeanwhile);
}

/// Makes sure that the files whose bytes are about to be written are still as the step left them.
void requireFilesAsLeft(const GitRepository& repo, const UndoPoint& left)
{
    if (left.overlay.empty())
        return;
    UndoScope scope;
    scope.overwrites = pathsOf(repo, left);
    const std::vector<OverlayFile> wanted = overlayFiles(repo, left.overlay);
    const std::vector<OverlayFile> found = overlayFiles(repo, pointNow(repo, {}, scope).overlay);
    std::vector<std::string> changed;
    const auto noteMissing = [&changed](const std::vector<OverlayFile>& from, const std::vector<OverlayFile>& in) {
        for (const OverlayFile& file : from) {
            if (std::ranges::find(in, file) == in.end())
                changed.push_back(file.path);
        }
    };
    noteMissing(wanted, found);
    noteMissing(found, wanted);
    if (!changed.empty())
        refuse(inQuotes(changed.front()) + " was edited since, and this would take the edit back, too.");
}

/// Writes the bytes of `to` in place of those of `from`.
void moveBytes(const GitRepository& repo, const UndoPoint& from, const UndoPoint& to)
{
    if (to.overlay.empty())
        return;
    const auto put = [&repo](const UndoPoint& point) {
        std::vector<std::string> failed = restoreOverlay(repo, overlayFiles(repo, point.overlay));
        for (const auto& [path, mode] : point.modes) {
            if (kindAt(repo.root() / path) == FileKind::regular)
                ::chmod((repo.root() / path).c_str(), mode);
        }
        for (const std::string& path : point.absent) {
            if (kindAt(repo.root() / path) != FileKind::none && ::unlink((repo.root() / path).c_str()) != 0)
                failed.push_back(path);
        }
        return failed;
    };
    const std::vector<std::string> failed = put(to);
    if (failed.empty())
        return;
    const std::vector<std::string> lost = put(from);
    if (lost.empty())
        refuse(inQuotes(failed.front()) + " could not be written. Nothing was changed.");
    refuse(inQuotes(failed.front()) + " could not be written, and " + inQuotes(lost.front()) +
           " could not be put back. What it was is kept in this step.");
}

/// Moves index and files between the trees of two points.
void moveBetween(const GitRepository& repo, const fs::path& gitDirectory, const UndoPoint& from, const UndoPoint& to)
{
    if (!from.filesTree.empty() && !to.filesTree.empty())
        moveTrees(repo, gitDirectory, {from.filesTree, to.filesTree}, {from.indexTree, to.indexTree},
                  changedPaths(repo));
    else if (!from.indexTree.empty() && !to.indexTree.empty())
        repo.runner().accepted({"read-tree", "-m", "-i", from.indexTree, to.indexTree}, helperOptions());
}

void moveHead(const GitRepository& repo, const HeadPlace& from, const HeadPlace& to, const std::string& reason)
{
    if (from.branch == to.branch && (!to.branch.empty() || from.hash == to.hash))
        return;
    if (!to.branch.empty())
        repo.runner().accepted({"symbolic-ref", "-m", reason, "HEAD", to.branch}, helperOptions());
    else
        repo.runner().accepted({"update-ref", "--no-deref", "-m", reason, "HEAD", to.hash}, helperOptions());
}

std::vector<RefUpdate> reversed(const std::vector<RefUpdate>& updates)
{
    std::vector<RefUpdate> back;
    for (const RefUpdate& update : updates)
        back.push_back({update.name, update.to, update.from});
    return back;
}

} // namespace

fs::path asideFolder(const fs::path& gitDirectory, const std::string& id)
{
    return gitDirectory / "plovik" / "saved" / id;
}

UndoRecording::UndoRecording(const GitRepository& repo, const fs::path& gitDirectory, UndoScope scope)
    : repo_(repo), gitDirectory_(gitDirectory), scope_(std::move(scope))
{
    step_.id = newId();
    step_.kind = scope_.kind;
    step_.title = scope_.title;
    step_.undoes = scope_.undoes;
    step_.aside = scope_.aside;
    step_.before = pointNow(repo_, gitDirectory_, scope_);
    refs_ = directRefs(repo_);
    appendUndoEntry(repo_, writeUndoRecord(repo_, step_), "b " + step_.id + ' ' + shownLine(step_.title));
}

std::optional<UndoStep> UndoRecording::finish()
{
    step_.refs = movedRefs(refs_, directRefs(repo_));
    step_.after = pointNow(repo_, gitDirectory_, scope_);
    if (step_.refs.empty() && *step_.after == step_.before && step_.aside.empty()) {
        repo_.runner().output({"reflog", "delete", "--rewrite", "--updateref", std::string(undoRef) + "@{0}"},
                              helperOptions());
        return std::nullopt;
    }
    appendUndoEntry(repo_, writeUndoRecord(repo_, step_), "a " + step_.id + ' ' + shownLine(step_.title));
    return step_;
}

std::vector<UndoStep> undoSteps(const GitRepository& repo)
{
    const std::vector<UndoEntry> entries = undoEntries(repo);
    std::vector<std::string> commits;
    for (const UndoEntry& entry : entries)
        commits.push_back(entry.commit);
    std::vector<std::optional<UndoStep>> records = readUndoRecords(repo, commits);
    std::vector<UndoStep> steps;
    std::set<std::string> seen;
    for (std::size_t index = 0; index < entries.size(); ++index) {
        std::optional<UndoStep>& step = records[index];
        // The entry from before a step is not needed where the one from after it was written.
        if (!step || !seen.insert(step->id).second)
            continue;
        step->date = entries[index].date;
        steps.push_back(*std::move(step));
    }
    return steps;
}

std::optional<UndoStep> takeBack(const GitRepository& repo, const fs::path& gitDirectory, const UndoStep& step,
                                 const std::string& title)
{
    if (!step.after)
        refuse("The step has no end, so that it is not known what it has changed.");
    const UndoPoint& from = *step.after;
    const UndoPoint& to = step.before;
    if (headPlace(repo).branch != from.head.branch)
        refuse("Another branch is checked out by now.");
    requireFilesAsLeft(repo, from);
    UndoRecording recording(repo, gitDirectory,
                            {.kind = "undo",
                             .title = title,
                             .movesFiles = !to.filesTree.empty(),
                             .movesIndex = !to.indexTree.empty(),
                             .overwrites = pathsOf(repo, from.overlay.empty() ? to : from),
                             .undoes = step.id});
    try {
        restoreTags(repo, step);
        RefTransaction refs(repo, title, reversed(step.refs));
        moveBytes(repo, from, to);
        try {
            moveBetween(repo, gitDirectory, from, to);
        } catch (const std::exception&) {
            moveBytes(repo, to, from);
            throw;
        }
        try {
            refs.commit();
        } catch (const std::exception&) { // as on a full disk: files and refs belong together
            moveBetween(repo, gitDirectory, to, from);
            moveBytes(repo, to, from);
            throw;
        }
        moveHead(repo, from.head, to.head, title);
    } catch (const std::exception&) {
        recording.finish();
        throw;
    }
    moveBack(repo, step.aside, asideFolder(gitDirectory, step.id));
    return recording.finish();
}

} // namespace gitkit
