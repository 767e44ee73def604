// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

namespace plovik {

/// Where the parts of a history row stand, in device-independent pixels from the row's left edge. A part that the row
/// has no room for is empty: its two edges are equal.
struct HistoryColumns {
    double graphWidth = 0;
    double subjectLeft = 0, subjectRight = 0; ///< badges and subject
    double authorLeft = 0, authorRight = 0;
    double dateLeft = 0, dateRight = 0; ///< set flush right
    double hashLeft = 0, hashRight = 0;

    /// What the fonts ask for.
    struct Widths {
        double author = 0, date = 0, hash = 0;
    };

    /// `graphWidth` is 0 while no graph is shown. Narrow rows give up the author, then the hash, then the date.
    static HistoryColumns fitting(double width, double graphWidth, const Widths& widths);

    bool operator==(const HistoryColumns&) const = default;
};

} // namespace plovik
