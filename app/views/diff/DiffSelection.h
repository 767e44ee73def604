#pragma once

#include <QtGlobal>

#include <compare>
#include <optional>
#include <set>

namespace plovik {

/// A place in a diff's code: a row, and a unit of its source.
struct DiffPosition {
    int row = 0;
    qsizetype column = 0;

    auto operator<=>(const DiffPosition&) const = default;
};

/// What is selected in one diff: whole lines, picked in the gutter or with the keyboard, or a run of text. Value.
class DiffSelection {
public:
    bool isEmpty() const { return picked_.empty() && !range_ && !hasText(); }
    bool hasText() const { return isText_ && anchor_ != head_; }

    void clear();
    /// Selects one row, from which extendTo() goes on.
    void startLines(int row);
    /// As startLines(), but keeps what is selected; a row that is selected is taken out instead.
    void toggleLine(int row);
    /// The last row with which lines were started, and all rows up to this one.
    void extendLines(int row);

    void startText(DiffPosition position);
    void extendText(DiffPosition position);

    /// Whether a row is selected, were it only in part.
    bool holds(int row) const;
    /// The first and one past the last row that may be selected.
    struct Rows {
        int first = 0;
        int end = 0;
    };
    Rows rows() const;

    /// The ends of the selected text, in order. Only for a selection of text.
    DiffPosition textBegin() const { return anchor_ < head_ ? anchor_ : head_; }
    DiffPosition textEnd() const { return anchor_ < head_ ? head_ : anchor_; }

    bool operator==(const DiffSelection&) const = default;

private:
    bool isText_ = false;
    DiffPosition anchor_, head_; ///< of text
    std::set<int> picked_;       ///< lines besides the range
    struct Range {
        int anchor = 0;
        int head = 0;
        bool operator==(const Range&) const = default;
    };
    std::optional<Range> range_;
};

} // namespace plovik
