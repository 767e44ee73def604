// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "app/ui/diff/DiffLayout.h"

#include <QtGlobal>

#include <compare>
#include <optional>
#include <set>
#include <utility>

namespace plovik {

/// A position in a diff's code: a line of the layout, and a unit of its row's source.
struct DiffPosition {
    int line = 0;
    qsizetype column = 0;

    auto operator<=>(const DiffPosition&) const = default;
};

/// What is selected in one diff, in lines of its layout: either whole lines, which are picked in the gutter or with the
/// keyboard, or a run of text. Both may be limited to one side. Value.
class DiffSelection {
public:
    bool isEmpty() const { return picked_.empty() && !range_ && !hasText(); }
    bool hasText() const { return isText_ && anchor_ != head_; }

    void clear();
    /// Selects one line. extendLines() goes on from it.
    void startLines(int line, DiffSide side = DiffSide::both);
    /// Does the same but keeps what is selected. A line that is selected already is taken out instead.
    void toggleLine(int line, DiffSide side = DiffSide::both);
    /// Selects all lines from the one that was started last to this one, on the side of that start.
    void extendLines(int line);
    /// Adds a line that extendLines() does not go on from.
    void pick(int line, DiffSide side) { picked_.emplace(line, side); }

    void startText(DiffPosition position, DiffSide side = DiffSide::both);
    void extendText(DiffPosition position);
    /// Returns the side that the text began on. Text stays within its side.
    DiffSide textSide() const { return textSide_; }

    /// Returns whether the row on a side of a line is selected, at least in part.
    bool holds(int line, DiffSide side = DiffSide::both) const;
    /// Returns whether the selected text is on this side.
    bool hasTextOn(DiffSide side) const { return hasText() && meets(textSide_, side); }
    /// A range of lines outside of which nothing is selected; the end is one past the last line.
    struct Lines {
        int first = 0;
        int end = 0;
    };
    Lines lines() const;

    // These are the ends of the selected text, in order. They require a selection of text.
    DiffPosition textBegin() const { return anchor_ < head_ ? anchor_ : head_; }
    DiffPosition textEnd() const { return anchor_ < head_ ? head_ : anchor_; }

    bool operator==(const DiffSelection&) const = default;

private:
    static bool meets(DiffSide one, DiffSide other)
    {
        return one == DiffSide::both || other == DiffSide::both || one == other;
    }

    bool isText_ = false;
    DiffPosition anchor_, head_; ///< of text
    DiffSide textSide_ = DiffSide::both;
    std::set<std::pair<int, DiffSide>> picked_; ///< lines besides the range
    struct Range {
        int anchor = 0;
        int head = 0;
        DiffSide side = DiffSide::both;

        int first() const { return anchor < head ? anchor : head; }
        int last() const { return anchor < head ? head : anchor; }
        bool operator==(const Range&) const = default;
    };
    std::optional<Range> range_;
};

} // namespace plovik
