// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QStringView>

#include <vector>

namespace plovik {

/// A part of a line, in UTF-16 units. Value.
struct TextRange {
    qsizetype begin = 0;
    qsizetype end = 0;

    bool operator==(const TextRange&) const = default;
};

/// What differs between a line and the line that replaces it. Value.
struct WordMarks {
    std::vector<TextRange> removed; ///< in the old line
    std::vector<TextRange> added;   ///< in the new line

    bool operator==(const WordMarks&) const = default;
};

/// Compares two lines word by word. Marks nothing when too little stayed the same for marks to help. The cost is
/// bounded, because long lines are compared only at their ends. Pure.
WordMarks wordMarks(QStringView before, QStringView after);

} // namespace plovik
