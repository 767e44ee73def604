// SPDX-License-Identifier: GPL-3.0-or-later
#include "GitKit/undo/TakeBack.h"

#include "GitKit/Text.h"
#include "GitKit/repository/FileCopies.h"
#include "GitKit/repository/GitRepository.h"
#include "GitKit/repository/InTheWay.h"
#include "GitKit/repository/Keeping.h"
#include "GitKit/undo/HelperRuns.h"
#include "GitKit/undo/OperationFiles.h"
#include "GitKit/undo/Overlay.h"
#include "GitKit/undo/RefTransaction.h"
#include "GitKit/undo/TreeMove.h"
#include "GitKit/undo/UndoJournal.h"
#include "GitKit/undo/UndoLog.h"
#include "GitKit/undo/UndoRecord.h"
#include "GitKit/undo/UndoRefused.h"
#include "GitKit/undo/UndoWay.h"

#include <algorithm>
#include <array>
#include <map>
#include <set>
#include <sys/stat.h>
#include <unistd.h>

namespace gitkit {

namespace {

namespace fs = std::filesystem;
using Cause = UndoRefused::Cause;
using Names = std::vector<std::string>;

/// A branch that is not checked out, or a stash, comes back wherever HEAD is.
bool concernsHead(const UndoWay& way)
{
    const auto isHead = [&way](const RefUpdate& update) { return update.name == way.from.head.branch; };
    return way.from.head.branch != way.to.head.branch || movesFiles(way) || movesIndex(way) ||
           std::ranges::any_of(way.refs, isHead);
}

void requireSameHead(const UndoPoint& left, const UndoPoint& now)
{
    if (now.head.branch != left.head.branch || (now.head.branch.empty() && now.head.hash != left.head.hash))
        throw UndoRefused(Cause::otherHead, {now.head.branch}, "Something else is checked out by now.");
    // Git's own words for the next commit may be edited, and what is in the folders changes with each step.
    if (now.operation.empty() != left.operation.empty() || now.operationRefs != left.operationRefs)
        throw UndoRefused(Cause::otherState, {}, "An operation has begun, gone on or ended since.");
}

/// Finds out why refs cannot be moved, after git has refused.
void explainRefs(const GitRepository& repo, const std::vector<RefUpdate>& updates)
{
    Names moved;
    Names taken;
    for (const RefUpdate& update : updates) {
        const GitOutput now = repo.runner().output({"rev-parse", "--verify", "--quiet", update.name}, helperOptions());
        const std::string hash = now.status == 0 ? std::string(withoutLineEnd(now.stdoutBytes)) : std::string();
        if (!update.from && !hash.empty())
            taken.push_back(update.name);
        else if (update.from && hash != *update.from)
            moved.push_back(update.name);
    }
    if (!moved.empty())
        throw UndoRefused(Cause::movedRefs, moved, inQuotes(moved.front()) + " has moved since.");
    if (!taken.empty())
        throw UndoRefused(Cause::takenNames, taken, inQuotes(taken.front()) + " is there again.");
}

/// Makes sure that no other working tree has a branch checked out that is about to move.
void requireNotElsewhere(const GitRepository& repo, const UndoWay& way)
{
    Names moving;
    for (const RefUpdate& update : way.refs) {
        if (update.name.starts_with("refs/heads/") && update.from)
            moving.push_back(update.name);
    }
    if (moving.empty())
        return;
    std::vector<std::string> command{"for-each-ref", "--format=%(refname)%00%(worktreepath)%00"};
    command.insert(command.end(), moving.begin(), moving.end());
    const std::vector<std::string> fields = splitNul(repo.runner().bytes(command, helperOptions()));
    std::error_code failure;
    for (std::size_t index = 0; index + 1 < fields.size(); index += 2) {
        const std::string name = fields[index].front() == '\n' ? fields[index].substr(1) : fields[index];
        const std::string& place = fields[index + 1];
        if (!place.empty() && std::ranges::find(moving, name) != moving.end() &&
            !fs::equivalent(place, repo.root(), failure) && !failure)
            throw UndoRefused(Cause::checkedOut, {name, place},
                              inQuotes(name) + " is checked out in " + inQuotes(place) + ".");
    }
}

struct Renaming {
    std::string from;
    std::string to;
};

/// Returns both names where nothing happens to refs but that a branch is renamed. `git branch -m` keeps its log, and can
/// do it where one name lies below the other.
std::optional<Renaming> renamingIn(const std::vector<RefUpdate>& refs)
{
    constexpr std::string_view prefix = "refs/heads/";
    if (refs.size() != 2)
        return std::nullopt;
    const RefUpdate& gone = refs[0].to ? refs[1] : refs[0];
    const RefUpdate& made = refs[0].to ? refs[0] : refs[1];
    if (gone.to || made.from || gone.from != made.to || !gone.name.starts_with(prefix) ||
        !made.name.starts_with(prefix))
        return std::nullopt;
    return Renaming{gone.name.substr(prefix.size()), made.name.substr(prefix.size())};
}

/// What takes a step back, in the order of its steps.
class Moving {
public:
    Moving(const GitRepository& repo, fs::path gitDirectory, UndoWay way, Over over)
        : repo_(repo), gitDirectory_(std::move(gitDirectory)), way_(std::move(way)), over_(over),
          kept_(keptPaths(repo_, way_))
    {}

