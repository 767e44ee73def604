// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/store/Trail.h"

#include "app/store/Failure.h"
#include "app/store/Snapshot.h"
#include "app/store/readers/CommitSearch.h"

#include <utility>

namespace plovik {

using Direction = NavigationTrail::Direction;

namespace {

/// A place that was shown for this long has been looked at. A held key repeats much faster.
constexpr std::chrono::milliseconds lookTime{500};

} // namespace

Trail::Trail(const GitAccess& git, WindowState& window, Snapshot& snapshot, History& history)
    : git_(git), window_(window), snapshot_(snapshot), history_(history)
{
    window_.listen({.moved = [this](WindowState::Step step) { moved(step); }});
    history_.arrived = [this](std::optional<History::Arrival> arrival) { arrived(arrival); };
}

NavigationPlace Trail::place() const
{
    const SidebarItem& item = window_.selection.value();
    if (item.kind == SidebarItem::Kind::stashes)
        return {item, window_.selectedStash.value()};
    // Until the history of a newly selected ref is loaded, the selected commit belongs to the previous one.
    if (item.showsHistory() && item == history_.shownScope())
        return {item, window_.selectedCommit.value()};
    return {item, std::nullopt};
}

void Trail::moved(WindowState::Step step)
{
    NavigationPlace now = place();
    const bool isSameView = now.item == trail_.current().item;
    if (isSameView && !now.selected)
        return; // an empty selection is no place to come back to
    const bool isPassing = step == WindowState::Step::passing;
    const bool wasUnchosen = std::exchange(isUnchosen_, false);
    const bool wasOnlyPassed = isSameView && (!trail_.current().selected || (isPassing ? hasJustPassed_ : wasUnchosen));
    if (wasOnlyPassed || !snapshot_.hasLoaded.value())
        trail_.visitInstead(std::move(now));
    else
        trail_.visit(std::move(now));
    hasJustPassed_ = isPassing;
    lookTime_.reset();
    if (isPassing)
        lookTime_ = git_.worker().after(lookTime, [this] { hasJustPassed_ = false; });
    update();
}

void Trail::arrived(std::optional<History::Arrival> arrival)
{
    if (!arrival) {
        fillPlace();
        return;
    }
    if (*arrival == History::Arrival::newPlace)
        trail_.visit(place());
    else if (trail_.current().item == window_.selection.value())
        trail_.replace(place());
    isUnchosen_ = *arrival == History::Arrival::unchosen;
    update();
}

/// Called when the history of the current view has been loaded. Adds its selection to the current place.
void Trail::fillPlace()
{
    NavigationPlace now = place();
    if (now.item != trail_.current().item || trail_.current().selected || !now.selected)
        return;
    trail_.replace(std::move(now));
    update();
}

void Trail::update()
{
    canGoBack = trail_.canStep(Direction::back);
    canGoForward = trail_.canStep(Direction::forward);
}

void Trail::travel(Direction direction)
{
    if (!trail_.step(direction))
        return;
    hasJustPassed_ = isUnchosen_ = false;
    const qint64 wish = history_.beginWish();
    update();
    launch(travelling(direction, wish));
}

QCoro::Task<> Trail::travelling(Direction direction, qint64 wish)
{
    for (;;) {
        const NavigationPlace goal = trail_.current();
        if (arrivesAtOnce(goal)) {
            arriveAt(goal);
            co_return;
        }
        if (!isGone(goal)) {
            history_.lookFor(*goal.selected);
            FoundCommit found;
            std::optional<Failure> failure;
            try {
                found = co_await history_.find(*goal.selected, goal.item);
            } catch (const std::exception& thrown) {
                failure = failureOf(thrown);
            }
            if (!history_.isWished(wish))
                co_return;
            if (failure) {
                history_.beginWish();
                window_.report(*failure);
                co_return;
            }
            if (found.scope) {
                history_.loadAsFarAs(goal.item, found.position, found.hash, History::Arrival::samePlace);
                co_return;
            }
        }
        if (!trail_.forget(direction))
            co_return;
        // The place after the removed one can be the one that is still on display.
        if (trail_.current() == place())
            trail_.step(direction);
        update();
    }
}

/// Returns whether a place is known to be gone without asking git.
bool Trail::isGone(const NavigationPlace& place) const
{
    if (place.item.isRef())
        return !snapshot_.hasRef(place.item.refName);
    return place.item.kind == SidebarItem::Kind::stashes && place.selected && !snapshot_.hasStash(*place.selected);
}

bool Trail::arrivesAtOnce(const NavigationPlace& place) const
{
    if (isGone(place))
        return false;
    return !place.item.showsHistory() || !place.selected || history_.isOnPage(place.item, *place.selected);
}

void Trail::arriveAt(const NavigationPlace& place)
{
    if (place.item.showsHistory() && place.selected) {
        history_.reveal(place.item, *place.selected);
        return;
    }
    history_.beginWish();
    if (place.item.kind == SidebarItem::Kind::stashes && place.selected)
        window_.followStash(place.selected);
    window_.follow(place.item);
    history_.showSelected();
}

} // namespace plovik
