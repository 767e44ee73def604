// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/store/actions/Picks.h"

#include "GitKit/repository/GitRepository.h"
#include "GitKit/repository/Picking.h"
#include "app/store/Changes.h"
#include "app/store/ShownText.h"
#include "app/store/Snapshot.h"
#include "app/store/Undoables.h"
#include "app/store/WindowState.h"
#include "app/store/actions/Operation.h"
#include "app/store/actions/WaysOn.h"

#include <QCoreApplication>

#include <algorithm>
#include <functional>
#include <utility>

namespace plovik::actions {

using gitkit::Commit;
using gitkit::GitRepository;
using gitkit::Pick;

namespace {

struct PickTexts {
    Q_DECLARE_TR_FUNCTIONS(plovik::Refs)
};

enum class Direction { pick, revert };

QString shownCommits(const Pick& pick)
{
    return pick.commits.size() == 1 ? shownText(gitkit::shortHash(pick.commits.front()))
                                    : PickTexts::tr("%Ln commit(s)", nullptr, static_cast<int>(pick.commits.size()));
}

/// Returns a command that lists the files which the commits have changed.
std::vector<std::string> filesChangedBy(const Pick& pick)
{
    if (pick.parent > 0) {
        const std::string& merge = pick.commits.front();
        return {"diff-tree",
                "--name-only",
                "-z",
                "--no-renames",
                "--no-ext-diff",
                "-r",
                merge + '^' + std::to_string(pick.parent),
                merge,
                "--"};
    }
    std::vector<std::string> command{"log", "--no-walk",    "--format=",    "--name-only",
                                     "-z",  "--no-renames", "--no-ext-diff"};
    command.insert(command.end(), pick.commits.begin(), pick.commits.end());
    command.emplace_back("--");
    return command;
}

/// Offers to skip a commit that changes nothing here. Left alone, the bar of the operation skips it.
std::function<bool(const Failure&)> skippingEmpty(Actors actors, const Pick& pick)
{
    return [actors, pick](const Failure& failure) {
        if (failure.kind != gitkit::ErrorKind::nothingToDo)
            return false;
        askToSkip(actors,
                  pick.commits.size() == 1
                      ? PickTexts::tr("%1 would change nothing here. It can be skipped.").arg(shownCommits(pick))
                      : PickTexts::tr("One of the commits would change nothing here. It can be skipped."));
        return true;
    };
}

void begin(Actors actors, const Pick& pick, Direction direction)
{
    const bool picks = direction == Direction::pick;
    const QString shown = shownCommits(pick);
    Change change{.verb = picks ? Verb::cherryPick : Verb::revert,
                  .title = picks ? PickTexts::tr("Cherry-picking…") : PickTexts::tr("Reverting…"),
                  .operation =
                      [pick, picks](const GitRepository& repo) {
                          if (picks)
                              gitkit::cherryPick(repo, pick);
                          else
                              gitkit::revert(repo, pick);
                      },
                  .undo = picks ? undoable::cherryPick(pick) : undoable::revert(pick),
                  .failed = skippingEmpty(actors, pick)};
    actors.changes.run(waysOn::offeringStash(actors, std::move(change),
                                             {.message = picks ? PickTexts::tr("Before cherry-pick of %1").arg(shown)
                                                               : PickTexts::tr("Before revert of %1").arg(shown),
                                              .listing = filesChangedBy(pick)}));
}

/// Asks whose side a merge is seen from.
QCoro::Task<> askingForParent(Actors actors, Commit merge, Direction direction)
{
    std::vector<std::string> names;
    std::optional<Failure> failure;
    try {
        names = co_await actors.git.read(&gitkit::parentNames, merge.hash);
    } catch (const std::exception& thrown) {
        failure = failureOf(thrown);
    }
    if (failure || names.empty()) {
        actors.window.report(failure.value_or(Failure{}));
        co_return;
    }
    Confirmation question;
    question.title = direction == Direction::pick
                         ? PickTexts::tr("Cherry-pick the merge %1").arg(inQuotes(merge.subject))
                         : PickTexts::tr("Revert the merge %1").arg(inQuotes(merge.subject));
    question.message =
        PickTexts::tr("A merge has changes against each of its parents. Seen from a branch, its changes are "
                      "those that came from the others.");
    if (direction == Direction::revert)
        question.detail =
            PickTexts::tr("Merging the same branch again later will not bring its changes back. Revert this "
                          "revert instead.");
    question.risk = Confirmation::Risk::none;
    for (std::size_t index = 0; index < names.size(); ++index) {
        const Way way{PickTexts::tr("As Seen from %1").arg(shownText(names[index])),
                      [actors, direction, pick = Pick{{merge.hash}, static_cast<int>(index) + 1}] {
                          begin(actors, pick, direction);
                      }};
        if (index == 0) {
            question.actionTitle = way.title;
            question.action = way.action;
        } else {
            question.choices.push_back(way);
        }
    }
    actors.window.ask(std::move(question));
}

void beginOrAsk(Actors actors, const std::vector<Commit>& commits, Direction direction)
{
    if (!cannotPick(commits).isEmpty())
        return;
    if (commits.front().parents.size() > 1) {
        launch(askingForParent(actors, commits.front(), direction));
        return;
    }
    Pick pick;
    for (const Commit& commit : commits)
        pick.commits.insert(pick.commits.begin(), commit.hash);
    begin(actors, pick, direction);
}

} // namespace

void cherryPick(Actors actors, const std::string& hash) { begin(actors, {{hash}}, Direction::pick); }

void revert(Actors actors, const std::string& hash) { begin(actors, {{hash}}, Direction::revert); }

void cherryPick(Actors actors, const std::vector<Commit>& commits) { beginOrAsk(actors, commits, Direction::pick); }

void revert(Actors actors, const std::vector<Commit>& commits) { beginOrAsk(actors, commits, Direction::revert); }

QString cannotPick(const std::vector<Commit>& commits)
{
    if (commits.empty())
        return PickTexts::tr("No commit is selected.");
    const bool hasMerge = std::ranges::any_of(commits, [](const Commit& one) { return one.parents.size() > 1; });
    return hasMerge && commits.size() > 1
               ? PickTexts::tr(
                     "There is a merge among them, which has changes against each of its parents. Take it alone.")
               : QString();
}

} // namespace plovik::actions
