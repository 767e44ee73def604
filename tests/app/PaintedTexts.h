// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QRectF>
#include <QString>

#include <vector>

class QWidget;

namespace plovik::test {

/// A piece of text that a widget has painted, and where. A line of one font and one colour is one piece.
struct PaintedText {
    QString text;
    QRectF place; ///< in the widget
    QRectF room;  ///< what the painter clips to, or else the whole widget
};

/// Paints the widget without its children, and returns the texts in the order in which they were painted.
std::vector<PaintedText> paintedTexts(QWidget& widget);

} // namespace plovik::test
