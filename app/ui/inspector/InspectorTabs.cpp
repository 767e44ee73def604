// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/ui/inspector/InspectorTabs.h"

#include "app/ui/widgets/FocusRing.h"
#include "app/ui/widgets/RowPainting.h"
#include "app/ui/widgets/Theme.h"

#include <QMouseEvent>
#include <QPainter>

namespace plovik {

namespace {

constexpr int padding = 10;
constexpr int barHeight = 30;
constexpr int lineHeight = 2;

} // namespace

InspectorTabs::InspectorTabs(QWidget* parent) : QTabBar(parent)
{
    setDrawBase(false);
    setExpanding(false);
    setUsesScrollButtons(false);
    setFocusPolicy(Qt::TabFocus);
    setMouseTracking(true);
}

QSize InspectorTabs::tabSizeHint(int index) const
{
    return {textWidth(tabText(index), Theme::font(0, QFont::DemiBold)) + 2 * padding, barHeight};
}

void InspectorTabs::paintEvent(QPaintEvent* event)
{
    Q_UNUSED(event)
    const Theme& theme = Theme::current();
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    for (int index = 0; index < count(); ++index) {
        const QRect tab = tabRect(index);
        const bool isCurrent = index == currentIndex();
        painter.setPen(Qt::NoPen);
        if (index == hovered_ && !isCurrent) {
            painter.setBrush(theme.controlHover);
            painter.drawRoundedRect(tab.adjusted(1, 3, -1, -4), 5, 5);
        }
        paintText(painter, tab, tabText(index), Theme::font(0, isCurrent ? QFont::DemiBold : QFont::Normal),
                  isCurrent ? theme.text : theme.secondaryText, Qt::AlignHCenter, Qt::ElideNone);
        if (isCurrent)
            painter.fillRect(
                QRect(tab.left() + padding, tab.bottom() + 1 - lineHeight, tab.width() - 2 * padding, lineHeight),
                theme.accent);
        if (isCurrent && hasFocus())
            paintFocusRing(painter, QRectF(tab).adjusted(1, 3, -1, -4), 5);
    }
}

void InspectorTabs::mouseMoveEvent(QMouseEvent* event)
{
    QTabBar::mouseMoveEvent(event);
    hovered_ = tabAt(event->position().toPoint());
    update();
}

void InspectorTabs::leaveEvent(QEvent* event)
{
    QTabBar::leaveEvent(event);
    hovered_ = -1;
    update();
}

} // namespace plovik

#include "moc_InspectorTabs.cpp"