    /// Refuses what cannot be done, and notes which edits it would take back.
    void check()
    {
        requireNotElsewhere(repo_, way_);
        std::set<std::string> edited;
        const auto note = [&edited](Names names) { edited.insert(names.begin(), names.end()); };
        if (movesFiles(way_))
            note(withoutKnown(editedFiles(repo_, gitDirectory_, filesOf(way_))));
        if (movesIndex(way_))
            note(editedEntries(repo_, gitDirectory_, indexOf(way_)));
        note(editedBytes(repo_, way_.from, kept_));
        edited_.assign(edited.begin(), edited.end());
        if (over_ == Over::nothing && !edited_.empty())
            throw UndoRefused(Cause::editedFiles, edited_, inQuotes(edited_.front()) + " was edited since.");
        findInTheWay();
    }

    TakenBack run(const UndoStep& step, const std::string& title)
    {
        TakenBack done;
        UndoRecording recording(repo_, gitDirectory_, scope(step, title));
        try {
            Names aside = inTheWay_;
            const Names removed = removedNow();
            aside.insert(aside.end(), removed.begin(), removed.end());
            moveAside(repo_, aside, asideFolder(gitDirectory_, recording.id()));
            recording.movedAside(aside);
            aside_ = std::move(aside);
            moveOn(step, title, recording, done);
            done.aside = inTheWay_;
        } catch (const std::exception&) {
            recording.hasFailed();
            recording.finish(repo_);
            throw;
        }
        done.left = moveBack(repo_, step.aside, asideFolder(gitDirectory_, step.id));
        done.step = recording.finish(repo_);
        return done;
    }

private:
    /// Leaves out files whose bytes are known. They need not be those of the tree, as where only what is staged has come.
    Names withoutKnown(Names paths) const
    {
        if (paths.empty() || way_.from.overlay.empty())
            return paths;
        std::set<std::string> known;
        for (const OverlayFile& file : overlayFiles(repo_, way_.from.overlay)) {
            if (std::ranges::binary_search(kept_, file.path))
                known.insert(file.path);
        }
        std::erase_if(paths, [&known](const std::string& path) { return known.contains(path); });
        return paths;
    }

    /// Finds the files that git does not know where others come. Those whose bytes are kept are none of them.
    void findInTheWay()
    {
        if (!movesFiles(way_))
            return;
        InTheWay found = gitkit::inTheWay(repo_, way_.from.filesTree, way_.to.filesTree);
        const auto isKept = [this](const std::string& path) { return std::ranges::binary_search(kept_, path); };
        std::erase_if(found.untracked, isKept);
        std::erase_if(found.ignored, isKept);
        // What would come anyway is not in the way.
        known_ = filesAsIn(repo_, gitDirectory_, found.untracked, way_.to.filesTree);
        std::erase_if(found.untracked,
                      [this](const std::string& path) { return std::ranges::find(known_, path) != known_.end(); });
        known_.insert(known_.end(), kept_.begin(), kept_.end());
        if (over_ == Over::nothing && !found.untracked.empty())
            throw UndoRefused(Cause::inTheWay, found.untracked, inQuotes(found.untracked.front()) + " is in the way.");
        inTheWay_ = std::move(found.untracked);
        inTheWay_.insert(inTheWay_.end(), found.ignored.begin(), found.ignored.end());
    }

