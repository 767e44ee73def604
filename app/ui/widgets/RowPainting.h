// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QColor>
#include <QFont>
#include <QRect>
#include <QString>

class QPainter;
class QStyleOptionViewItem;

/// What the rows of all lists are drawn with. Lengths are device-independent pixels; main thread.
namespace plovik {

inline constexpr int listRowHeight = 28;

/// The tint behind a selected row, and the outline of the row that the keyboard is on when it is not the selected one.
void paintRowBackground(QPainter& painter, const QRect& row, const QStyleOptionViewItem& option, int inset);

/// Text on one line, cut with "…" where it does not fit.
void paintText(QPainter& painter, const QRect& area, const QString& text, const QFont& font, const QColor& color,
               Qt::Alignment alignment = Qt::AlignLeft, Qt::TextElideMode elide = Qt::ElideRight);

/// The width of `text` on one line.
int textWidth(const QString& text, const QFont& font);

/// A count in a rounded pill that ends at the right edge of `area`. Returns the pill's width.
int paintPill(QPainter& painter, const QRect& area, const QString& text);
int pillWidth(const QString& text);

/// The triangle of a row that opens.
void paintDisclosure(QPainter& painter, QPointF center, bool isOpen, const QColor& color);

/// Returns a tooltip that shows `text` as plain text, with its line breaks.
QString plainToolTip(const QString& text);

} // namespace plovik
