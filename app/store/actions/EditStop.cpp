// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/store/actions/EditStop.h"

#include "GitKit/repository/EditStop.h"
#include "GitKit/repository/GitRepository.h"
#include "app/store/Changes.h"
#include "app/store/ShownText.h"
#include "app/store/Snapshot.h"
#include "app/store/Undoables.h"

#include <QCoreApplication>

namespace plovik::actions {

namespace {

struct EditTexts {
    Q_DECLARE_TR_FUNCTIONS(plovik::EditStop)
};

} // namespace

QString editedCommit(const Snapshot& snapshot)
{
    const auto& now = snapshot.inProgress.value();
    if (!now || !now->edits)
        return {};
    const bool isNamed = now->stop && !now->stop->subject.empty();
    return isNamed ? inQuotes(now->stop->subject) : shownText(gitkit::shortHash(*now->edits));
}

bool canBecomePart(const Snapshot& snapshot)
{
    const auto& now = snapshot.inProgress.value();
    return now && now->edits && now->edits == snapshot.status.value().oid;
}

void takeApart(Actors actors)
{
    if (!canBecomePart(actors.snapshot) || !actors.changes.offers(Verb::reset))
        return;
    const gitkit::OperationInProgress now = *actors.snapshot.inProgress.value();
    const QString commit = editedCommit(actors.snapshot);
    actors.changes.run({.verb = Verb::reset,
                        .title = EditTexts::tr("Taking %1 apart…").arg(commit),
                        .operation = [now](const gitkit::GitRepository& repo) { gitkit::takeApart(repo, now); },
                        .undo = undoable::takeApart(commit)});
}

} // namespace plovik::actions
