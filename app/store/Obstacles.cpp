// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/store/Obstacles.h"

#include "app/store/Changes.h"
#include "app/store/ShownText.h"
#include "app/store/Snapshot.h"

#include <QCoreApplication>

namespace plovik {

namespace {

using Kind = gitkit::OperationInProgress::Kind;

struct Texts {
    Q_DECLARE_TR_FUNCTIONS(plovik::Obstacles)
};

QString conflictsLeft(const Snapshot& now)
{
    return now.conflictCount() > 0 ? Texts::tr("Resolve and stage the conflicted files first") : QString();
}

bool isIn(const Snapshot& now, Kind kind) { return now.inProgress.value() && now.inProgress.value()->kind == kind; }

QString unfinished(const Snapshot& now)
{
    if (isIn(now, Kind::merge))
        return Texts::tr("Continue or abort the merge first");
    return isIn(now, Kind::cherryPick) ? Texts::tr("Continue or abort the cherry-pick first") : QString();
}

/// Git ends these without a word when another branch is checked out or changes are stashed.
QString wouldEnd(const Snapshot& now)
{
    return isIn(now, Kind::revert) ? Texts::tr("Continue or abort the revert first") : unfinished(now);
}

/// No operation survives that the current branch is moved under it.
QString inProgress(const Snapshot& now)
{
    if (!now.inProgress.value())
        return {};
    switch (now.inProgress.value()->kind) {
    case Kind::rebase:
        return Texts::tr("Continue or abort the rebase first");
    case Kind::applyPatches:
        return Texts::tr("Continue or abort applying the patches first");
    case Kind::bisect:
        return Texts::tr("End the bisect first");
    case Kind::merge:
    case Kind::cherryPick:
    case Kind::revert:
        break;
    }
    return wouldEnd(now);
}

QString noUpstream(const Snapshot& now)
{
    // Before the first read, and when a read fails, nothing is known of the remotes.
    if (!now.hasLoaded.value() || !now.readProblem.value().isEmpty())
        return {};
    const gitkit::RepoStatus& status = now.status.value();
    if (!status.branch)
        return Texts::tr("HEAD is detached. Check out a branch first.");
    if (status.upstream)
        return {};
    return now.remotes.value().empty()
               ? Texts::tr("This repository has no remote.")
               : Texts::tr("%1 has no branch to pull from. Push it first.").arg(inQuotes(*status.branch));
}

QString noReceiver(const Snapshot& now)
{
    if (!now.hasLoaded.value() || !now.readProblem.value().isEmpty())
        return {};
    const gitkit::RepoStatus& status = now.status.value();
    if (!status.branch)
        return Texts::tr("HEAD is detached. Check out a branch first.");
    if (!status.hasCommits())
        return Texts::tr("Nothing has been committed yet.");
    return status.upstream || !now.remotes.value().empty() ? QString() : Texts::tr("This repository has no remote.");
}

QString firstOf(const QString& one, const QString& other) { return one.isEmpty() ? other : one; }

QString refusal(const Snapshot& now, Verb verb)
{
    switch (verb) {
    case Verb::commit:
    case Verb::cherryPick:
    case Verb::revert:
    case Verb::applyStash:
        return conflictsLeft(now);
    case Verb::checkOut:
    case Verb::checkOutRequest:
        return firstOf(conflictsLeft(now), wouldEnd(now));
    case Verb::amend:
    case Verb::merge:
        return firstOf(conflictsLeft(now), unfinished(now));
    case Verb::rebase:
    case Verb::rewrite:
    case Verb::applyMails:
        return firstOf(conflictsLeft(now), inProgress(now));
    case Verb::moveBranch: // it may be the one that is being rebased
        return isIn(now, Kind::rebase) ? inProgress(now) : QString();
    case Verb::reset:
        return now.status.value().hasCommits() ? inProgress(now) : Texts::tr("Nothing has been committed yet.");
    case Verb::pull:
        return firstOf(noUpstream(now), firstOf(conflictsLeft(now), unfinished(now)));
    case Verb::push:
        return noReceiver(now);
    case Verb::saveStash:
        return now.status.value().hasCommits() ? firstOf(conflictsLeft(now), wouldEnd(now))
                                               : Texts::tr("Nothing has been committed yet.");
    default:
        return {};
    }
}

} // namespace

QString obstacle(const Changes& changes, const Snapshot& now, Verb verb)
{
    return firstOf(changes.whyNot(verb), refusal(now, verb));
}

} // namespace plovik
