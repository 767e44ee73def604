// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QRectF>

class QAbstractScrollArea;
class QPainter;
class QWidget;

/// The ring that shows where the keyboard focus is, 2 pixels wide in the accent colour. Push buttons, check boxes and line
/// edits have it from the style. Main thread.
namespace plovik {

inline constexpr int focusRingWidth = 2;

/// Gives a list or a text a frame that the style draws as a ring while it, or something in it, has the focus. The frame
/// lies outside of the viewport, so that scrolling need not draw it again.
void giveFocusRing(QAbstractScrollArea& area);

/// Takes the ring away again, where a widget around has one.
void takeFocusRing(QAbstractScrollArea& area);

/// Returns whether `widget` got a ring from giveFocusRing().
bool hasFocusRing(const QWidget* widget);
/// Draws that frame. For the style.
void paintFocusFrame(QPainter& painter, const QAbstractScrollArea& area);

/// Draws a ring inside the edges of `rect`, for controls that paint themselves.
void paintFocusRing(QPainter& painter, const QRectF& rect, double radius);

} // namespace plovik
