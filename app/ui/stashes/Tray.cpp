// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/ui/stashes/Tray.h"

#include "app/ui/widgets/Theme.h"

#include <QPainter>
#include <QPainterPath>

namespace plovik {

namespace {

constexpr qreal drawnSize = 14; ///< the side of the square that trayPath() fills
constexpr int signSize = 40;

/// Returns the outline of a tray seen from the front.
QPainterPath trayPath()
{
    QPainterPath tray;
    tray.moveTo(1, 8);
    tray.lineTo(3.4, 2.2);
    tray.lineTo(10.6, 2.2);
    tray.lineTo(13, 8);
    tray.lineTo(13, 12);
    tray.lineTo(1, 12);
    tray.closeSubpath();
    tray.moveTo(1, 8);
    tray.lineTo(4.4, 8);
    tray.cubicTo(4.8, 10.4, 9.2, 10.4, 9.6, 8);
    tray.lineTo(13, 8);
    return tray;
}

} // namespace

void paintTray(QPainter& painter, const QRectF& area, const QColor& color)
{
    const qreal scale = area.width() / drawnSize;
    // Large signs are drawn in finer lines.
    const qreal line = scale > 1 ? 1.0 : 1.3;
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.translate(area.topLeft());
    painter.scale(scale, scale);
    painter.strokePath(trayPath(), QPen(color, line, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    painter.restore();
}

TraySign::TraySign(QWidget* parent) : QWidget(parent) { setFixedSize(signSize, signSize); }

void TraySign::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    paintTray(painter, rect(), Theme::current().secondaryText);
}

} // namespace plovik

#include "moc_Tray.cpp"
