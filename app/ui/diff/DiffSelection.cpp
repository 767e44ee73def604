// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/ui/diff/DiffSelection.h"

#include <algorithm>

namespace plovik {

void DiffSelection::clear() { *this = DiffSelection(); }

void DiffSelection::startLines(int line, DiffSide side)
{
    clear();
    range_ = Range{line, line, side};
}

void DiffSelection::toggleLine(int line, DiffSide side)
{
    const bool wasHeld = !isText_ && holds(line, side);
    auto all = std::move(picked_);
    if (range_) {
        for (int each = range_->first(); each <= range_->last(); ++each)
            all.emplace(each, range_->side);
    }
    clear();
    picked_ = std::move(all);
    if (!wasHeld) {
        range_ = Range{line, line, side};
        return;
    }
    // When one side is taken out of a line that is selected whole, the other side stays selected.
    const bool wasWhole = picked_.contains({line, DiffSide::both});
    for (const DiffSide each : {DiffSide::both, DiffSide::before, DiffSide::after}) {
        if (meets(each, side))
            picked_.erase({line, each});
    }
    if (wasWhole && side != DiffSide::both)
        picked_.emplace(line, side == DiffSide::before ? DiffSide::after : DiffSide::before);
}

void DiffSelection::extendLines(int line)
{
    if (isText_)
        startLines(anchor_.line, textSide_);
    if (!range_)
        range_ = Range{line, line, DiffSide::both};
    range_->head = line;
}

void DiffSelection::startText(DiffPosition position, DiffSide side)
{
    clear();
    isText_ = true;
    textSide_ = side;
    anchor_ = head_ = position;
}

void DiffSelection::extendText(DiffPosition position)
{
    if (!isText_)
        startText(range_ ? DiffPosition{range_->anchor, 0} : position, range_ ? range_->side : DiffSide::both);
    head_ = position;
}

bool DiffSelection::holds(int line, DiffSide side) const
{
    if (isText_) {
        // A run that ends before the first character of a line does not select that line.
        const DiffPosition end = textEnd();
        return hasTextOn(side) && line >= textBegin().line && (line < end.line || (line == end.line && end.column > 0));
    }
    const bool inRange = range_ && line >= range_->first() && line <= range_->last() && meets(range_->side, side);
    return inRange ||
           std::ranges::any_of(std::initializer_list{DiffSide::both, DiffSide::before, DiffSide::after},
                               [&](DiffSide each) { return meets(each, side) && picked_.contains({line, each}); });
}

DiffSelection::Lines DiffSelection::lines() const
{
    if (isText_)
        return hasText() ? Lines{textBegin().line, textEnd().line + 1} : Lines{};
    Lines lines;
    if (range_)
        lines = {range_->first(), range_->last() + 1};
    if (!picked_.empty()) {
        lines.first = range_ ? std::min(lines.first, picked_.begin()->first) : picked_.begin()->first;
        lines.end = std::max(lines.end, picked_.rbegin()->first + 1);
    }
    return lines;
}

} // namespace plovik
