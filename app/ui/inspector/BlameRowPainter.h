// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "app/ui/diff/ShownLine.h"
#include "app/ui/diff/syntax/FileSyntax.h"
#include "app/ui/inspector/BlameDocument.h"

#include <QCache>
#include <QFont>
#include <QLocale>
#include <QRect>
#include <QString>

#include <memory>

class QPainter;

namespace plovik {

/// Draws the rows of a blame: who wrote a run of lines, the lines' numbers, and the code. Of a long line only what is
/// in sight is shaped. Lengths are device-independent pixels; main thread.
class BlameRowPainter {
public:
    BlameRowPainter();

    /// Forgets the colours: they belong to the document before.
    void setDocument(std::shared_ptr<const BlameDocument> document);
    void setSyntax(std::shared_ptr<const FileSyntax> syntax) { syntax_ = std::move(syntax); }
    /// Takes over fonts and the width of the whole view: a narrow one tells of a run on two rows.
    void measure(int viewWidth);

    int rowHeight() const { return rowHeight_; }
    int annotationWidth() const { return annotationWidth_; }
    int codeLeft() const { return annotationWidth_ + numberWidth_; }
    /// Of the widest line, with what stands before it.
    int contentWidth() const;

    struct Look {
        int offset = 0; ///< by how much the code is scrolled to the left
        int topRow = 0; ///< the first row in sight
        bool isSelected = false;
        bool isCurrent = false;    ///< the keyboard is on it
        bool offersBefore = false; ///< shows the button for the blame before the row's commit
    };
    void paint(QPainter& painter, int row, const QRect& area, const Look& look);

    /// The button for the blame before a commit, in a row that stands in `area`.
    QRect beforeButton(const QRect& area) const;

private:
    void paintAnnotation(QPainter& painter, int row, const QRect& area, const Look& look) const;
    void paintBeforeButton(QPainter& painter, const QRect& button, double warmth) const;
    void paintNumber(QPainter& painter, int row, const QRect& area, const Look& look) const;
    void paintCode(QPainter& painter, int row, const QRect& area, int offset);
    const ShownLine& shown(int row);

    std::shared_ptr<const BlameDocument> document_;
    std::shared_ptr<const FileSyntax> syntax_; ///< null until the colours are known
    QCache<int, ShownLine> shown_;
    QFont codeFont_, numberFont_, hashFont_, textFont_;
    QLocale locale_;
    double cell_ = 8; ///< width of one column of code
    int rowHeight_ = 20;
    int hashWidth_ = 0;
    int dateWidth_ = 0;
    int annotationWidth_ = 0;
    int numberWidth_ = 0;
    bool isNarrow_ = false;
};

/// The background of what tells of a commit, by its warmth.
QColor blameTint(double warmth);

} // namespace plovik
