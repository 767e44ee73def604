// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/ui/widgets/Style.h"
#include "app/ui/widgets/Theme.h"

#include <QIcon>
#include <QPainter>

namespace plovik {

namespace {

/// Draws the button that a narrow menu bar shows in place of its last menus.
QIcon overflowIcon()
{
    constexpr int size = 16;
    QPixmap pixmap(size, size);
    pixmap.fill(Qt::transparent);
    QPainter painter(&pixmap);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(QPen(Theme::current().secondaryText, 1.5));
    for (const double left : {4.0, 8.5})
        painter.drawPolyline(QPolygonF{{left, 4.5}, {left + 3.5, 8}, {left, 11.5}});
    return QIcon(pixmap);
}

} // namespace

QIcon Style::standardIcon(StandardPixmap which, const QStyleOption* option, const QWidget* widget) const
{
    // Every menu bar asks for this icon. Qt's own one is a file, and reading it would load all image plugins.
    if (which == SP_ToolBarHorizontalExtensionButton)
        return overflowIcon();
    return QProxyStyle::standardIcon(which, option, widget);
}

} // namespace plovik