    /// Returns the files that go and whose bytes are not kept.
    Names removedNow() const
    {
        Names paths = removedPaths(way_.to, kept_);
        std::erase_if(paths, [this](const std::string& path) {
            return kindAt(repo_.root() / path) == FileKind::none ||
                   std::ranges::find(inTheWay_, path) != inTheWay_.end();
        });
        return paths;
    }

    UndoScope scope(const UndoStep& step, const std::string& title) const
    {
        UndoScope scope{.kind = "undo",
                        .title = title,
                        .message = step.message,
                        .movesFiles = movesFiles(way_),
                        .movesIndex = movesIndex(way_),
                        .overwrites = kept_,
                        .removes = removedPaths(way_.to, kept_),
                        .refs = {},
                        .touchesStashes = way_.to.stashes.has_value(),
                        .touchesSettings = way_.to.settings.has_value(),
                        .target = way_.to.filesTree,
                        .undoes = step.id};
        for (const std::string& path : removedPaths(way_.from, kept_))
            scope.removes.push_back(path);
        // What comes back from beside goes there again with a redo, also where nothing comes in its place.
        scope.removes.insert(scope.removes.end(), step.aside.begin(), step.aside.end());
        std::set<std::string> paths(edited_.begin(), edited_.end());
        paths.insert(known_.begin(), known_.end()); // they are there before it, too
        // A file that is not as it is staged at one end may be so at the other one without having been moved: its
        // contents have to be looked at both times, or it would pass for moved.
        for (const UndoPoint* point : {&way_.from, &way_.to}) {
            if (movesFiles(way_) && movesIndex(way_) && point->filesTree != point->indexTree)
                paths.merge(movedPaths(repo_, {point->filesTree, point->indexTree}));
        }
        for (const std::string& path : paths) {
            if (kindAt(repo_.root() / path) != FileKind::folder && !std::ranges::binary_search(kept_, path))
                scope.overwrites.push_back(path);
        }
        for (const RefUpdate& update : way_.refs)
            scope.refs.push_back(update.name);
        return scope;
    }

    void moveOn(const UndoStep& step, const std::string& title, UndoRecording& recording, TakenBack& done)
    {
        if (!step.kept.empty()) {
            bringKeptBack(step, done);
            if (done.files->back.empty() && done.files->merged.empty())
                recording.hasFailed();
            // More than the points keep: it cannot be done again.
            if (kept_.empty() && way_.from.absent.empty())
                recording.keptAs(step.kept);
            return;
        }
        restoreTags(repo_, step);
        if (const auto renaming = renamingIn(way_.refs); renaming && !movesFiles(way_)) {
            explainRefs(repo_, way_.refs);
            repo_.runner().accepted({"branch", "-m", "--", renaming->from, renaming->to}, helperOptions());
            moveSettings(repo_, way_.from, way_.to);
            return;
        }
        std::optional<RefTransaction> refs;
        try {
            refs.emplace(repo_, title, way_.refs);
        } catch (const std::exception&) {
            recording.movedAside(moveBack(repo_, aside_, asideFolder(gitDirectory_, recording.id())));
            explainRefs(repo_, way_.refs);
            throw;
        }
        try {
            moveAll(repo_, gitDirectory_, way_, kept_, known_);
            refs->commit();
        } catch (const std::exception&) { // as on a full disk: files and refs belong together
            moveAllBack(repo_, gitDirectory_, way_, kept_, known_);
            recording.movedAside(moveBack(repo_, aside_, asideFolder(gitDirectory_, recording.id())));
            throw;
        }
        refs.reset();
        moveHead(repo_, way_.from.head, way_.to.head, title);
        if (way_.from.operationRefs != way_.to.operationRefs)
            restoreOperationRefs(repo_, gitDirectory_, {way_.to.operation, way_.to.operationRefs});
        done.hasMovedStashes = moveStashes(repo_, way_.to);
        if (movesFiles(way_))
            done.submodules = movedSubmodules(repo_, filesOf(way_));
        moveSettings(repo_, way_.from, way_.to);
    }

    void bringKeptBack(const UndoStep& step, TakenBack& done)
    {
        for (const Kept& kept : allKept(gitDirectory_)) {
            if (kept.name == step.kept)
                done.files = gitkit::bringBack(repo_, gitDirectory_, kept);
        }
        if (!done.files)
            throw GitError("undo", 1, "What was discarded is not kept any more.", ErrorKind::fileGone);
    }

