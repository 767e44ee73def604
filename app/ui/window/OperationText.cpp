// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/ui/window/OperationText.h"

#include "app/store/ShownText.h"

#include <QStringList>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace plovik::operationText {

namespace {

using gitkit::OperationInProgress;
using Kind = OperationInProgress::Kind;

QString shortHash(const std::string& hash) { return shownText(std::string(gitkit::shortHash(hash))); }

QString currentBranch(const RepositoryStore& store)
{
    const std::optional<std::string>& branch = store.snapshot().status.value().branch;
    return branch ? shownText(*branch) : u"the detached HEAD"_s;
}

/// A commit by the name of a branch or tag that stands at it, or by its hash.
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

QString merged(const RepositoryStore& store, const OperationInProgress& now)
{
    if (now.mergeOf)
        return shownText(*now.mergeOf);
    if (now.others.size() == 1)
        return nameOf(store, now.others.front());
    return now.others.empty() ? QString() : u"%1 branches"_s.arg(now.others.size());
}

QString rebaseTitle(const RepositoryStore& store, const OperationInProgress& now)
{
    const QString what = now.branch ? u"Rebasing "_s + shownText(*now.branch) : u"Rebasing"_s;
    return now.others.empty() ? what : what + u" onto "_s + nameOf(store, now.others.front());
}

/// The commit that is checked out, with its subject where the loaded history has it.
QString candidate(const RepositoryStore& store)
{
    const std::optional<std::string>& head = store.snapshot().status.value().oid;
    if (!head)
        return {};
    const auto& rows = store.history().history.value();
    const auto found = std::ranges::find_if(rows, [&](const HistoryRow& row) { return row.commit.hash == *head; });
    return stopText({*head, found == rows.end() ? std::string() : found->commit.subject});
}

QString bisectDetail(const RepositoryStore& store, const gitkit::BisectProgress& bisect)
{
    const QString good = shownText(bisect.good);
    const QString bad = shownText(bisect.bad);
    if (bisect.found)
        return u"First %1 commit: %2"_s.arg(bad, stopText(*bisect.found));
    QString left;
    if (!bisect.isGoodKnown && !bisect.isBadKnown)
        left = u"Waiting for a %1 and a %2 commit"_s.arg(good, bad);
    else if (!bisect.isGoodKnown || !bisect.isBadKnown)
        left = u"Waiting for a %1 commit"_s.arg(bisect.isGoodKnown ? bad : good);
    else if (bisect.stepsLeft)
        left = *bisect.stepsLeft == 1 ? u"Roughly 1 step left"_s : u"Roughly %1 steps left"_s.arg(*bisect.stepsLeft);
    const QString now = candidate(store);
    if (left.isEmpty() || now.isEmpty())
        return left + now;
    return left + u", at "_s + now;
}

} // namespace

QString noun(Kind kind)
{
    switch (kind) {
    case Kind::merge:
        return u"merge"_s;
    case Kind::rebase:
        return u"rebase"_s;
    case Kind::applyPatches:
        return u"patch series"_s;
    case Kind::cherryPick:
        return u"cherry-pick"_s;
    case Kind::revert:
        return u"revert"_s;
    case Kind::bisect:
        break;
    }
    return u"bisect"_s;
}

QString title(const RepositoryStore& store)
{
    const OperationInProgress& now = *store.snapshot().inProgress.value();
    const QString branch = currentBranch(store);
    switch (now.kind) {
    case Kind::merge: {
        const QString what = merged(store, now);
        return what.isEmpty() ? u"Merging into "_s + branch : u"Merging "_s + what + u" into "_s + branch;
    }
    case Kind::rebase:
        return rebaseTitle(store, now);
    case Kind::applyPatches:
        return u"Applying patches to "_s + branch;
    case Kind::cherryPick:
        return u"Cherry-picking onto "_s + branch;
    case Kind::revert:
        return u"Reverting on "_s + branch;
    case Kind::bisect:
        break;
    }
    return u"Bisecting"_s;
}

QString detail(const RepositoryStore& store)
{
    const OperationInProgress& now = *store.snapshot().inProgress.value();
    if (now.bisect)
        return bisectDetail(store, *now.bisect);
    const bool isCounted = now.progress && now.progress->step > 0;
    const QString count = isCounted ? u"%1 of %2"_s.arg(now.progress->step).arg(now.progress->total) : QString();
    const QString stop = now.stop ? stopText(*now.stop) : QString();
    return count.isEmpty() || stop.isEmpty() ? count + stop : count + u": "_s + stop;
}

QString conflicts(const RepositoryStore& store)
{
    const auto count = store.snapshot().conflictCount();
    if (count == 0)
        return {};
    return count == 1 ? u"1 conflict left"_s : u"%L1 conflicts left"_s.arg(count);
}

QString side(const RepositoryStore& store, gitkit::ConflictSide side)
{
    const std::optional<OperationInProgress>& now = store.snapshot().inProgress.value();
    const bool isOurs = side == gitkit::ConflictSide::ours;
    const QString current = currentBranch(store) + u" (checked out)"_s;
    const QString stop = now && now->stop ? stopText(*now->stop) : QString();
    const auto about = [&stop](const QString& what) { return stop.isEmpty() ? what : stop + u" ("_s + what + u')'; };
    if (!now || now->kind == Kind::bisect)
        return isOurs ? current : u"The changes that were applied"_s;
    switch (now->kind) {
    case Kind::merge:
        return isOurs ? current : merged(store, *now) + u" (being merged)"_s;
    case Kind::rebase:
        if (!isOurs)
            return about(u"the commit being replayed"_s);
        return now->others.empty() ? u"What it is replayed onto"_s : nameOf(store, now->others.front()) + u" (onto)"_s;
    case Kind::applyPatches:
        return isOurs ? current : about(u"the patch being applied"_s);
    case Kind::cherryPick:
        return isOurs ? current : about(u"the commit being picked"_s);
    case Kind::revert:
        return isOurs ? current : u"Before "_s + about(u"the commit being reverted"_s);
    case Kind::bisect:
        break;
    }
    return {};
}

} // namespace plovik::operationText
