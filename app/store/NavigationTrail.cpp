// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/store/NavigationTrail.h"

#include <utility>

namespace plovik {

namespace {

using Offset = std::vector<NavigationPlace>::difference_type;

} // namespace

bool NavigationTrail::canStep(Direction direction) const
{
    return direction == Direction::back ? at_ > 0 : at_ + 1 < places_.size();
}

void NavigationTrail::visit(NavigationPlace place)
{
    if (place == current())
        return;
    places_.resize(at_ + 1);
    places_.push_back(std::move(place));
    if (places_.size() > capacity)
        places_.erase(places_.begin());
    at_ = places_.size() - 1;
}

void NavigationTrail::visitInstead(NavigationPlace place)
{
    places_.resize(at_ + 1);
    replace(std::move(place));
}

void NavigationTrail::replace(NavigationPlace place)
{
    places_[at_] = std::move(place);
    dropRepetition();
}

bool NavigationTrail::step(Direction direction)
{
    if (!canStep(direction))
        return false;
    direction == Direction::back ? --at_ : ++at_;
    return true;
}

bool NavigationTrail::forget(Direction direction)
{
    if (places_.size() == 1)
        return false;
    const bool goesBack = direction == Direction::back ? at_ > 0 : at_ + 1 == places_.size();
    places_.erase(places_.begin() + static_cast<Offset>(at_));
    if (goesBack)
        --at_;
    dropRepetition();
    return true;
}

void NavigationTrail::dropRepetition()
{
    const auto isRepeated = [this](std::size_t first) {
        return first + 1 < places_.size() && places_[first] == places_[first + 1];
    };
    if (isRepeated(at_))
        places_.erase(places_.begin() + static_cast<Offset>(at_) + 1);
    if (at_ > 0 && isRepeated(at_ - 1))
        places_.erase(places_.begin() + static_cast<Offset>(at_--));
}

} // namespace plovik
