// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "app/store/SidebarItem.h"

#include <optional>
#include <string>
#include <vector>

namespace plovik {

/// A view of the window together with its selection.
struct NavigationPlace {
    SidebarItem item;
    std::optional<std::string> selected; ///< a commit of a history, or a stash; nullopt in other views

    bool operator==(const NavigationPlace&) const = default;
};

/// The places that the user has visited, in their order, and the current one among them, as in a browser. A value.
/// Never empty, and never contains a place twice in a row.
class NavigationTrail {
public:
    static constexpr std::size_t capacity = 100;
    enum class Direction { back, forward };

    explicit NavigationTrail(NavigationPlace start) : places_{std::move(start)} {}

    const NavigationPlace& current() const { return places_[at_]; }
    bool canStep(Direction direction) const;

    /// Goes to a new place and drops all places ahead.
    void visit(NavigationPlace place);
    /// Replaces the current place, which the user has only passed, by a new one, and drops all places ahead.
    void visitInstead(NavigationPlace place);
    /// Replaces the current place by a more precise description, and keeps the places ahead.
    void replace(NavigationPlace place);
    /// Makes the next place in a direction the current one. Returns false at the end.
    bool step(Direction direction);
    /// Removes the current place and makes the next one in that direction the current one, or at the end the next one
    /// in the other direction. Returns false and removes nothing when it is the only place.
    bool forget(Direction direction);

private:
    void dropRepetition();

    std::vector<NavigationPlace> places_;
    std::size_t at_ = 0;
};

} // namespace plovik
