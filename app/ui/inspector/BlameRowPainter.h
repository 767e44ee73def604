// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "app/ui/diff/DiffFound.h"
#include "app/ui/diff/ShownLine.h"
#include "app/ui/diff/syntax/FileSyntax.h"
#include "app/ui/inspector/BlameDocument.h"

#include <QCache>
#include <QFont>
#include <QLocale>
#include <QRect>
#include <QString>

#include <memory>
#include <utility>

class QPainter;

namespace plovik {

/// Draws the rows of a blame: the commit of a run of lines, the line numbers, and the code. Only the part of a long line
/// that is in sight is shaped. Lengths are in device-independent pixels. Main thread.
class BlameRowPainter {
public:
    BlameRowPainter();

    /// Replaces the document and drops the colours of the old one.
    void setDocument(std::shared_ptr<const BlameDocument> document);
    void setSyntax(std::shared_ptr<const FileSyntax> syntax) { syntax_ = std::move(syntax); }
    /// Takes the settings' tab width for a file of which the working tree says nothing.
    void takeTabWidth();
    /// Measures the current fonts for a view of this width. `annotationWidth` is what the user has chosen, 0 for as
    /// wide as needed. Where it is narrow, the commit of a run is shown on two rows.
    void measure(int viewWidth, int annotationWidth);

    int rowHeight() const { return rowHeight_; }
    int annotationWidth() const { return annotationWidth_; }
    int codeLeft() const { return annotationWidth_ + numberWidth_; }
    /// Returns the width of the widest line with the columns at its left.
    int contentWidth() const;

    struct Look {
        int offset = 0; ///< by how much the code is scrolled to the left
        int topRow = 0; ///< the first row in sight
        bool isSelected = false;
        bool isCurrent = false;           ///< the keyboard is on it
        const DiffFound* found = nullptr; ///< what a search has found; null without one
        bool offersBefore = false;        ///< shows the button for the blame before the row's commit
    };
    void paint(QPainter& painter, int row, const QRect& area, const Look& look);

    /// Returns where a match begins and ends, from the beginning of the code.
    std::pair<int, int> spanOf(const DiffFound::Run& match);

    /// Returns where the button for the blame before a commit is in a row that covers `area`.
    QRect beforeButton(const QRect& area) const;

private:
    void paintAnnotation(QPainter& painter, int row, const QRect& area, const Look& look) const;
    void paintBeforeButton(QPainter& painter, const QRect& button, double warmth) const;
    void paintNumber(QPainter& painter, int row, const QRect& area, const Look& look) const;
    void paintCode(QPainter& painter, int row, const QRect& area, const Look& look);
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
    int tabWidth_ = ShownLine::standardTabWidth;
    int columns_ = 0; ///< of the widest line
};

/// Returns the background of an annotation for the warmth of its commit.
QColor blameTint(double warmth);

} // namespace plovik
