#include "app/views/diff/DiffSelection.h"

#include <algorithm>

namespace plovik {

void DiffSelection::clear() { *this = DiffSelection(); }

void DiffSelection::startLines(int row)
{
    clear();
    range_ = Range{row, row};
}

void DiffSelection::toggleLine(int row)
{
    const bool wasHeld = !isText_ && holds(row);
    std::set<int> all = std::move(picked_);
    if (range_) {
        for (int each = std::min(range_->anchor, range_->head); each <= std::max(range_->anchor, range_->head); ++each)
            all.insert(each);
    }
    clear();
    picked_ = std::move(all);
    if (wasHeld)
        picked_.erase(row);
    else
        range_ = Range{row, row};
}

void DiffSelection::extendLines(int row)
{
    if (isText_)
        startLines(anchor_.row);
    if (!range_)
        range_ = Range{row, row};
    range_->head = row;
}

void DiffSelection::startText(DiffPosition position)
{
    clear();
    isText_ = true;
    anchor_ = head_ = position;
}

void DiffSelection::extendText(DiffPosition position)
{
    if (!isText_)
        startText(range_ ? DiffPosition{range_->anchor, 0} : position);
    head_ = position;
}

bool DiffSelection::holds(int row) const
{
    if (isText_) {
        // A run that ends before a row's first character does not touch the row.
        const DiffPosition end = textEnd();
        return hasText() && row >= textBegin().row && (row < end.row || (row == end.row && end.column > 0));
    }
    const bool inRange =
        range_ && row >= std::min(range_->anchor, range_->head) && row <= std::max(range_->anchor, range_->head);
    return inRange || picked_.contains(row);
}

DiffSelection::Rows DiffSelection::rows() const
{
    if (isText_)
        return hasText() ? Rows{textBegin().row, textEnd().row + 1} : Rows{};
    Rows rows;
    if (range_)
        rows = {std::min(range_->anchor, range_->head), std::max(range_->anchor, range_->head) + 1};
    if (!picked_.empty()) {
        rows.first = range_ ? std::min(rows.first, *picked_.begin()) : *picked_.begin();
        rows.end = std::max(rows.end, *picked_.rbegin() + 1);
    }
    return rows;
}

} // namespace plovik
