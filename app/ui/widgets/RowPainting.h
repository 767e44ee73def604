// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QColor>
#include <QFont>
#include <QPointF>
#include <QRect>
#include <QRectF>
#include <QString>

class QPainter;
class QStyleOptionViewItem;

/// Functions that draw the rows of all lists. Lengths are device-independent pixels. Main thread.
namespace plovik {

inline constexpr int listRowHeight = 28;

/// While it lives, the functions below draw a row that is read from right to left: places are given as for a row that is
/// read from left to right, and mirrored in it. Does nothing in other rows. On the stack of a paint function.
class RowMirror {
public:
    RowMirror(const QRect& row, Qt::LayoutDirection direction);
    explicit RowMirror(const QStyleOptionViewItem& option);
    ~RowMirror();
    RowMirror(const RowMirror&) = delete;
    RowMirror& operator=(const RowMirror&) = delete;

    /// Returns where something is drawn, for what draws itself.
    QRectF operator()(const QRectF& place) const;
    QPointF operator()(const QPointF& place) const;

private:
    const RowMirror* outer_;
    QRect row_;
    bool isMirrored_;
};

/// Returns where something is drawn by the innermost RowMirror that lives; the place itself without one.
QRectF placeInRow(const QRectF& place);

/// Draws the tint behind a selected row, or the outline of a current row that is not selected.
void paintRowBackground(QPainter& painter, const QRect& row, const QStyleOptionViewItem& option, int inset);

/// Draws text on one line, cut with "…" where it does not fit.
void paintText(QPainter& painter, const QRect& area, const QString& text, const QFont& font, const QColor& color,
               Qt::Alignment alignment = Qt::AlignLeft, Qt::TextElideMode elide = Qt::ElideRight);

/// Returns the width of `text` on one line.
int textWidth(const QString& text, const QFont& font);

/// Draws a count in a rounded pill that ends at the right edge of `area`. Returns the pill's width.
int paintPill(QPainter& painter, const QRect& area, const QString& text);
int pillWidth(const QString& text);

/// Draws the triangle of a row that can be opened.
void paintDisclosure(QPainter& painter, QPointF center, bool isOpen, const QColor& color);

/// Returns a tooltip that shows `text` as plain text, with its line breaks, and no more of it than a screen can hold.
/// Qt would read a text that looks like HTML as HTML. Every tooltip that is not a literal sentence goes through this.
QString plainToolTip(const QString& text);

/// Returns a window title that shows `text` as it is: Qt puts a mark of its own in place of "[*]".
QString plainTitle(QString text);
/// Returns the text of a menu's entry or of a button that shows `text` as it is: "&" would mark the key to press.
QString plainMenuText(QString text);

} // namespace plovik
