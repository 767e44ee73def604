// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

#include <string_view>
#include <vector>

namespace plovik {

/// A line of code made fit to be drawn: tabs reach their stops, and what would be invisible or would change the
/// direction of the text stands there as a sign of its own. Positions are in UTF-16 units. Value.
struct ShownLine {
    /// Columns from one tab stop to the next.
    static constexpr int tabWidth = 4;
    /// Units of a line that are drawn; what comes behind is counted, not shown.
    static constexpr qsizetype mostShown = qsizetype{1} << 17;

    enum class Sign { tab, control, carriageReturn };
    struct Replacement {
        qsizetype source = 0; ///< the unit that was replaced
        qsizetype shown = 0;  ///< where its stand-in begins
        qsizetype length = 1; ///< of the stand-in
        Sign sign = Sign::tab;
    };

    QString source; ///< the whole line, as it is copied
    QString shown;
    std::vector<Replacement> replacements; ///< in order
    qsizetype trailingBlanks = 0;          ///< where, in `source`, the blanks at the line's end begin
    qsizetype notShown = 0;                ///< units of `source` behind what is shown

    static ShownLine of(std::string_view text);

    qsizetype toShown(qsizetype position) const;
    qsizetype toSource(qsizetype position) const;
};

/// Bytes as text, a byte-order mark kept.
QString textOf(std::string_view bytes);

/// How many columns a line takes at most, without shaping it.
int columnsOf(std::string_view text);

} // namespace plovik
