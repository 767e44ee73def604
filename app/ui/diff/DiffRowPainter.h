// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "app/ui/diff/DiffCell.h"

#include <QColor>
#include <QList>
#include <QTextLayout>

#include <memory>
#include <set>
#include <vector>

class QPainter;

namespace plovik {

class DiffDocument;
class DiffSelection;
struct DiffFound;
struct DiffMetrics;
struct ShownLine;

/// Draws the rows of a diff and tells which character is where. Of a long line, only what is in sight is shaped. Holds
/// references and is made for one use. Main thread.
class DiffRowPainter {
public:
    struct Sight {
        int width = 0;                    ///< of a cell, gutter included
        int offset = 0;                   ///< by how much the code is scrolled to the left
        const DiffFound* found = nullptr; ///< what a search has found; null without one
        QRect exposed = {};               ///< of wrapped rows only the lines in it are drawn; null for all
        const std::set<int>* ticked = {}; ///< ids of the changes that are ticked; null without ticks
    };

    DiffRowPainter(const DiffDocument& document, const DiffMetrics& metrics, Sight sight)
        : document_(document), metrics_(metrics), sight_(sight)
    {}

    /// Draws a cell. `room` is the width that the buttons of a hunk take at the right.
    void paint(QPainter& painter, const DiffCell& cell, const DiffSelection& selection, int room) const;

    /// Returns the unit of the row's source that is nearest to a point in its cell.
    qsizetype sourceAt(int row, QPoint point) const;
    /// Returns in which line of a wrapped row a unit of its source stands, from 0.
    int stripOf(int row, qsizetype source) const;
    /// Returns where a unit of the row's source begins in its cell.
    int xOf(int row, qsizetype source) const;

private:
    struct Slice;
    Slice slice(int row, int strip) const;
    const std::vector<qsizetype>& points(int row) const;
    int stripOfShown(int row, qsizetype shown) const;
    /// Returns the colours of the characters of a row, in units of what is shaped. Later ones win.
    QList<QTextLayout::FormatRange> formatsOf(int row, const Slice& part) const;
    void paintHunk(QPainter& painter, const DiffCell& cell, int room) const;
    void paintNothing(QPainter& painter, const QRect& area) const;
    void paintNote(QPainter& painter, const DiffCell& cell) const;
    void paintGutter(QPainter& painter, const DiffCell& cell) const;
    void paintCode(QPainter& painter, const DiffCell& cell, const DiffSelection& selection) const;
    void paintStrip(QPainter& painter, const DiffCell& cell, const Slice& slice, const DiffSelection& selection) const;
    void paintMarks(QPainter& painter, int row, const Slice& slice, const QRect& area) const;
    void paintBlanks(QPainter& painter, int row, const Slice& slice, const QRect& area) const;
    void paintFound(QPainter& painter, int row, const Slice& slice, const QRect& area) const;
    void paintSelectedText(QPainter& painter, const DiffCell& cell, const Slice& slice, const DiffSelection& selection,
                           int height) const;

    const DiffDocument& document_;
    const DiffMetrics& metrics_;
    Sight sight_;
};

} // namespace plovik