    const GitRepository& repo_;
    fs::path gitDirectory_;
    UndoWay way_;
    Over over_;
    Names kept_;  ///< paths of files whose bytes are kept, sorted
    Names known_; ///< files that git does not know and that may be written over
    Names edited_;
    Names inTheWay_;
    Names aside_; ///< all that was moved aside, which a failure brings back
};

Names filesBelow(const fs::path& folder)
{
    Names paths;
    std::error_code failure;
    for (const auto& entry : fs::recursive_directory_iterator(folder, failure)) {
        if (kindAt(entry.path()) != FileKind::folder)
            paths.push_back(entry.path().lexically_relative(folder).string());
    }
    return paths;
}

std::optional<std::string> valueOf(const GitRepository& repo, const std::string& ref)
{
    const GitOutput found = repo.runner().output({"rev-parse", "--verify", "--quiet", ref}, helperOptions());
    return found.status == 0 ? std::optional(std::string(withoutLineEnd(found.stdoutBytes))) : std::nullopt;
}

/// Returns what brings the refs of a step without an end back to where they were.
std::vector<RefUpdate> backTo(const GitRepository& repo, const UndoStep& step)
{
    std::vector<RefUpdate> wanted = step.refs;
    const HeadPlace& head = step.before.head;
    if (wanted.empty() && !head.branch.empty() && !head.hash.empty())
        wanted.push_back({head.branch, head.hash, std::nullopt});
    std::vector<RefUpdate> updates;
    for (RefUpdate& ref : wanted) {
        std::optional<std::string> now = valueOf(repo, ref.name);
        if (now != ref.from)
            updates.push_back({std::move(ref.name), std::move(now), std::move(ref.from)});
    }
    return updates;
}

} // namespace

TakenBack takeBack(const GitRepository& repo, const fs::path& gitDirectory, const UndoStep& step,
                   const std::string& title, Over over)
{
    if (!step.after)
        throw UndoRefused(Cause::noEnd, {}, "The step has no end, so that it is not known what it has changed.");
    UndoWay way = reversed({step.before, *step.after, step.refs});
    if (concernsHead(way))
        requireSameHead(way.from, pointNow(repo, gitDirectory, {}));
    // What keeps the files of a discard fits them into what was written since.
    Moving moving(repo, gitDirectory, std::move(way), step.kept.empty() ? over : Over::edits);
    moving.check();
    return moving.run(step, title);
}

TakenBack restoreBefore(const GitRepository& repo, const fs::path& gitDirectory, const UndoStep& step,
                        const std::string& title)
{
    Names kept;
    if (!step.before.overlay.empty()) {
        for (OverlayFile& file : overlayFiles(repo, step.before.overlay))
            kept.push_back(std::move(file.path));
    }
    kept.insert(kept.end(), step.before.absent.begin(), step.before.absent.end());
    std::ranges::sort(kept);
    UndoScope scope{.movesFiles = !step.before.filesTree.empty(),
                    .movesIndex = !step.before.indexTree.empty(),
                    .overwrites = kept,
                    .touchesStashes = step.before.stashes.has_value(),
                    .touchesSettings = step.before.settings.has_value()};
    // What git had written when it was stopped is in no index yet.
    if (!step.target.empty() && scope.movesFiles) {
        for (const std::string& path : movedPaths(repo, {step.before.filesTree, step.target})) {
            if (kindAt(repo.root() / path) != FileKind::folder && !std::ranges::binary_search(kept, path))
                scope.overwrites.push_back(path);
        }
    }
    UndoWay way{pointNow(repo, gitDirectory, scope), step.before, {}};
    way.refs = backTo(repo, step);
    Moving moving(repo, gitDirectory, std::move(way), Over::edits);
    moving.check();
    UndoStep whole = step;
    whole.aside = filesBelow(asideFolder(gitDirectory, step.id)); // they were moved after the beginning was kept
    TakenBack done = moving.run(whole, title);
    leaveAsIs(repo, gitDirectory, step);
    return done;
}

void leaveAsIs(const GitRepository& repo, const fs::path& gitDirectory, const UndoStep& step)
{
    UndoStep closed = step;
    closed.after = pointNow(repo, gitDirectory, {});
    closed.kind = "interrupted";
    appendUndoEntry(repo, writeUndoRecord(repo, closed), "a " + step.id + ' ' + shownLine(step.title));
}

} // namespace gitkit
