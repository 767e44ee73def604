// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/ui/window/OperationText.h"

#include "app/store/ShownText.h"
#include "app/store/actions/EditStop.h"

#include <QCoreApplication>

#include <algorithm>

namespace plovik::operationText {

namespace {

using gitkit::OperationInProgress;
using Kind = OperationInProgress::Kind;

struct Texts {
    Q_DECLARE_TR_FUNCTIONS(OperationText)
};

QString shortHash(const std::string& hash) { return shownText(std::string(gitkit::shortHash(hash))); }

/// Returns an empty text while no branch is checked out.
QString currentBranch(const RepositoryStore& store)
{
    return shownText(store.snapshot().status.value().branch.value_or(std::string()));
}

/// Returns the name of a branch or tag at the commit, or else its short hash.
QString nameOf(const RepositoryStore& store, const std::string& hash)
{
    for (const auto* refs : {&store.snapshot().branches, &store.snapshot().remoteBranches, &store.snapshot().tags}) {
        const auto found = std::ranges::find(refs->value(), hash, &gitkit::GitRef::hash);
        if (found != refs->value().end())
            return shownText(found->name);
    }
    return shortHash(hash);
}

QString stopText(const gitkit::OperationStop& stop)
{
    QString subject = shownText(stop.subject);
    if (stop.hash.empty())
        return subject;
    return subject.isEmpty() ? shortHash(stop.hash) : shortHash(stop.hash) + u' ' + subject;
}

/// Returns an empty text when more than one branch is merged, or none is known.
QString merged(const RepositoryStore& store, const OperationInProgress& now)
{
    if (now.mergeOf)
        return shownText(*now.mergeOf);
    return now.others.size() == 1 ? nameOf(store, now.others.front()) : QString();
}

QString mergeTitle(const RepositoryStore& store, const OperationInProgress& now)
{
    const QString branch = currentBranch(store);
    const QString what = merged(store, now);
    if (!what.isEmpty())
        return branch.isEmpty() ? Texts::tr("Merging %1 into the detached HEAD").arg(what)
                                : Texts::tr("Merging %1 into %2").arg(what, branch);
    const auto count = static_cast<int>(now.others.size());
    if (count == 0)
        return branch.isEmpty() ? Texts::tr("Merging into the detached HEAD")
                                : Texts::tr("Merging into %1").arg(branch);
    return branch.isEmpty() ? Texts::tr("Merging %Ln branch(es) into the detached HEAD", nullptr, count)
                            : Texts::tr("Merging %Ln branch(es) into %1", nullptr, count).arg(branch);
}

QString rebaseTitle(const RepositoryStore& store, const OperationInProgress& now)
{
    const QString onto = now.others.empty() ? QString() : nameOf(store, now.others.front());
    if (!now.branch)
        return onto.isEmpty() ? Texts::tr("Rebasing") : Texts::tr("Rebasing onto %1").arg(onto);
    const QString branch = shownText(*now.branch);
    return onto.isEmpty() ? Texts::tr("Rebasing %1").arg(branch) : Texts::tr("Rebasing %1 onto %2").arg(branch, onto);
}

/// Returns the commit that is checked out, with its subject when the loaded history has it.
QString candidate(const RepositoryStore& store)
{
    const std::optional<std::string>& head = store.snapshot().status.value().oid;
    if (!head)
        return {};
    const auto commit = store.history().history.value().commit(*head);
    return stopText({*head, commit ? commit->subject : std::string()});
}

QString bisectDetail(const RepositoryStore& store, const gitkit::BisectProgress& bisect)
{
    const QString good = shownText(bisect.good);
    const QString bad = shownText(bisect.bad);
    if (bisect.found)
        return Texts::tr("First %1 commit: %2").arg(bad, stopText(*bisect.found));
    QString left;
    if (!bisect.isGoodKnown && !bisect.isBadKnown)
        left = Texts::tr("Waiting for a %1 and a %2 commit").arg(good, bad);
    else if (!bisect.isGoodKnown || !bisect.isBadKnown)
        left = Texts::tr("Waiting for a %1 commit").arg(bisect.isGoodKnown ? bad : good);
    else if (bisect.stepsLeft)
        left = Texts::tr("Roughly %Ln step(s) left", nullptr, *bisect.stepsLeft);
    const QString now = candidate(store);
    if (left.isEmpty() || now.isEmpty())
        return left + now;
    return Texts::tr("%1, at %2").arg(left, now);
}

/// Says how to go on from where git has stopped so that a commit can be changed; empty elsewhere.
QString editText(const RepositoryStore& store)
{
    const QString commit = actions::editedCommit(store.snapshot());
    if (commit.isEmpty())
        return {};
    if (!actions::canBecomePart(store.snapshot()))
        return Texts::tr("Stopped at %1: commit what it becomes, then Continue.").arg(commit);
    // The bar has room for one of both.
    return store.snapshot().status.value().stagedCount() == 0
               ? Texts::tr("Stopped at %1: change files, then Continue.").arg(commit)
               : Texts::tr("Staged changes become part of %1.").arg(commit);
}

QString theirSide(const RepositoryStore& store, const OperationInProgress& now)
{
    const QString stop = now.stop ? stopText(*now.stop) : QString();
    const bool isKnown = !stop.isEmpty();
    switch (now.kind) {
    case Kind::merge: {
        const QString what = merged(store, now);
        return what.isEmpty() && !now.others.empty()
                   ? Texts::tr("%Ln branch(es) (being merged)", nullptr, static_cast<int>(now.others.size()))
                   : Texts::tr("%1 (being merged)").arg(what);
    }
    case Kind::rebase:
        return isKnown ? Texts::tr("%1 (the commit being replayed)").arg(stop) : Texts::tr("the commit being replayed");
    case Kind::applyPatches:
        return isKnown ? Texts::tr("%1 (the patch being applied)").arg(stop) : Texts::tr("the patch being applied");
    case Kind::cherryPick:
        return isKnown ? Texts::tr("%1 (the commit being picked)").arg(stop) : Texts::tr("the commit being picked");
    case Kind::revert:
        return isKnown ? Texts::tr("Before %1 (the commit being reverted)").arg(stop)
                       : Texts::tr("Before the commit being reverted");
    case Kind::bisect:
        break;
    }
    return Texts::tr("The changes that were applied");
}

} // namespace

QString abortTip(Kind kind)
{
    switch (kind) {
    case Kind::merge:
        return Texts::tr("Go back to where the merge began");
    case Kind::rebase:
        return Texts::tr("Go back to where the rebase began");
    case Kind::applyPatches:
        return Texts::tr("Go back to where the patch series began");
    case Kind::cherryPick:
        return Texts::tr("Go back to where the cherry-pick began");
    case Kind::revert:
        return Texts::tr("Go back to where the revert began");
    case Kind::bisect:
        break;
    }
    return {};
}

QString continueTip(Kind kind)
{
    switch (kind) {
    case Kind::merge:
        return Texts::tr("Commit the merge");
    case Kind::rebase:
        return Texts::tr("Commit what is staged, and go on with the rebase");
    case Kind::applyPatches:
        return Texts::tr("Commit what is staged, and go on with the patch series");
    case Kind::cherryPick:
        return Texts::tr("Commit what is staged, and go on with the cherry-pick");
    case Kind::revert:
        return Texts::tr("Commit what is staged, and go on with the revert");
    case Kind::bisect:
        break;
    }
    return {};
}

QString title(const RepositoryStore& store)
{
    const OperationInProgress& now = *store.snapshot().inProgress.value();
    const QString branch = currentBranch(store);
    const bool isDetached = branch.isEmpty();
    switch (now.kind) {
    case Kind::merge:
        return mergeTitle(store, now);
    case Kind::rebase:
        return rebaseTitle(store, now);
    case Kind::applyPatches:
        return isDetached ? Texts::tr("Applying patches to the detached HEAD")
                          : Texts::tr("Applying patches to %1").arg(branch);
    case Kind::cherryPick:
        return isDetached ? Texts::tr("Cherry-picking onto the detached HEAD")
                          : Texts::tr("Cherry-picking onto %1").arg(branch);
    case Kind::revert:
        return isDetached ? Texts::tr("Reverting on the detached HEAD") : Texts::tr("Reverting on %1").arg(branch);
    case Kind::bisect:
        break;
    }
    return Texts::tr("Bisecting");
}

QString detail(const RepositoryStore& store)
{
    const OperationInProgress& now = *store.snapshot().inProgress.value();
    if (now.bisect)
        return bisectDetail(store, *now.bisect);
    if (const QString edited = editText(store); !edited.isEmpty())
        return edited;
    const bool isCounted = now.progress && now.progress->step > 0;
    QString stop = now.stop ? stopText(*now.stop) : QString();
    if (!isCounted)
        return stop;
    const QString count = Texts::tr("%L1 of %L2").arg(now.progress->step).arg(now.progress->total);
    return stop.isEmpty() ? count : Texts::tr("%1: %2").arg(count, stop);
}

QString conflicts(const RepositoryStore& store)
{
    const std::size_t count = store.conflicts().count();
    if (count == 0)
        return {};
    return Texts::tr("%Ln conflict(s) left", nullptr, static_cast<int>(count));
}

QString useSide(gitkit::ConflictSide side, const QString& name)
{
    return (side == gitkit::ConflictSide::ours ? Texts::tr("Use Ours: %1") : Texts::tr("Use Theirs: %1")).arg(name);
}

QString side(const RepositoryStore& store, gitkit::ConflictSide side)
{
    const std::optional<OperationInProgress>& now = store.snapshot().inProgress.value();
    if (side == gitkit::ConflictSide::theirs)
        return now ? theirSide(store, *now) : Texts::tr("The changes that were applied");
    if (now && now->kind == Kind::rebase)
        return now->others.empty() ? Texts::tr("What it is replayed onto")
                                   : Texts::tr("%1 (onto)").arg(nameOf(store, now->others.front()));
    const QString branch = currentBranch(store);
    return branch.isEmpty() ? Texts::tr("the detached HEAD (checked out)") : Texts::tr("%1 (checked out)").arg(branch);
}

} // namespace plovik::operationText
