// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/store/Conflicts.h"

#include "GitKit/repository/GitRepository.h"
#include "GitKit/repository/Resolving.h"
#include "app/store/Changes.h"
#include "app/store/ConflictWords.h"
#include "app/store/Failure.h"
#include "app/store/Snapshot.h"
#include "app/store/Undoables.h"
#include "app/store/WindowState.h"

#include <algorithm>
#include <memory>
#include <utility>

namespace plovik {

using gitkit::Conflict;
using gitkit::FileStamp;
using gitkit::GitRepository;

Conflicts::Conflicts(const GitAccess& git, WindowState& window, Snapshot& snapshot, Changes& changes)
    : git_(git), window_(window), snapshot_(snapshot), changes_(changes),
      reading_(git, &readConflicts, [this] { listRead(); }),
      resolved_(git, &readHasResolved, [this] { areResolved = resolved_.answer().value_or(false); })
{
    snapshot_.follow(
        {.beforeStatus = [this] { endedBeforeRead_ = changes_.ended(); }, .afterStatus = [this] { statusRead(); }});
    changes_.tellStops([this](const Failure& failure) { return takeFailure(failure); });
}

void Conflicts::statusRead()
{
    if (snapshot_.conflictCount() > 0) {
        reading_.askAgain(request());
    } else {
        reading_.forget();
        list = gitkit::ConflictList();
        if (!changes_.isTurnTaken())
            stash_.clear();
    }
    if (snapshot_.conflictCount() == 0 && snapshot_.inProgress.value() && snapshot_.inProgress.value()->canContinue()) {
        resolved_.askAgain({snapshot_.generation.value()});
    } else {
        resolved_.forget();
        areResolved = false;
    }
    showStop();
}

ConflictsRequest Conflicts::request() const
{
    return {snapshot_.gitDirectory().value_or(std::filesystem::path()), snapshot_.inProgress.value(), stash_};
}

void Conflicts::listRead()
{
    if (!reading_.answer() || snapshot_.conflictCount() == 0)
        return;
    const bool areNew = list.value().conflicts.empty();
    list = *reading_.answer();
    if (areNew)
        tellOfAutostash();
}

/// Tells where changes are that git has stashed for a rebase and could not bring back. It calls that a success.
void Conflicts::tellOfAutostash()
{
    const std::vector<gitkit::Stash>& stashes = snapshot_.stashes.value();
    const bool isSo = !snapshot_.inProgress.value() && stash_.empty() && !stashes.empty() &&
                      stashes.front().message == "autostash" && !list.value().conflicts.empty();
    if (!isSo)
        return;
    show(list.value().conflicts.front().path);
    window_.tell(tr("Your changes conflict with the new history. They are also safe in the stash “autostash”."));
}

const Conflict* Conflicts::find(const std::string& path) const
{
    const auto& all = list.value().conflicts;
    const auto own = std::ranges::lower_bound(all, path, {}, &Conflict::path);
    if (own != all.end() && own->path == path)
        return &*own;
    const auto found = std::ranges::find_if(all, [&path](const Conflict& conflict) {
        return std::ranges::find(conflict.related, path) != conflict.related.end();
    });
    return found == all.end() ? nullptr : &*found;
}

std::size_t Conflicts::count() const
{
    const std::size_t paths = snapshot_.conflictCount();
    const auto& all = list.value().conflicts;
    std::size_t known = 0;
    for (const Conflict& conflict : all)
        known += 1 + conflict.related.size();
    // Until the list is read that belongs to the status, each path counts.
    return known == paths ? all.size() : paths;
}

gitkit::MergeMarkers Conflicts::markers(const Conflict& conflict) const
{
    return gitkit::markersFor(list.value().names, conflict.markerSize);
}

int Conflicts::markerSize(const std::vector<std::string>& paths) const
{
    const Conflict* const known = paths.empty() ? nullptr : find(paths.front());
    return known ? known->markerSize : Conflict().markerSize;
}

// What is shown.

bool Conflicts::takeFailure(const Failure& failure)
{
    // With conflicts from before, git has only said that they are there.
    if (failure.kind != gitkit::ErrorKind::conflicts || snapshot_.conflictCount() > 0)
        return false;
    stop_ = std::make_unique<Failure>(failure);
    return true;
}

void Conflicts::showStop()
{
    // A status that began before the action ended does not know of its conflicts.
    if (!stop_ || changes_.isTurnTaken() || endedBeforeRead_ != changes_.ended())
        return;
    const std::unique_ptr<Failure> stop = std::move(stop_);
    const gitkit::ChangedFiles& files = snapshot_.status.value().files;
    if (!files.conflicted().empty()) {
        show(files[files.conflicted().front()].path);
        if (!snapshot_.inProgress.value())
            window_.tell(tr("Stopped with %Ln conflict(s).", nullptr, static_cast<int>(count())));
    } else if (snapshot_.inProgress.value()) {
        window_.select(SidebarItem::workingCopy());
        window_.tell(tr("Git has resolved all conflicts as you did before. Look at them, then continue."));
    } else {
        window_.report(*stop);
    }
}

void Conflicts::show(const std::string& path)
{
    window_.select(SidebarItem::workingCopy());
    window_.selectPaths({path});
}

void Conflicts::selectNext()
{
    const gitkit::ChangedFiles& files = snapshot_.status.value().files;
    if (files.conflicted().empty())
        return;
    std::vector<std::string> paths; // one of each conflict
    for (const std::uint32_t place : files.conflicted()) {
        const Conflict* const conflict = find(files[place].path);
        if (!conflict || conflict->path == files[place].path)
            paths.push_back(files[place].path);
    }
    if (paths.empty())
        paths.push_back(files[files.conflicted().front()].path);
    const std::set<std::string>& selected = window_.selectedPaths.value();
    std::string from = selected.empty() ? std::string() : *selected.rbegin();
    if (const Conflict* const conflict = find(from))
        from = conflict->path;
    const bool isShown = window_.selection.value() == SidebarItem::workingCopy();
    const auto next = std::ranges::upper_bound(paths, from);
    show(!isShown || next == paths.end() ? paths.front() : *next);
}

// What is done.

void Conflicts::resolve(const Conflict& conflict, std::string bytes, std::optional<FileStamp> seen)
{
    changes_.run({.verb = Verb::takeSide,
                  .operation = [conflict, bytes = std::move(bytes), seen = std::move(seen)](
                                   const GitRepository& repo) { gitkit::resolveWith(repo, conflict, bytes, seen); },
                  .undo = undoable::takeSide(conflict.allPaths())});
}

void Conflicts::keepResult(const Conflict& conflict, std::string bytes, std::optional<FileStamp> seen,
                           std::function<void(std::optional<FileStamp>)> kept)
{
    const auto stamp = std::make_shared<std::optional<FileStamp>>();
    const bool isRunning = changes_.run(
        {.verb = Verb::takeSide,
         .operation = [conflict, bytes = std::move(bytes), seen = std::move(seen),
                       stamp](const GitRepository& repo) { *stamp = gitkit::keepResult(repo, conflict, bytes, seen); },
         .ended =
             [stamp, kept] {
                 if (kept)
                     kept(*stamp);
             }});
    if (!isRunning && kept) // the user is asked first
        kept(std::nullopt);
}

void Conflicts::answer(const std::vector<Conflict>& conflicts, gitkit::ConflictAnswer answer)
{
    const std::string label = conflictWords::label(list.value().names.right);
    changes_.run(
        {.verb = Verb::takeSide,
         .operation = [conflicts, answer,
                       label](const GitRepository& repo) { gitkit::answerConflicts(repo, conflicts, answer, label); },
         .undo = undoable::answer(conflicts, answer, label)});
}

void Conflicts::startOverAt(const std::vector<std::string>& paths)
{
    changes_.run({.verb = Verb::takeSide,
                  .operation =
                      [paths, origin = request(), size = markerSize(paths)](const GitRepository& repo) {
                          gitkit::startOver(repo, paths, gitkit::markersFor(readConflictNames(repo, origin), size));
                      },
                  .undo = undoable::startOver(paths)});
}

void Conflicts::forgetResolution(const Conflict& conflict)
{
    changes_.run({.verb = Verb::takeSide,
                  .operation = [path = conflict.path, markers = markers(conflict)](
                                   const GitRepository& repo) { gitkit::forgetResolution(repo, path, markers); },
                  .undo = undoable::startOver({conflict.path})});
}

} // namespace plovik
