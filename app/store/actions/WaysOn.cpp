// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/store/actions/WaysOn.h"

#include "GitKit/repository/GitRepository.h"
#include "GitKit/repository/StashedAway.h"
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
    question.title = WayTexts::tr("%n changed file(s) are in the way", nullptr, static_cast<int>(files.size()));
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

} // namespace plovik::waysOn
