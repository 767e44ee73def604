// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/views/inspector/InspectorButton.h"

#include "app/views/Theme.h"

#include <QPainter>

namespace plovik {

InspectorButton::InspectorButton(Sign sign, const QString& name, QWidget* parent) : QAbstractButton(parent), sign_(sign)
{
    setAccessibleName(name);
    setFocusPolicy(Qt::TabFocus);
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
}

void InspectorButton::paintEvent(QPaintEvent* event)
{
    Q_UNUSED(event)
    const Theme& theme = Theme::current();
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    if (underMouse() || isDown() || hasFocus()) {
        painter.setPen(hasFocus() ? QPen(theme.accent) : QPen(Qt::NoPen));
        painter.setBrush(isDown() ? theme.controlPressed : underMouse() ? theme.controlHover : QColor(Qt::transparent));
        painter.drawRoundedRect(QRectF(rect()).adjusted(0.5, 0.5, -0.5, -0.5), 5, 5);
    }
    painter.setPen(
        QPen(underMouse() ? theme.text : theme.secondaryText, 1.5, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    painter.translate(QRectF(rect()).center());
    if (sign_ == Sign::close) {
        painter.drawLine(QPointF(-4, -4), QPointF(4, 4));
        painter.drawLine(QPointF(-4, 4), QPointF(4, -4));
    } else {
        painter.drawPolyline(QPolygonF{QPointF(1.5, -5), QPointF(-3.5, 0), QPointF(1.5, 5)});
    }
}

void InspectorButton::enterEvent(QEnterEvent* event)
{
    QAbstractButton::enterEvent(event);
    update();
}

void InspectorButton::leaveEvent(QEvent* event)
{
    QAbstractButton::leaveEvent(event);
    update();
}

} // namespace plovik
