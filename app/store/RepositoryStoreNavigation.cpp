// SPDX-License-Identifier: GPL-3.0-or-later
// The way through the window: where the user was, and how to come to a commit.

#include "app/store/RepositoryStore.h"
#include "app/store/ShownText.h"
#include "app/store/readers/CommitSearch.h"

#include <QScopedValueRollback>

#include <algorithm>
#include <utility>

namespace plovik {

using gitkit::HistoryScope;
using Direction = NavigationTrail::Direction;

namespace {

/// A key that is held repeats far faster; who presses it again after this time has looked at where it led.
constexpr std::chrono::milliseconds lookTime{500};
/// What is found sooner is not worth a word.
constexpr std::chrono::milliseconds patience{200};
/// Rows loaded beyond the one that is looked for: some context, and what may be committed meanwhile.
constexpr int rowsBeyond = 100;

HistoryScope scopeOf(const SidebarItem& item)
{
    return item.isRef() ? HistoryScope::of(item.refName) : HistoryScope::all();
}

} // namespace

// Where the user is.

void RepositoryStore::observePlace()
{
    const auto changed = [this] { placeChanged(); };
    placeNotifiers_.push_back(selection.addNotifier(changed));
    placeNotifiers_.push_back(selectedCommit.addNotifier(changed));
    placeNotifiers_.push_back(selectedStash.addNotifier(changed));
}

NavigationPlace RepositoryStore::place() const
{
    const SidebarItem& item = selection.value();
    if (item.kind == SidebarItem::Kind::stashes)
        return {item, selectedStash.value()};
    // Until the history of another ref is loaded, the selected commit is the former one's.
    if (item.showsHistory() && item == shownScopeItem_)
        return {item, selectedCommit.value()};
    return {item, std::nullopt};
}

void RepositoryStore::placeChanged()
{
    if (isFollowing_)
        return;
    beginNavigation();
    NavigationPlace now = place();
    const bool isSameView = now.item == trail_.current().item;
    if (isSameView && !now.selected)
        return; // a selection that was given up is nothing to come back to
    const bool wasOnlyPassedBy = isSameView && (!trail_.current().selected || (isWalking_ && hasJustWalked_));
    if (wasOnlyPassedBy || !hasLoaded.value())
        trail_.visitInstead(std::move(now));
    else
        trail_.visit(std::move(now));
    hasJustWalked_ = isWalking_;
    walkPause_.reset();
    if (isWalking_)
        walkPause_ = worker_.after(lookTime, [this] { hasJustWalked_ = false; });
    updateTravel();
}

void RepositoryStore::walkToCommit(const std::string& hash)
{
    const QScopedValueRollback walking(isWalking_, true);
    selectedCommit = hash;
}

/// After the history of the present view has come: what is selected in it belongs to the place.
void RepositoryStore::fillPlace()
{
    NavigationPlace now = place();
    if (now.item != trail_.current().item || trail_.current().selected || !now.selected)
        return;
    trail_.replace(std::move(now));
    updateTravel();
}

void RepositoryStore::updateTravel()
{
    canGoBack = trail_.canStep(Direction::back);
    canGoForward = trail_.canStep(Direction::forward);
}

// Coming to a commit.

/// Whatever was wished for before is given up.
qint64 RepositoryStore::beginNavigation()
{
    wanted_.reset();
    lookupDelay_.reset();
    lookup = std::nullopt;
    notice = QString();
    return ++navigationRequest_;
}

bool RepositoryStore::isOnPage(const std::string& hash) const
{
    return shownScopeItem_ == historyScopeItem_ &&
           std::ranges::find(history.value(), hash, &HistoryRow::id) != history.value().end();
}

void RepositoryStore::showCommit(const std::string& hash)
{
    const qint64 request = beginNavigation();
    if (isOnPage(hash)) {
        arriveAt({historyScopeItem_, hash});
        trail_.visit(place());
        updateTravel();
        return;
    }
    launch(showingCommit(hash, request));
}

QCoro::Task<> RepositoryStore::showingCommit(std::string name, qint64 request)
{
    const SidebarItem scopeItem = historyScopeItem_;
    CommitSearch search{name, {scopeOf(scopeItem)}};
    if (scopeItem.isRef())
        search.scopes.push_back(HistoryScope::all());
    lookFor(name);
    FoundCommit found;
    QString problem;
    try {
        found = co_await runFunction(findCommit, std::move(search));
    } catch (const std::exception& failure) {
        problem = QString::fromUtf8(failure.what());
    }
    if (request != navigationRequest_)
        co_return;
    const QString shown = shownText(gitkit::shortHash(found.hash.empty() ? name : found.hash));
    if (!problem.isEmpty() || !found.scope) {
        beginNavigation();
        if (!problem.isEmpty())
            fail(problem);
        else if (found.hash.empty())
            tell(QStringLiteral("This repository has no commit %1.").arg(shown));
        else
            tell(QStringLiteral("No branch or tag leads to %1, so it is not in the history.").arg(shown));
        co_return;
    }
    loadAsFarAs(*found.scope == 0 ? scopeItem : SidebarItem::history(), found.position,
                {found.hash, WantedCommit::Arrival::newPlace});
}

/// Loads so much of a history that it holds the commit at a position, and selects it then.
void RepositoryStore::loadAsFarAs(const SidebarItem& item, int position, WantedCommit wanted)
{
    const QScopedValueRollback following(isFollowing_, true);
    if (item != historyScopeItem_)
        historyLimit_ = pageSize;
    historyScopeItem_ = item;
    selection = item;
    if (historyFilter()) {
        historySearch = QString();
        historyLimit_ = pageSize;
    }
    historySearchDelay_.reset();
    const int pages = (position + rowsBeyond) / pageSize + 1;
    historyLimit_ = std::max(historyLimit_, pages * pageSize);
    wanted_ = std::move(wanted);
    launch(reloadHistory());
}

void RepositoryStore::showTipOfRef()
{
    wanted_ = WantedCommit{};
    if (shownScopeItem_ != historyScopeItem_)
        return; // it comes with the history that is loaded next
    if (const auto tip = wantedOnPage(history.value(), isHistoryFiltered.value())) {
        const QScopedValueRollback following(isFollowing_, true);
        selectWanted(*tip);
    }
}

std::optional<std::string> RepositoryStore::wantedOnPage(const std::vector<HistoryRow>& page, bool filtered) const
{
    if (!wanted_ || page.empty())
        return std::nullopt;
    // The newest commit that a search has found need not be the ref's.
    if (!wanted_->hash)
        return filtered ? std::nullopt : std::optional(page.front().commit.hash);
    if (std::ranges::find(page, *wanted_->hash, &HistoryRow::id) == page.end())
        return std::nullopt;
    return wanted_->hash;
}

void RepositoryStore::selectWanted(const std::string& hash)
{
    const bool isNewPlace = wanted_->arrival == WantedCommit::Arrival::newPlace;
    beginNavigation();
    selectedCommit = hash;
    commitReveals = commitReveals.value() + 1;
    if (isNewPlace)
        trail_.visit(place());
    else if (trail_.current().item == selection.value())
        trail_.replace(place());
    updateTravel();
}

/// The history has come without the commit that was to be selected in it.
void RepositoryStore::missWanted()
{
    const std::optional<std::string> missing = wanted_->hash;
    beginNavigation();
    if (missing && historyProblem.value().isEmpty())
        tell(QStringLiteral("%1 is no longer in the history.").arg(shownText(gitkit::shortHash(*missing))));
}

// Back and forward.

void RepositoryStore::travel(Direction direction)
{
    if (!trail_.step(direction))
        return;
    hasJustWalked_ = false;
    const qint64 request = beginNavigation();
    updateTravel();
    launch(travelling(direction, request));
}

QCoro::Task<> RepositoryStore::travelling(Direction direction, qint64 request)
{
    for (;;) {
        const NavigationPlace goal = trail_.current();
        if (arrivesAtOnce(goal)) {
            arriveAt(goal);
            co_return;
        }
        if (!isGone(goal)) {
            lookFor(*goal.selected);
            FoundCommit found;
            QString problem;
            try {
                CommitSearch search{*goal.selected, {scopeOf(goal.item)}};
                found = co_await runFunction(findCommit, std::move(search));
            } catch (const std::exception& failure) {
                problem = QString::fromUtf8(failure.what());
            }
            if (request != navigationRequest_)
                co_return;
            if (!problem.isEmpty()) {
                beginNavigation();
                fail(problem);
                co_return;
            }
            if (found.scope) {
                loadAsFarAs(goal.item, found.position, {found.hash, WantedCommit::Arrival::samePlace});
                co_return;
            }
        }
        if (!trail_.forget(direction))
            co_return;
        // Without the place between them, the next one may be the one where the user still is.
        if (trail_.current() == place())
            trail_.step(direction);
        updateTravel();
    }
}

/// Whether a place can be told to be gone without asking git.
bool RepositoryStore::isGone(const NavigationPlace& place) const
{
    if (place.item.isRef())
        return !hasRef(place.item.refName);
    const std::vector<gitkit::Stash>& all = stashes.value();
    return place.item.kind == SidebarItem::Kind::stashes && place.selected &&
           std::ranges::find(all, *place.selected, &gitkit::Stash::hash) == all.end();
}

bool RepositoryStore::arrivesAtOnce(const NavigationPlace& place) const
{
    if (isGone(place))
        return false;
    return !place.item.showsHistory() || !place.selected ||
           (place.item == historyScopeItem_ && isOnPage(*place.selected));
}

void RepositoryStore::arriveAt(const NavigationPlace& place)
{
    const QScopedValueRollback following(isFollowing_, true);
    beginNavigation();
    if (place.item.kind == SidebarItem::Kind::stashes && place.selected)
        selectedStash = place.selected;
    selection = place.item;
    if (!place.item.showsHistory())
        return;
    if (place.selected) {
        selectedCommit = place.selected;
        commitReveals = commitReveals.value() + 1;
    } else {
        selectionChanged();
    }
}

// What is said meanwhile.

void RepositoryStore::lookFor(const std::string& hash)
{
    lookupDelay_ = worker_.after(patience, [this, shown = shownText(gitkit::shortHash(hash))] {
        lookup = std::optional(QStringLiteral("Looking for %1…").arg(shown));
    });
}

void RepositoryStore::tell(const QString& sentence)
{
    notice = QString(); // so that it is told again when it was told before
    notice = sentence;
}

} // namespace plovik
