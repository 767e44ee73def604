// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QStyle>

class QColor;
class QPainter;
class QRect;
class QStyleOptionComboBox;
class QStyleOptionMenuItem;
class QStyleOptionSlider;

/// Functions that draw one control each in the colours of the theme in force. The style calls them, and rows that contain
/// a check box. Lengths are device-independent pixels. Main thread.
namespace plovik {

inline constexpr double controlRadius = 6;

/// Returns whether a widget has a dynamic property that is true.
bool hasProperty(const QWidget* widget, const char* property);
/// Returns whether a button is filled with a colour.
bool isFilled(const QStyleOption* option, const QWidget* widget);

/// Draws a rectangle with round corners and a border of one pixel.
void paintPanel(QPainter& painter, const QRect& rect, double radius, const QColor& fill, const QColor& border);
void paintButton(QPainter& painter, const QStyleOption* option, const QWidget* widget);
void paintLineEdit(QPainter& painter, const QStyleOption* option);
void paintComboBox(QPainter& painter, const QStyleOptionComboBox& option, const QRect& arrow, const QWidget* widget);
void paintScrollBar(QPainter& painter, const QStyleOptionSlider& option, const QRect& slider);
/// Returns a part of a scroll bar. Thin bars have no arrow buttons, so the groove is the whole bar.
QRect scrollBarPart(const QStyleOptionSlider& option, QStyle::SubControl part);
void paintRadioButton(QPainter& painter, const QStyleOption* option);
void paintMenuBarItem(QPainter& painter, const QStyleOptionMenuItem& option);
/// Returns the side of a check box's square.
int checkBoxSize();
void paintCheckBox(QPainter& painter, const QRect& box, Qt::CheckState state, bool isEnabled, bool hasFocus);

} // namespace plovik
