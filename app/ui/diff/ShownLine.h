// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

#include <string_view>
#include <vector>

namespace plovik {

/// A line of code as it is drawn: tabs reach to their stops, and characters that would be invisible or would change the
/// direction of the text are replaced by visible signs. Positions are in UTF-16 units. Value.
struct ShownLine {
    /// Columns from one tab stop to the next where nothing else is said.
    static constexpr int standardTabWidth = 8;
    /// How many units of a line are drawn. The others are only counted.
    static constexpr qsizetype mostShown = qsizetype{1} << 17;

    enum class Sign { tab, control, carriageReturn };
    struct Replacement {
        qsizetype source = 0; ///< the position of the unit that is replaced
        qsizetype shown = 0;  ///< where its replacement begins
        qsizetype length = 1; ///< of the replacement
        Sign sign = Sign::tab;
    };

    QString source; ///< the whole line, as it is copied
    QString shown;
    std::vector<Replacement> replacements; ///< in order
    qsizetype trailingBlanks = 0;          ///< where, in `source`, the blanks at the line's end begin
    qsizetype notShown = 0;                ///< how many units of `source` are not drawn

    static ShownLine of(std::string_view text, int tabWidth = standardTabWidth);

    qsizetype toShown(qsizetype position) const;
    qsizetype toSource(qsizetype position) const;
};

/// Returns bytes as text. A byte-order mark is kept.
QString textOf(std::string_view bytes);

/// Returns how many columns a line takes at most, without shaping it.
int columnsOf(std::string_view text, int tabWidth);

} // namespace plovik
