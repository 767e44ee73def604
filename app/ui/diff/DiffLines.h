// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "app/ui/diff/DiffLayout.h"

#include <vector>

namespace plovik {

class DiffDocument;

/// The lines that a layout makes of a document's rows. Unified, each row is a line of its own; side by side, what was
/// removed stands beside what was added in its place. Value.
class DiffLines {
public:
    DiffLines() = default;
    DiffLines(const DiffDocument& document, DiffLayout layout);

    bool areSideBySide() const { return layout_ == DiffLayout::sideBySide; }
    int count() const { return areSideBySide() ? static_cast<int>(pairs_.size()) : rows_; }
    int lineOf(int row) const { return areSideBySide() ? lines_[static_cast<std::size_t>(row)] : row; }
    /// The row that stands on a side of a line; -1 for none.
    int rowAt(int line, DiffSide side) const;
    /// The row on this side, else the one on the other.
    int nearestRow(int line, DiffSide side) const;

private:
    struct Pair {
        int before = -1;
        int after = -1;
    };
    void pairRun(const std::vector<int>& before, const std::vector<int>& after);

    DiffLayout layout_ = DiffLayout::unified;
    int rows_ = 0;
    std::vector<Pair> pairs_; ///< by line; empty where lines are rows
    std::vector<int> lines_;  ///< by row
};

} // namespace plovik
