// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/ui/widgets/FocusRing.h"

#include "app/ui/widgets/Theme.h"

#include <QAbstractScrollArea>
#include <QApplication>
#include <QPainter>

namespace plovik {

namespace {

constexpr const char* ringProperty = "focusRing";

/// Draws the rings anew from `widget` outwards.
void updateRings(QWidget* widget)
{
    for (; widget; widget = widget->parentWidget()) {
        if (hasFocusRing(widget))
            widget->update();
    }
}

/// Qt draws a frame again when the area itself gets the focus, but not when something in it does.
void followFocus()
{
    static bool follows = false;
    if (std::exchange(follows, true))
        return;
    QObject::connect(qApp, &QApplication::focusChanged, qApp, [](QWidget* before, QWidget* now) {
        updateRings(before);
        updateRings(now);
    });
    QObject::connect(qApp, &QObject::destroyed, [] { follows = false; });
}

} // namespace

void giveFocusRing(QAbstractScrollArea& area)
{
    followFocus();
    area.setProperty(ringProperty, true);
    area.setFrameShape(QFrame::StyledPanel);
}

void takeFocusRing(QAbstractScrollArea& area)
{
    area.setProperty(ringProperty, false);
    area.setFrameShape(QFrame::NoFrame);
}

bool hasFocusRing(const QWidget* widget) { return widget && widget->property(ringProperty).toBool(); }

void paintFocusFrame(QPainter& painter, const QAbstractScrollArea& area)
{
    const QWidget* const focus = area.window()->isActiveWindow() ? QApplication::focusWidget() : nullptr;
    const bool isFocused = focus && (focus == &area || area.isAncestorOf(focus));
    const QWidget& inside = *area.viewport();
    const QColor color = isFocused ? Theme::current().accent : inside.palette().color(inside.backgroundRole());
    const int width = focusRingWidth;
    const QRect frame = area.rect();
    painter.fillRect(QRect(0, 0, frame.width(), width), color);
    painter.fillRect(QRect(0, frame.height() - width, frame.width(), width), color);
    painter.fillRect(QRect(0, width, width, frame.height() - 2 * width), color);
    painter.fillRect(QRect(frame.width() - width, width, width, frame.height() - 2 * width), color);
}

void paintFocusRing(QPainter& painter, const QRectF& rect, double radius)
{
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(QPen(Theme::current().accent, focusRingWidth));
    painter.setBrush(Qt::NoBrush);
    painter.drawRoundedRect(rect.adjusted(1, 1, -1, -1), radius, radius);
    painter.restore();
}

} // namespace plovik
