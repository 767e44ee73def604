// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "app/store/History.h"
#include "app/store/NavigationTrail.h"
#include "app/store/Observed.h"
#include "app/store/WindowState.h"

#include <memory>

namespace plovik {

class Snapshot;

/// Back and forward through the views of a window and their selections. Owned by the store; main thread.
class Trail {
public:
    Trail(const GitAccess& git, WindowState& window, Snapshot& snapshot, History& history);
    Trail(const Trail&) = delete;
    Trail& operator=(const Trail&) = delete;

    Observed<bool, Trail> canGoBack{false};
    Observed<bool, Trail> canGoForward{false};

    /// Goes to the previous or the next place. Skips places that are gone.
    void goBack() { travel(NavigationTrail::Direction::back); }
    void goForward() { travel(NavigationTrail::Direction::forward); }

private:
    NavigationPlace place() const;
    void moved(WindowState::Step step);
    void arrived(std::optional<History::Arrival> arrival);
    void fillPlace();
    void travel(NavigationTrail::Direction direction);
    QCoro::Task<> travelling(NavigationTrail::Direction direction, qint64 wish);
    bool isGone(const NavigationPlace& place) const;
    bool arrivesAtOnce(const NavigationPlace& place) const;
    void arriveAt(const NavigationPlace& place);
    void update();

    const GitAccess& git_;
    WindowState& window_;
    Snapshot& snapshot_;
    History& history_;
    NavigationTrail trail_{{SidebarItem::workingCopy(), std::nullopt}};
    bool hasJustPassed_ = false; ///< the current place was only passed by held keys
    bool isUnchosen_ = false;    ///< nobody has chosen the selected commit: what is clicked next takes its place
    std::unique_ptr<Worker::Delay> lookTime_;
};

} // namespace plovik
