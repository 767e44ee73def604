#pragma once

#include <QColor>
#include <QList>
#include <QRect>
#include <QTextLayout>

#include <memory>

class QPainter;

namespace plovik {

class DiffDocument;
class DiffSelection;
struct DiffMetrics;
struct ShownLine;

/// Draws rows of a diff and tells which character is where. Of a long line only what is in sight is shaped. Holds
/// references: made for one use. Main thread.
class DiffRowPainter {
public:
    struct Sight {
        int width = 0;  ///< of a row, gutter included
        int offset = 0; ///< by how much the code is scrolled to the left
    };

    DiffRowPainter(const DiffDocument& document, const DiffMetrics& metrics, Sight sight)
        : document_(document), metrics_(metrics), sight_(sight)
    {}

    /// `room` is what a hunk's buttons take at the right.
    void paint(QPainter& painter, int row, const QRect& area, const DiffSelection& selection, int room) const;

    /// The unit of the row's source that is nearest to `x`.
    qsizetype sourceAt(int row, int x) const;

private:
    struct Slice;
    Slice slice(int row) const;
    /// The colours of the characters of a row, in units of what is shaped; later ones win.
    QList<QTextLayout::FormatRange> formatsOf(int row, const Slice& part) const;
    void paintHunk(QPainter& painter, int row, const QRect& area, int room) const;
    void paintGutter(QPainter& painter, int row, const QRect& area) const;
    void paintCode(QPainter& painter, int row, const QRect& area, const DiffSelection& selection) const;
    void paintMarks(QPainter& painter, int row, const Slice& slice, const QRect& area) const;
    void paintBlanks(QPainter& painter, int row, const Slice& slice, const QRect& area) const;
    void paintSelectedText(QPainter& painter, int row, const Slice& slice, const QRect& area,
                           const DiffSelection& selection) const;

    const DiffDocument& document_;
    const DiffMetrics& metrics_;
    Sight sight_;
};

} // namespace plovik
