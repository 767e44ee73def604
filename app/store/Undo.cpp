// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/store/Undo.h"

#include "GitKit/repository/Folders.h"
#include "GitKit/repository/GitRepository.h"
#include "GitKit/undo/StepFiles.h"
#include "GitKit/undo/TakeBack.h"
#include "GitKit/undo/UndoJournal.h"
#include "GitKit/undo/UndoRefused.h"
#include "app/store/Changes.h"
#include "app/store/ShownText.h"
#include "app/store/Snapshot.h"
#include "app/store/WindowState.h"
#include "app/store/readers/StepReaders.h"

#include <algorithm>
#include <iterator>
#include <memory>
#include <utility>

using namespace Qt::StringLiterals;

namespace plovik {

using gitkit::GitRepository;
using gitkit::UndoStep;
using Cause = gitkit::UndoRefused::Cause;

namespace {

/// What the worker finds out while it takes a step back.
struct Attempt {
    gitkit::TakenBack done;
    std::vector<UndoStep> steps; ///< those that taking back has made, the oldest first
    std::optional<UndoStep> refused;
    Cause cause = Cause::noEnd;
    std::vector<std::string> names;
};

QString titleOf(const UndoStep& step) { return shownText(step.title); }

const UndoStep* found(const std::vector<UndoStep>& steps, const std::string& id)
{
    const auto place = std::ranges::find(steps, id, &UndoStep::id);
    return place == steps.end() ? nullptr : &*place;
}

/// Commits that the user has made, which a remote may have by now.
bool makesCommit(const UndoStep& step)
{
    return step.kind == "commit" || step.kind == "amend" || step.kind == "merge" || step.kind == "cherry-pick" ||
           step.kind == "revert";
}

/// Returns the branches that a step may have moved to something else than what comes on top of them.
std::vector<std::string> rewrittenBy(const UndoStep& step)
{
    constexpr std::string_view heads = "refs/heads/";
    std::vector<std::string> names;
    if (isPublished(step) || (makesCommit(step) && step.kind != "amend") || step.kind == "fast-forward")
        return names;
    for (const gitkit::RefUpdate& ref : step.refs) {
        if (ref.name.starts_with(heads) && ref.from && ref.to)
            names.push_back(ref.name);
    }
    return names;
}

/// Returns the end of a branch's full name, as it is shown.
QString shortName(const std::string& fullName)
{
    constexpr std::string_view heads = "refs/heads/";
    constexpr std::string_view tags = "refs/tags/";
    for (const std::string_view beginning : {heads, tags}) {
        if (fullName.starts_with(beginning))
            return shownText(fullName.substr(beginning.size()));
    }
    return shownText(fullName);
}

} // namespace

Undo::Undo(const GitAccess& git, WindowState& window, Snapshot& snapshot, Changes& changes, gitkit::Trash trash)
    : git_(git), window_(window), snapshot_(snapshot), changes_(changes), trash_(std::move(trash))
{
    changes_.tellKept([this](const StepKeeping& keeping) { kept(keeping); });
    snapshot_.follow({.afterStatus = [this] { readElsewhere(); }, .afterListings = [this] { return beginning(); }});
}

/// What earlier windows have kept is read once, and nobody waits for it.
QCoro::Task<> Undo::beginning()
{
    if (!std::exchange(hasBegun_, true))
        launch(reading());
    co_return;
}

QCoro::Task<> Undo::reading()
{
    std::vector<UndoStep> read;
    try {
        read = co_await git_.read(&readSteps);
    } catch (const std::exception&) {
        co_return; // what is done from now on can be undone all the same
    }
    // What was done meanwhile may be in it, with and without its end.
    std::erase_if(read, [this](const UndoStep& step) { return found(steps_, step.id); });
    const bool isNew = steps_.empty() && !changes_.isTurnTaken();
    if (isNew && !read.empty() && !read.front().after) {
        interrupted_ = read.front();
        interrupted = titleOf(read.front());
    }
    std::erase_if(read, [](const UndoStep& step) { return !step.after; });
    steps_.insert(steps_.end(), std::make_move_iterator(read.begin()), std::make_move_iterator(read.end()));
    show();
    if (snapshot_.gitDirectory() && trash_)
        co_await git_.run<void>(Worker::Lane::shortRead, [directory = *snapshot_.gitDirectory(), trash = trash_] {
            gitkit::clearAside(directory, trash);
        });
}

void Undo::show()
{
    const UndoStep* const undone = gitkit::nextUndo(steps_);
    const UndoStep* const redone = gitkit::nextRedo(steps_);
    undoTitle = undone ? std::optional(titleOf(actionOf(steps_, *undone))) : std::nullopt;
    redoTitle = redone ? std::optional(titleOf(actionOf(steps_, *redone))) : std::nullopt;
    if (isShown_)
        timeline = std::make_shared<const std::vector<TimelineRow>>(timelineRows(steps_, elsewhere_));
}

QString Undo::whyNoUndo() const
{
    const auto published = std::ranges::find_if(steps_, &gitkit::isPublished);
    return published != steps_.end() && !undoTitle.value()
               ? tr("%1 cannot be undone from here.").arg(inQuotes(published->title))
               : tr("There is nothing to undo.");
}

// Keeping.

void Undo::kept(const StepKeeping& keeping)
{
    if (!keeping.problem().empty() && !keeping.what().takesWork && !keeping.what().done.isEmpty())
        window_.tell(tr("%1 This step cannot be undone: %2")
                         .arg(keeping.what().done, failureOf(std::runtime_error(keeping.problem())).message));
    if (!keeping.step())
        return;
    add(*keeping.step());
    if (!keeping.movedIgnored().empty())
        tellMovedAside(keeping.movedIgnored());
    if (!keeping.what().done.isEmpty())
        said = Said{++lastSaid_, keeping.what().done,
                    isPublished(*keeping.step()) ? Said::Offer::none : Said::Offer::undo, rewrittenBy(*keeping.step()),
                    keeping.what().pushed ? std::optional(*keeping.what().pushed) : std::nullopt};
}

void Undo::add(UndoStep step)
{
    steps_.insert(steps_.begin(), std::move(step));
    show();
}

void Undo::tellMovedAside(const std::vector<std::string>& paths)
{
    window_.tell(tr("Moved %Ln ignored file(s) out of the way: %1. Undo brings them back.", nullptr,
                    static_cast<int>(paths.size()))
                     .arg(namesOfFiles(paths)));
}

void Undo::say(const QString& sentence, Said::Offer offer) { said = Said{++lastSaid_, sentence, offer}; }

// Undo and redo.

void Undo::undo()
{
    const UndoStep* const step = gitkit::nextUndo(steps_);
    if (!step) {
        window_.tell(whyNoUndo());
        return;
    }
    if (!makesCommit(actionOf(steps_, *step)) || !isOnUpstream()) {
        takeBack({*step}, Direction::undo, false);
        return;
    }
    Confirmation question;
    question.title =
        tr("%1 is on %2").arg(inQuotes(actionOf(steps_, *step).title), shownText(*snapshot_.status.value().upstream));
    question.message = tr("Undo moves only your branch; pulling will bring the commit back.");
    question.actionTitle = tr("Undo");
    question.risk = Confirmation::Risk::none;
    question.action = [this, step = *step] { takeBack({step}, Direction::undo, false); };
    window_.ask(std::move(question));
}

/// Returns whether the upstream branch has what is checked out, as far as it was fetched.
bool Undo::isOnUpstream() const
{
    const gitkit::RepoStatus& now = snapshot_.status.value();
    if (!now.upstream || !now.branch || !now.oid)
        return false;
    const auto& remote = snapshot_.remoteBranches.value();
    const auto upstream = std::ranges::find(remote, *now.upstream, &gitkit::GitRef::name);
    const auto& local = snapshot_.branches.value();
    const auto branch = std::ranges::find(local, *now.branch, &gitkit::GitRef::name);
    return (upstream != remote.end() && upstream->hash == *now.oid) ||
           (branch != local.end() && branch->ahead == 0 && branch->behind > 0);
}

void Undo::redo()
{
    if (const UndoStep* const step = gitkit::nextRedo(steps_))
        takeBack({*step}, Direction::redo, false);
}

/// Takes steps back, the newest first, as far as that is possible.
void Undo::takeBack(std::vector<UndoStep> steps, Direction direction, bool overEdits)
{
    said = std::nullopt;
    struct Named {
        UndoStep step;
        std::string title;
    };
    std::vector<Named> named;
    for (UndoStep& step : steps) {
        const QString title = titleOf(actionOf(steps_, step));
        named.push_back({std::move(step),
                         (direction == Direction::undo ? tr("Undo: %1") : tr("Redo: %1")).arg(title).toStdString()});
    }
    const auto attempt = std::make_shared<Attempt>();
    changes_.run({.verb = Verb::undo,
                  .title = direction == Direction::undo ? tr("Undoing…") : tr("Redoing…"),
                  .operation =
                      [named, attempt, overEdits, known = snapshot_.gitDirectory()](const GitRepository& repo) {
                          const auto directory = known ? *known : gitkit::gitDirectories(repo).own;
                          for (const Named& each : named) {
                              try {
                                  attempt->done =
                                      gitkit::takeBack(repo, directory, each.step, each.title,
                                                       overEdits ? gitkit::Over::edits : gitkit::Over::nothing);
                              } catch (const gitkit::UndoRefused& refused) {
                                  attempt->refused = each.step;
                                  attempt->cause = refused.cause();
                                  attempt->names = refused.names();
                                  throw;
                              }
                              if (attempt->done.step)
                                  attempt->steps.push_back(*attempt->done.step);
                          }
                      },
                  .succeeded = [this, attempt, last = named.back().step,
                                direction] { tellTakenBack(last, attempt->done, direction); },
                  .failed =
                      [this, attempt, direction](const Failure&) {
                          if (attempt->refused)
                              explain(*attempt->refused, direction, attempt->cause, attempt->names);
                          return attempt->refused.has_value();
                      },
                  .ended =
                      [this, attempt] {
                          for (UndoStep& step : attempt->steps)
                              add(std::move(step));
                      }});
}

void Undo::tellTakenBack(const UndoStep& taken, const gitkit::TakenBack& done, Direction direction)
{
    const UndoStep& action = actionOf(steps_, done.step ? *done.step : taken);
    if (done.files && whenFilesBack_)
        whenFilesBack_({taken.kept, done.files->left, taken.date}, *done.files);
    if (!done.step) // nothing of it fits any more
        return;
    if (whenTakenBack_)
        whenTakenBack_(action, direction == Direction::undo);
    if (!done.left.empty())
        window_.tell(
            tr("%1: still out of the way, because something else stands there now.").arg(namesOfFiles(done.left)));
    else if (!done.aside.empty())
        tellMovedAside(done.aside);
    else if (!done.submodules.empty())
        window_.tell(
            tr("What is checked out inside %1 stays as it is.", "submodules").arg(namesOfFiles(done.submodules)));
    else if (done.hasMovedStashes)
        window_.tell(tr("The stash is back, on top of the others."));
    say((direction == Direction::undo ? tr("Undone: %1.") : tr("Done again: %1.")).arg(titleOf(action)),
        direction == Direction::undo ? (redoTitle.value() ? Said::Offer::redo : Said::Offer::none) : Said::Offer::undo);
}

/// Says why a step was not taken back, and offers a way on.
void Undo::explain(const UndoStep& step, Direction direction, Cause cause, const std::vector<std::string>& names)
{
    const QString title = inQuotes(actionOf(steps_, step).title);
    const auto count = static_cast<int>(names.size());
    Confirmation question;
    question.risk = Confirmation::Risk::none;
    if (cause == Cause::editedFiles || cause == Cause::inTheWay) {
        question.title = cause == Cause::editedFiles ? tr("%Ln file(s) were edited after %1", nullptr, count).arg(title)
                                                     : tr("%Ln file(s) are in the way", nullptr, count);
        question.message = cause == Cause::editedFiles
                               ? (direction == Direction::undo
                                      ? tr("Undo would take those edits back too; they stay in the timeline.")
                                      : tr("Redo would take those edits back too; they stay in the timeline."))
                               : tr("Git does not know them, and files of the same names would come in their places. "
                                    "They are moved aside, and come back when this is taken back.");
        question.detail = namesOfFiles(names);
        question.actionTitle = direction == Direction::undo ? tr("Undo All the Same") : tr("Redo All the Same");
        question.action = [this, step, direction] { takeBack({step}, direction, true); };
        window_.ask(std::move(question));
        return;
    }
    question.title = (direction == Direction::undo ? tr("Cannot undo %1") : tr("Cannot redo %1")).arg(title);
    question.message = reason(cause, names);
    question.actionTitle = tr("Show in Timeline");
    question.action = [this, id = actionOf(steps_, step).id] {
        meant = Meant{meant.value().number + 1, id};
        window_.goTo(SidebarItem::timeline());
    };
    if (cause == Cause::checkedOut) {
        if (const auto way = window_.wayToWindow(names.back()))
            question.choices.push_back(*way);
    }
    if (cause == Cause::takenNames && !step.refs.empty())
        offerOtherName(question, step, names);
    window_.ask(std::move(question));
}

QString Undo::reason(Cause cause, const std::vector<std::string>& names)
{
    switch (cause) {
    case Cause::movedRefs:
        return tr("%1 has moved since, by something that was done elsewhere.").arg(shortName(names.front()));
    case Cause::takenNames:
        return tr("%1 was made again since.").arg(shortName(names.front()));
    case Cause::otherHead:
        return tr("Something else is checked out by now.");
    case Cause::otherState:
        return tr("A merge or another operation has begun, gone on or ended since.");
    case Cause::checkedOut:
        return tr("%1 is checked out in %2.").arg(shortName(names.front()), inQuotes(names.back()));
    case Cause::editedFiles:
    case Cause::inTheWay:
    case Cause::noEnd:
        break;
    }
    return tr("It is not known what it has changed, because it has no end.");
}

/// A branch whose name is taken comes back under another one.
void Undo::offerOtherName(Confirmation& question, const UndoStep& step, const std::vector<std::string>& names)
{
    const auto taken = std::ranges::find(step.refs, names.front(), &gitkit::RefUpdate::name);
    constexpr std::string_view heads = "refs/heads/";
    if (taken == step.refs.end() || !taken->from || !taken->name.starts_with(heads))
        return;
    std::string name;
    for (int number = 2; name.empty() || snapshot_.hasRef(std::string(heads) + name); ++number)
        name = taken->name.substr(heads.size()) + '-' + std::to_string(number);
    const auto restore = [this, name, hash = *taken->from] {
        changes_.run({.verb = Verb::createBranch,
                      .title = tr("Creating branch…"),
                      .operation = [name, hash](const GitRepository& repo) {
                          repo.createBranch(name, hash, gitkit::AfterCreating::stay);
                      }});
    };
    question.choices.push_back({tr("Restore as %1").arg(inQuotes(name)), restore});
}

// The timeline.

void Undo::showTimeline()
{
    isShown_ = true;
    show();
    readElsewhere();
}

void Undo::readElsewhere()
{
    if (isShown_ && window_.selection.value() == SidebarItem::timeline())
        launch(readingElsewhere());
}

QCoro::Task<> Undo::readingElsewhere()
{
    std::vector<HeadLogEntry> log;
    try {
        log = co_await git_.read(&readHeadLog);
    } catch (const std::exception&) {
        co_return; // the steps made here are shown all the same
    }
    elsewhere_ = rowsElsewhere(std::move(log), steps_);
    show();
}

void Undo::confirmUndoTo(const std::string& id)
{
    std::vector<UndoStep> all;
    std::vector<UndoStep> left = steps_;
    std::erase_if(left, &gitkit::isPublished);
    while (const UndoStep* const next = gitkit::nextUndo(left)) {
        const bool isLast = gitkit::actionOf(left, *next).id == id;
        all.push_back(*next);
        if (isLast)
            break;
        UndoStep undone;
        undone.id = "undo " + next->id;
        undone.undoes = next->id;
        undone.after.emplace();
        left.insert(left.begin(), std::move(undone));
    }
    if (all.empty() || gitkit::actionOf(steps_, all.back()).id != id)
        return;
    QStringList titles;
    for (const UndoStep& step : all)
        titles.append(titleOf(actionOf(steps_, step)));
    const auto count = static_cast<int>(all.size());
    Confirmation question;
    question.title = tr("Undo %Ln step(s)?", nullptr, count);
    question.message = tr("Each is a step of its own in the timeline, and can be done again.");
    question.detail = titles.join(u'\n');
    question.actionTitle = tr("Undo");
    question.risk = Confirmation::Risk::none;
    question.action = [this, all = std::move(all)] { takeBack(all, Direction::undo, false); };
    window_.ask(std::move(question));
}

void Undo::forgotten(const std::string& id)
{
    std::erase_if(steps_, [&id](const UndoStep& step) { return step.id == id; });
    show();
}

// A step without an end.

void Undo::restoreInterrupted() { closeInterrupted(true); }

void Undo::leaveInterrupted() { closeInterrupted(false); }

void Undo::closeInterrupted(bool restores)
{
    if (!interrupted_)
        return;
    const auto done = std::make_shared<gitkit::TakenBack>();
    changes_.run({.verb = Verb::undo,
                  .title = restores ? tr("Restoring…") : QString(),
                  .operation =
                      [step = *interrupted_, restores, done, title = tr("Restored: %1").arg(interrupted.value()),
                       known = snapshot_.gitDirectory()](const GitRepository& repo) {
                          const auto directory = known ? *known : gitkit::gitDirectories(repo).own;
                          if (restores)
                              *done = gitkit::restoreBefore(repo, directory, step, title.toStdString());
                          else
                              gitkit::leaveAsIs(repo, directory, step);
                      },
                  .succeeded =
                      [this, done] {
                          const QString title = inQuotes(titleOf(*interrupted_));
                          interrupted_.reset();
                          interrupted = QString();
                          if (!done->step)
                              return;
                          add(*done->step);
                          say(tr("Restored the state before %1.").arg(title), Said::Offer::none);
                      }});
}

} // namespace plovik
