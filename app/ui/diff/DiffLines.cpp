// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/ui/diff/DiffLines.h"

#include "app/ui/diff/DiffDocument.h"

#include <algorithm>

namespace plovik {

DiffLines::DiffLines(const DiffDocument& document, DiffLayout layout)
    : layout_(document.layoutFor(layout)), rows_(document.rowCount())
{
    if (!areSideBySide())
        return;
    pairs_.reserve(static_cast<std::size_t>(rows_));
    lines_.resize(static_cast<std::size_t>(rows_));
    std::vector<int> before;
    std::vector<int> after;
    for (int row = 0; row <= rows_; ++row) {
        const DiffSide side = row < rows_ ? document.row(row).side : DiffSide::both;
        // A run of changes ends at a row on both sides, or where rows are removed again.
        if (side == DiffSide::both || (side == DiffSide::before && !after.empty())) {
            pairRun(before, after);
            before.clear();
            after.clear();
        }
        if (side != DiffSide::both) {
            (side == DiffSide::before ? before : after).push_back(row);
        } else if (row < rows_) {
            lines_[static_cast<std::size_t>(row)] = static_cast<int>(pairs_.size());
            pairs_.push_back({row, row});
        }
    }
}

void DiffLines::pairRun(const std::vector<int>& before, const std::vector<int>& after)
{
    for (std::size_t i = 0; i < std::max(before.size(), after.size()); ++i) {
        Pair pair;
        if (i < before.size())
            pair.before = before[i];
        if (i < after.size())
            pair.after = after[i];
        for (const int row : {pair.before, pair.after}) {
            if (row >= 0)
                lines_[static_cast<std::size_t>(row)] = static_cast<int>(pairs_.size());
        }
        pairs_.push_back(pair);
    }
}

int DiffLines::rowAt(int line, DiffSide side) const
{
    if (!areSideBySide())
        return line;
    const Pair& pair = pairs_[static_cast<std::size_t>(line)];
    if (side == DiffSide::both)
        return pair.before >= 0 ? pair.before : pair.after;
    return side == DiffSide::before ? pair.before : pair.after;
}

int DiffLines::nearestRow(int line, DiffSide side) const
{
    const int row = rowAt(line, side);
    return row >= 0 ? row : rowAt(line, side == DiffSide::before ? DiffSide::after : DiffSide::before);
}

} // namespace plovik
