// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "app/ui/diff/DiffLayout.h"

#include <vector>

namespace plovik {

class DiffDocument;

/// The lines in which a layout shows a document's rows. In the unified layout each row is a line; side by side, removed
/// rows stand beside the added rows that replace them. Value.
class DiffLines {
public:
    DiffLines() = default;
    DiffLines(const DiffDocument& document, DiffLayout layout);

    bool areSideBySide() const { return layout_ == DiffLayout::sideBySide; }
    int count() const { return areSideBySide() ? static_cast<int>(pairs_.size()) : rows_; }
    int lineOf(int row) const { return areSideBySide() ? lines_[static_cast<std::size_t>(row)] : row; }
    /// Returns the row on a side of a line; -1 for none.
    int rowAt(int line, DiffSide side) const;
    /// Returns the row on a side of a line, else the one on the other side.
    int nearestRow(int line, DiffSide side) const;

private:
    struct Pair {
        int before = -1;
        int after = -1;
    };
    void pairRun(const std::vector<int>& before, const std::vector<int>& after);

    DiffLayout layout_ = DiffLayout::unified;
    int rows_ = 0;
    std::vector<Pair> pairs_; ///< by line; empty in the unified layout
    std::vector<int> lines_;  ///< by row
};

} // namespace plovik
