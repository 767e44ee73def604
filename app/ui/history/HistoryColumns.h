// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "app/settings/Settings.h"

#include <QString>

#include <array>
#include <vector>

class QMenu;

namespace plovik {

/// The columns of history lists that can be resized and hidden. The subject takes what they leave.
enum class HistoryColumn { graph, author, date, hash };
inline constexpr std::array historyColumns{HistoryColumn::graph, HistoryColumn::author, HistoryColumn::date,
                                           HistoryColumn::hash};

/// The title above a column.
QString titleOf(HistoryColumn column);
/// Where the user's choices for a column are kept, for all windows.
const Setting<double>& widthSetting(HistoryColumn column);
const Setting<bool>& shownSetting(HistoryColumn column);

/// Fills a menu with what can be chosen for the columns. Its entries write the settings.
void addColumnChoices(QMenu& menu);

/// The places of a history row's parts, in device-independent pixels from the row's left edge. The two edges of a part
/// are equal when the row has no room for it.
struct HistoryColumns {
    double graphWidth = 0;
    double subjectLeft = 0, subjectRight = 0; ///< badges and subject
    double authorLeft = 0, authorRight = 0;
    double dateLeft = 0, dateRight = 0; ///< right-aligned
    double hashLeft = 0, hashRight = 0;

    static constexpr double gap = 20;      ///< between two columns
    static constexpr double graphGap = 16; ///< between the graph and the subject

    /// The widths of the columns on the right; 0 for a hidden one.
    struct Widths {
        double author = 0, date = 0, hash = 0;
        double leastSubject = 220; ///< columns on the right give way before the subject gets narrower
    };

    /// Divides `width`. `graphWidth` is 0 when no graph is shown. A narrow row drops the hash first, then the author,
    /// then the date.
    static HistoryColumns fitting(double width, double graphWidth, const Widths& widths);

    /// An edge between columns that can be dragged.
    struct Edge {
        HistoryColumn column; ///< the one that gets wider or narrower
        double x = 0;
    };
    std::vector<Edge> edges() const;
    /// Returns the width of a column whose edge is dragged to `x`.
    double widthAt(HistoryColumn column, double x) const;

    bool operator==(const HistoryColumns&) const = default;
};

} // namespace plovik
