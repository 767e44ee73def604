// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/ui/widgets/ControlPainting.h"

#include "app/ui/widgets/FocusRing.h"
#include "app/ui/widgets/Theme.h"

#include <QPainter>
#include <QStyleOption>
#include <QWidget>

#include <algorithm>

namespace plovik {

namespace {

constexpr double ordinaryBox = 15;

bool isPrimary(const QStyleOption* option, const QWidget* widget)
{
    const auto* button = qstyleoption_cast<const QStyleOptionButton*>(option);
    return hasProperty(widget, "primary") || (button && (button->features & QStyleOptionButton::DefaultButton));
}

/// Returns the rectangle whose border of one pixel lies exactly on pixels.
QRectF insideBorder(const QRect& rect) { return QRectF(rect).adjusted(0.5, 0.5, -0.5, -0.5); }

QColor pressed(const QColor& accent, const QStyleOption* option)
{
    if (option->state & QStyle::State_Sunken)
        return accent.darker(115);
    return option->state & QStyle::State_MouseOver ? accent.darker(106) : accent;
}

void paintChevron(QPainter& painter, const QRect& area, const QColor& color)
{
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(QPen(color, 1.5, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    const QPointF middle = QRectF(area).center();
    painter.drawPolyline(QPolygonF{middle + QPointF(-3.5, -1.5), middle + QPointF(0, 2), middle + QPointF(3.5, -1.5)});
    painter.restore();
}

} // namespace

bool hasProperty(const QWidget* widget, const char* property) { return widget && widget->property(property).toBool(); }

bool isFilled(const QStyleOption* option, const QWidget* widget)
{
    return isPrimary(option, widget) || hasProperty(widget, "destructive");
}

void paintPanel(QPainter& painter, const QRect& rect, double radius, const QColor& fill, const QColor& border)
{
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(border);
    painter.setBrush(fill);
    painter.drawRoundedRect(insideBorder(rect), radius, radius);
    painter.restore();
}

void paintButton(QPainter& painter, const QStyleOption* option, const QWidget* widget)
{
    const Theme& theme = Theme::current();
    const bool isEnabled = option->state & QStyle::State_Enabled;
    const bool hasFocus = (option->state & QStyle::State_HasFocus) && isEnabled;
    const double radius = hasProperty(widget, "compact") ? controlRadius - 1 : controlRadius;
    if (hasProperty(widget, "link") && !hasFocus && !(option->state & (QStyle::State_MouseOver | QStyle::State_Sunken)))
        return;
    if (isFilled(option, widget) && isEnabled) {
        const QColor fill = pressed(hasProperty(widget, "destructive") ? theme.destructive : theme.accent, option);
        paintPanel(painter, option->rect, radius, fill, fill);
        if (hasFocus)
            paintPanel(painter, option->rect.adjusted(2, 2, -2, -2), radius - 2, fill, theme.onAccent);
        return;
    }
    QColor fill = theme.control;
    if (isEnabled && (option->state & (QStyle::State_Sunken | QStyle::State_On)))
        fill = theme.controlPressed;
    else if (isEnabled && (option->state & QStyle::State_MouseOver))
        fill = theme.controlHover;
    paintPanel(painter, option->rect, radius, fill, theme.controlBorder);
    if (hasFocus)
        paintFocusRing(painter, option->rect, radius);
}

void paintLineEdit(QPainter& painter, const QStyleOption* option)
{
    const Theme& theme = Theme::current();
    const bool hasFocus = option->state & QStyle::State_HasFocus;
    paintPanel(painter, option->rect, controlRadius, theme.field, theme.controlBorder);
    if (hasFocus)
        paintFocusRing(painter, option->rect, controlRadius);
}

void paintComboBox(QPainter& painter, const QStyleOptionComboBox& option, const QRect& arrow, const QWidget* widget)
{
    if (option.editable)
        paintLineEdit(painter, &option);
    else
        paintButton(painter, &option, widget);
    const Theme& theme = Theme::current();
    paintChevron(painter, arrow, option.state & QStyle::State_Enabled ? theme.secondaryText : theme.disabledText);
}

void paintScrollBar(QPainter& painter, const QStyleOptionSlider& option, const QRect& slider)
{
    const Theme& theme = Theme::current();
    painter.fillRect(option.rect, option.palette.color(QPalette::Base));
    if (option.maximum <= option.minimum)
        return;
    const bool isActive =
        (option.state & QStyle::State_Sunken) && option.activeSubControls == QStyle::SC_ScrollBarSlider;
    const bool isHovered = option.state & QStyle::State_MouseOver;
    QColor handle = theme.secondaryText;
    handle.setAlphaF(isActive ? 0.75F : isHovered ? 0.55F : 0.35F);
    const QRectF thin = QRectF(slider).adjusted(2, 2, -2, -2);
    const double radius = std::min(thin.width(), thin.height()) / 2;
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(handle);
    painter.drawRoundedRect(thin, radius, radius);
    painter.restore();
}

QRect scrollBarPart(const QStyleOptionSlider& option, QStyle::SubControl part)
{
    constexpr int shortestHandle = 28;
    const bool isHorizontal = option.orientation == Qt::Horizontal;
    const int length = isHorizontal ? option.rect.width() : option.rect.height();
    const int thickness = isHorizontal ? option.rect.height() : option.rect.width();
    const int range = option.maximum - option.minimum;
    int handle = length;
    if (range > 0) {
        const double part_ = static_cast<double>(option.pageStep) / (static_cast<double>(range) + option.pageStep);
        handle = std::clamp(static_cast<int>(part_ * length), std::min(shortestHandle, length), length);
    }
    const int start = QStyle::sliderPositionFromValue(option.minimum, option.maximum, option.sliderPosition,
                                                      length - handle, option.upsideDown);
    QRect rect;
    switch (part) {
    case QStyle::SC_ScrollBarSlider:
        rect = QRect(start, 0, handle, thickness);
        break;
    case QStyle::SC_ScrollBarSubPage:
        rect = QRect(0, 0, start, thickness);
        break;
    case QStyle::SC_ScrollBarAddPage:
        rect = QRect(start + handle, 0, length - start - handle, thickness);
        break;
    case QStyle::SC_ScrollBarGroove:
        rect = QRect(0, 0, length, thickness);
        break;
    default:
        return {};
    }
    if (!isHorizontal)
        rect = QRect(rect.y(), rect.x(), rect.height(), rect.width());
    return QStyle::visualRect(option.direction, option.rect, rect.translated(option.rect.topLeft()));
}

void paintRadioButton(QPainter& painter, const QStyleOption* option)
{
    const Theme& theme = Theme::current();
    const bool isEnabled = option->state & QStyle::State_Enabled;
    const bool isOn = option->state & QStyle::State_On;
    const QColor dot = isEnabled ? theme.accent : theme.disabledText;
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(isOn || (option->state & QStyle::State_HasFocus) ? dot : theme.indicatorBorder);
    painter.setBrush(isOn ? dot : theme.control);
    painter.drawEllipse(insideBorder(option->rect));
    if (isOn) {
        painter.setPen(Qt::NoPen);
        painter.setBrush(theme.onAccent);
        painter.drawEllipse(QRectF(option->rect).center(), 2.5, 2.5);
    }
    painter.restore();
}

void paintMenuBarItem(QPainter& painter, const QStyleOptionMenuItem& option)
{
    const Theme& theme = Theme::current();
    painter.fillRect(option.rect, theme.bars);
    const bool isOpen = option.state & QStyle::State_Sunken;
    const bool isSelected = option.state & QStyle::State_Selected;
    if (isOpen || isSelected) {
        const QColor fill = isOpen ? theme.controlPressed : theme.controlHover;
        paintPanel(painter, option.rect.adjusted(1, 2, -1, -2), controlRadius - 1, fill, fill);
    }
    painter.setPen(option.state & QStyle::State_Enabled ? theme.text : theme.disabledText);
    painter.drawText(option.rect, Qt::AlignCenter | Qt::TextShowMnemonic | Qt::TextSingleLine, option.text);
}

int checkBoxSize() { return Theme::scaled(static_cast<int>(ordinaryBox)); }

void paintCheckBox(QPainter& painter, const QRect& box, Qt::CheckState state, bool isEnabled, bool hasFocus)
{
    const Theme& theme = Theme::current();
    const QColor mark = isEnabled ? theme.accent : theme.disabledText;
    const bool isEmpty = state == Qt::Unchecked;
    paintPanel(painter, box, 4, isEmpty ? theme.control : mark,
               hasFocus  ? theme.accent
               : isEmpty ? theme.indicatorBorder
                         : mark);
    if (isEmpty)
        return;
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(QPen(theme.onAccent, 1.6, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    painter.translate(QRectF(box).center());
    painter.scale(box.width() / ordinaryBox, box.height() / ordinaryBox);
    if (state == Qt::Checked)
        painter.drawPolyline(QPolygonF{QPointF(-3.2, 0.2), QPointF(-1, 2.5), QPointF(3.4, -2.4)});
    else
        painter.drawLine(QPointF(-3, 0), QPointF(3, 0));
    painter.restore();
}

} // namespace plovik
