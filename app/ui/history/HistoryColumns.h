// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

namespace plovik {

/// The places of a history row's parts, in device-independent pixels from the row's left edge. The two edges of a part
/// are equal when the row has no room for it.
struct HistoryColumns {
    double graphWidth = 0;
    double subjectLeft = 0, subjectRight = 0; ///< badges and subject
    double authorLeft = 0, authorRight = 0;
    double dateLeft = 0, dateRight = 0; ///< right-aligned
    double hashLeft = 0, hashRight = 0;

    /// The widths that the fonts need.
    struct Widths {
        double author = 0, date = 0, hash = 0;
    };

    /// Divides `width`. `graphWidth` is 0 when no graph is shown. A narrow row drops the author first, then the hash,
    /// then the date.
    static HistoryColumns fitting(double width, double graphWidth, const Widths& widths);

    bool operator==(const HistoryColumns&) const = default;
};

} // namespace plovik
