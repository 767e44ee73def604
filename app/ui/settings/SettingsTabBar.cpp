// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/ui/settings/SettingsTabBar.h"

#include "app/ui/widgets/FocusRing.h"

#include <QPaintEvent>
#include <QPainter>

#include <algorithm>

namespace plovik {

namespace {

constexpr int symbolSize = 24;
constexpr int padding = 7;
constexpr int narrowestTab = 96;

} // namespace

SettingsTabBar::SettingsTabBar(QWidget* parent) : QTabBar(parent)
{
    setAccessibleName(tr("Settings"));
    setDrawBase(false);
    setExpanding(false);
    setFocusPolicy(Qt::StrongFocus);
}

void SettingsTabBar::add(const QString& title, SettingsSymbol symbol)
{
    // addTab() measures the tab, which needs the symbol.
    symbols_.push_back(symbol);
    addTab(title);
}

QSize SettingsTabBar::tabSizeHint(int index) const
{
    const QFontMetrics metrics(font());
    return {std::max(metrics.horizontalAdvance(tabText(index)) + 4 * padding, narrowestTab),
            symbolSize + metrics.height() + 3 * padding};
}

void SettingsTabBar::focusInEvent(QFocusEvent* event)
{
    showsFocus_ = event->reason() == Qt::TabFocusReason || event->reason() == Qt::BacktabFocusReason;
    QTabBar::focusInEvent(event);
}

void SettingsTabBar::paintEvent(QPaintEvent* event)
{
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    for (int index = 0; index < count(); ++index) {
        const QRect tab = tabRect(index);
        if (!tab.intersects(event->rect()))
            continue;
        const bool isCurrent = index == currentIndex();
        const QRectF tile = QRectF(tab).adjusted(2.5, 0.5, -2.5, -0.5);
        painter.setPen(Qt::NoPen);
        painter.setBrush(isCurrent ? palette().brush(QPalette::Highlight) : QBrush(Qt::NoBrush));
        painter.drawRoundedRect(tile, 6, 6);
        if (isCurrent && hasFocus() && showsFocus_)
            paintFocusRing(painter, tile, 6);

        const QColor quiet = palette().color(QPalette::PlaceholderText);
        paintSymbol(painter, symbols_[static_cast<std::size_t>(index)],
                    QRectF(tab.center().x() - symbolSize / 2.0 + 0.5, tab.top() + padding, symbolSize, symbolSize),
                    isCurrent ? palette().color(QPalette::Link) : quiet);
        painter.setPen(isCurrent ? palette().color(QPalette::WindowText) : quiet);
        painter.drawText(tab.adjusted(0, padding + symbolSize, 0, -padding + 2), Qt::AlignCenter, tabText(index));
    }
}

} // namespace plovik

#include "moc_SettingsTabBar.cpp"
