// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "app/ui/history/HistoryColumns.h"

#include <QRectF>
#include <QSize>

#include <functional>

class QPainter;

namespace plovik {

class HistoryMatches;
class HistoryModel;
class HistoryRowPainter;
class Rewriting;

/// Draws the rows of the history that are in sight: the selection, the graph, which runs through all of them, and the
/// texts. Lives as long as one paint event. Main thread.
class HistoryBody {
public:
    /// What is looked at. Lengths are device-independent pixels.
    struct Sight {
        int scrolled = 0;
        QSize size;
        bool isMirrored = false;
        bool isOutdated = false; ///< the rows answer an earlier search
        std::function<bool(int row)> isSelected = {};
        int hovered = -1;
        int lanes = 1;                           ///< for which the graph has room
        const Rewriting* rewriting = nullptr;    ///< whose signs the rows have; null for none
        const HistoryMatches* matches = nullptr; ///< of a search that leaves all rows in the list; null for none
    };

    /// `model` and `rows` outlive the painting.
    HistoryBody(const HistoryModel& model, HistoryRowPainter& rows, const HistoryColumns& columns, const Sight& sight);

    void paint(QPainter& painter, const QRect& exposed);

private:
    int rowAt(int y) const;
    QRectF bandOf(const QPainter& painter, int row) const;
    void paintTints(QPainter& painter, int first, int last) const;
    void paintGraph(QPainter& painter, int first, int last) const;
    void paintTexts(QPainter& painter, int first, int last);

    const HistoryModel& model_;
    HistoryRowPainter& rows_;
    HistoryColumns columns_;
    Sight sight_;
};

} // namespace plovik
