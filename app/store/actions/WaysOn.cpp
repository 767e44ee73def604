// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/store/actions/WaysOn.h"

#include "GitKit/repository/GitRepository.h"
#include "GitKit/repository/StashedAway.h"
#include "GitKit/repository/Upstream.h"
#include "app/store/ShownText.h"
#include "app/store/Undoables.h"
#include "app/store/WindowState.h"

#include <atomic>
#include <memory>
#include <utility>

namespace plovik::waysOn {

using gitkit::ErrorKind;
using gitkit::GitRepository;
using gitkit::StashedAway;

namespace {

struct WayTexts {
    Q_DECLARE_TR_FUNCTIONS(plovik::WaysOn)
};

/// Says where changes are that are not back as they were; empty when they are.
QString whereChangesAre(StashedAway fate, const QString& stash)
{
    switch (fate) {
    case StashedAway::nothing:
        return {};
    case StashedAway::kept:
        return WayTexts::tr("Your changes are in the stash %1.").arg(inQuotes(stash));
    case StashedAway::conflicting:
        return WayTexts::tr("Your changes are in conflict with what came. They are also safe in the stash %1.")
            .arg(inQuotes(stash));
    case StashedAway::unstaged:
        return WayTexts::tr("Your changes are back, but what was staged could not be staged again. It is also safe in "
                            "the stash %1.")
            .arg(inQuotes(stash));
    }
    return {};
}

Change betweenStashes(WindowState& window, Change change, const QString& message)
{
    const auto fate = std::make_shared<std::atomic<StashedAway>>(StashedAway::nothing);
    change.operation = [operation = change.operation, text = message.toStdString(), fate](const GitRepository& repo) {
        gitkit::runBetweenStashes(repo, text, operation, *fate);
    };
    if (change.undo)
        change.undo = undoable::betweenStashes(*std::move(change.undo));
    change.ended = [&window, ended = change.ended, message, fate] {
        if (ended)
            ended();
        if (const QString sentence = whereChangesAre(*fate, message); !sentence.isEmpty())
            window.tell(sentence);
    };
    return change;
}

QCoro::Task<> askingToStash(Actors actors, Failure failure, Change change, StashOffer offer)
{
    std::vector<std::string> files;
    try {
        files = co_await actors.git.read(&gitkit::changedInTheWay, offer.listing);
    } catch (const std::exception&) {
        files.clear();
    }
    if (files.empty()) { // only in submodules, or gone meanwhile
        actors.window.report(failure);
        co_return;
    }
    Confirmation question;
    question.title = WayTexts::tr("%Ln changed file(s) are in the way", nullptr, static_cast<int>(files.size()));
    question.message = WayTexts::tr("Your changes can be stashed first and applied again afterwards. If they do not "
                                    "fit any more, the stash stays.");
    question.detail = namesInLines(files);
    question.actionTitle = WayTexts::tr("Stash and Continue");
    question.risk = Confirmation::Risk::none;
    question.action = [actors, change, offer] {
        Change stashing = betweenStashes(actors.window, change, offer.message);
        if (offer.begin)
            offer.begin(std::move(stashing));
        else
            actors.changes.run(std::move(stashing));
    };
    actors.window.ask(std::move(question));
}

/// Returns what is known of the upstream; nullopt where that cannot be read.
QCoro::Task<std::optional<gitkit::Upstream>> readingUpstream(Actors actors)
{
    std::optional<gitkit::Upstream> upstream;
    try {
        upstream = co_await actors.git.read(&gitkit::upstreamNow);
    } catch (const std::exception&) {
        upstream.reset();
    }
    co_return upstream;
}

QCoro::Task<> askingHowToPull(Actors actors, Failure failure, PullAgain pull)
{
    const std::optional<gitkit::Upstream> upstream = co_await readingUpstream(actors);
    if (!upstream || upstream->counts.ahead == 0 || upstream->counts.behind == 0) {
        actors.window.report(failure);
        co_return;
    }
    const QString theirs = shownText(upstream->name);
    const auto isRemembered = std::make_shared<bool>(false);
    Confirmation question;
    question.title = WayTexts::tr("%1 and %2 have diverged").arg(shownText(upstream->branch), theirs);
    question.message =
        WayTexts::tr("Merge joins both sides in a new commit. Rebase makes your commits anew on top of theirs.");
    question.detail = WayTexts::tr("%Ln commit(s) only here", nullptr, upstream->counts.ahead) + u'\n' +
                      WayTexts::tr("%Ln commit(s) only on %1", nullptr, upstream->counts.behind).arg(theirs);
    question.actionTitle = WayTexts::tr("Merge");
    question.action = [pull, isRemembered] { pull(gitkit::PullBy::merging, *isRemembered); };
    question.choices.push_back(
        {WayTexts::tr("Rebase"), [pull, isRemembered] { pull(gitkit::PullBy::rebasing, *isRemembered); }});
    // Where pull.ff says that a pull only fast-forwards, pull.rebase would change nothing.
    if (!upstream->mustForward)
        question.option = {WayTexts::tr("Remember for this repository (sets pull.rebase)"),
                           [isRemembered](bool isTicked) { *isRemembered = isTicked; }};
    question.risk = Confirmation::Risk::none;
    actors.window.ask(std::move(question));
}

} // namespace

Change offeringStash(Actors actors, Change change, StashOffer offer)
{
    Change offering = change;
    offering.failed = [actors, change = std::move(change), offer = std::move(offer)](const Failure& failure) {
        if (failure.kind != ErrorKind::wouldOverwriteLocalChanges)
            return change.failed && change.failed(failure);
        launch(askingToStash(actors, failure, change, offer));
        return true;
    };
    return offering;
}

Change tellingUpToDate(WindowState& window, Change change)
{
    const auto hasMoved = std::make_shared<std::atomic_bool>(false);
    change.operation = [operation = change.operation, hasMoved](const GitRepository& repo) {
        const std::string before = gitkit::headCommit(repo);
        operation(repo);
        *hasMoved = gitkit::headCommit(repo) != before;
    };
    change.succeeded = [&window, succeeded = change.succeeded, hasMoved] {
        if (succeeded)
            succeeded();
        if (!*hasMoved)
            window.tell(WayTexts::tr("Already up to date."));
    };
    return change;
}

void askHowToPull(Actors actors, const Failure& failure, PullAgain pull)
{
    launch(askingHowToPull(actors, failure, std::move(pull)));
}

} // namespace plovik::waysOn
