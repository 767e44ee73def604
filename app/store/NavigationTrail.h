// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "app/store/SidebarItem.h"

#include <optional>
#include <string>
#include <vector>

namespace plovik {

/// A view of the window and what was selected in it.
struct NavigationPlace {
    SidebarItem item;
    std::optional<std::string> selected; ///< a commit of a history, or a stash; nothing elsewhere

    bool operator==(const NavigationPlace&) const = default;
};

/// The places where the user has been, in their order, and which of them is the present one; as a browser keeps them.
/// A value; never empty, no place twice in a row.
class NavigationTrail {
public:
    static constexpr std::size_t capacity = 100;
    enum class Direction { back, forward };

    explicit NavigationTrail(NavigationPlace start) : places_{std::move(start)} {}

    const NavigationPlace& current() const { return places_[at_]; }
    bool canStep(Direction direction) const;

    /// Goes to a new place, which cuts off what lies forward.
    void visit(NavigationPlace place);
    /// Goes to a new place instead of the present one, which was only passed by. Cuts off what lies forward.
    void visitInstead(NavigationPlace place);
    /// Says better what the present place is.
    void replace(NavigationPlace place);
    /// Makes the next place in a direction the present one. False, and nothing happens, at the end.
    bool step(Direction direction);
    /// Takes the present place out, and makes the next one in that direction present, where there is none the one that
    /// lies the other way. False, and nothing happens, when it is the only one.
    bool forget(Direction direction);

private:
    void dropRepetition();

    std::vector<NavigationPlace> places_;
    std::size_t at_ = 0;
};

} // namespace plovik
