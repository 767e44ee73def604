// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "app/ui/history/HistoryColumns.h"
#include "app/ui/history/HistoryRowPainter.h"

#include <QString>

#include <string>

class QPainter;

namespace plovik {

class Rewriting;

/// What the row of a commit says of the plan: what becomes of it, and whether others may have it. Value.
struct PlanSign {
    QString text;           ///< what becomes of the commit; empty where nothing does
    QString toolTip = {};   ///< more about it
    bool isGone = false;    ///< the subject is struck through
    bool isWarning = false; ///< it conflicts
    bool isPublished = false;

    bool isEmpty() const { return text.isEmpty() && !isPublished; }
};

/// Main thread.
PlanSign planSignOf(const Rewriting& rewriting, const std::string& commit);

/// Draws what shows that a row can be dragged to another place, before its subject.
void paintPlanGrip(QPainter& painter, const HistoryColumns& columns, const HistoryRowPainter::Place& place,
                   double rowHeight);

/// Draws it at the end of the subject column. `subjectEnd` is where the subject ends.
void paintPlanSign(QPainter& painter, const PlanSign& sign, const HistoryColumns& columns,
                   const HistoryRowPainter::Place& place, double rowHeight, HistoryRowPainter::Span subject);

} // namespace plovik
