// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "app/ui/diff/DiffLayout.h"

#include <QtGlobal>

#include <compare>
#include <optional>
#include <set>
#include <utility>

namespace plovik {

/// A place in a diff's code: a line of the layout, and a unit of its row's source.
struct DiffPosition {
    int line = 0;
    qsizetype column = 0;

    auto operator<=>(const DiffPosition&) const = default;
};

/// What is selected in one diff, in lines of its layout: whole ones, picked in the gutter or with the keyboard, or a
/// run of text; on both sides or within one. Value.
class DiffSelection {
public:
    bool isEmpty() const { return picked_.empty() && !range_ && !hasText(); }
    bool hasText() const { return isText_ && anchor_ != head_; }

    void clear();
    /// Selects one line, from which extendLines() goes on.
    void startLines(int line, DiffSide side = DiffSide::both);
    /// As startLines(), but keeps what is selected; a line that is selected is taken out instead.
    void toggleLine(int line, DiffSide side = DiffSide::both);
    /// The last line with which lines were started, and all lines up to this one, on the side where it began.
    void extendLines(int line);
    /// Selects this besides, as something that extendLines() does not go on from.
    void pick(int line, DiffSide side) { picked_.emplace(line, side); }

    void startText(DiffPosition position, DiffSide side = DiffSide::both);
    void extendText(DiffPosition position);
    /// Where the text began; text stays within its side.
    DiffSide textSide() const { return textSide_; }

    /// Whether what is on a line is selected, were it only in part, for a row that is on `side`.
    bool holds(int line, DiffSide side = DiffSide::both) const;
    /// Whether the text that is selected goes through this side.
    bool hasTextOn(DiffSide side) const { return hasText() && meets(textSide_, side); }
    /// The first and one past the last line that may be selected.
    struct Lines {
        int first = 0;
        int end = 0;
    };
    Lines lines() const;

    /// The ends of the selected text, in order. Only for a selection of text.
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
