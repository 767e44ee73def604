// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/ui/widgets/IconButton.h"

#include "app/ui/widgets/FocusRing.h"
#include "app/ui/widgets/RowPainting.h"
#include "app/ui/widgets/Theme.h"

#include <QPainter>
#include <QPainterPath>

#include <algorithm>

namespace plovik {

namespace {

// All pictures are drawn around the origin, 14 pixels wide and high.

void paintSideBySide(QPainter& painter)
{
    painter.drawRoundedRect(QRectF(-6.5, -5.5, 13, 11), 2, 2);
    painter.drawLine(QPointF(0, -5.5), QPointF(0, 5.5));
    for (const double y : {-2.0, 1.5}) {
        painter.drawLine(QPointF(-4, y), QPointF(-2.5, y));
        painter.drawLine(QPointF(2.5, y), QPointF(4, y));
    }
}

/// Draws the usual sign for a blank.
void paintWhiteSpace(QPainter& painter)
{
    painter.drawPolyline(QPolygonF{QPointF(-6, 1.5), QPointF(-6, 5), QPointF(6, 5), QPointF(6, 1.5)});
    for (const double x : {-4.0, 0.0, 4.0})
        painter.drawEllipse(QPointF(x, -2), 0.7, 0.7);
}

/// Draws a sheet with lines.
void paintWholeFile(QPainter& painter)
{
    painter.drawPolyline(QPolygonF{QPointF(1, -6.5), QPointF(-5, -6.5), QPointF(-5, 6.5), QPointF(5, 6.5),
                                   QPointF(5, -2.5), QPointF(1, -6.5), QPointF(1, -2.5), QPointF(5, -2.5)});
    painter.drawLine(QPointF(-2.5, 0.5), QPointF(2.5, 0.5));
    painter.drawLine(QPointF(-2.5, 3.5), QPointF(2.5, 3.5));
}

/// Draws a line that goes on below.
void paintWrap(QPainter& painter)
{
    painter.drawLine(QPointF(-6, -5), QPointF(6, -5));
    painter.drawLine(QPointF(-6, 5), QPointF(-2, 5));
    QPainterPath turn(QPointF(-6, 0));
    turn.lineTo(3.5, 0);
    turn.arcTo(QRectF(1, 0, 5, 5), 90, -180);
    turn.lineTo(1, 5);
    painter.drawPath(turn);
    painter.drawPolyline(QPolygonF{QPointF(2.5, 3), QPointF(0.5, 5), QPointF(2.5, 7)});
}

/// Draws a trunk with two branches.
void paintTree(QPainter& painter)
{
    painter.drawPolyline(QPolygonF{QPointF(-5, -6), QPointF(-5, 5), QPointF(-1, 5)});
    painter.drawLine(QPointF(-5, -1), QPointF(-1, -1));
    for (const double y : {-1.0, 5.0})
        painter.drawLine(QPointF(1, y), QPointF(6, y));
    painter.drawLine(QPointF(-2, -6), QPointF(6, -6));
}

void paintFunnel(QPainter& painter)
{
    painter.drawPolyline(QPolygonF{QPointF(-6, -5), QPointF(6, -5), QPointF(1.5, 0.5), QPointF(1.5, 5.5),
                                   QPointF(-1.5, 4), QPointF(-1.5, 0.5), QPointF(-6, -5)});
}

/// Draws two files below each other, each a bar with lines.
void paintAllFiles(QPainter& painter)
{
    for (const double y : {-6.0, 1.0}) {
        painter.drawRect(QRectF(-6, y, 12, 2));
        painter.drawLine(QPointF(-4, y + 4.5), QPointF(4, y + 4.5));
    }
}

void paintLens(QPainter& painter)
{
    painter.drawEllipse(QPointF(-1.2, -1.2), 4.3, 4.3);
    painter.drawLine(QPointF(2, 2), QPointF(5.5, 5.5));
}

void paintChevron(QPainter& painter, int direction)
{
    painter.drawPolyline(
        QPolygonF{QPointF(-4, -2.0 * direction), QPointF(0, 2.0 * direction), QPointF(4, -2.0 * direction)});
}

void paintCross(QPainter& painter)
{
    painter.drawLine(QPointF(-3.5, -3.5), QPointF(3.5, 3.5));
    painter.drawLine(QPointF(-3.5, 3.5), QPointF(3.5, -3.5));
}

/// A star with four rays, curved inwards.
QPainterPath star(QPointF middle, double ray)
{
    QPainterPath path(middle + QPointF(0, -ray));
    for (const QPointF tip : {QPointF(ray, 0), QPointF(0, ray), QPointF(-ray, 0), QPointF(0, -ray)})
        path.quadTo(middle, middle + tip);
    return path;
}

void paintSparkles(QPainter& painter)
{
    painter.drawPath(star(QPointF(-1.5, 1), 5.5));
    painter.setBrush(painter.pen().color());
    painter.setPen(Qt::NoPen);
    painter.drawPath(star(QPointF(4.8, -4.3), 2.8));
}

void paintIcon(QPainter& painter, Icon icon)
{
    switch (icon) {
    case Icon::sideBySide:
        return paintSideBySide(painter);
    case Icon::whiteSpace:
        return paintWhiteSpace(painter);
    case Icon::wholeFile:
        return paintWholeFile(painter);
    case Icon::wrap:
        return paintWrap(painter);
    case Icon::tree:
        return paintTree(painter);
    case Icon::filter:
        return paintFunnel(painter);
    case Icon::allFiles:
        return paintAllFiles(painter);
    case Icon::find:
        return paintLens(painter);
    case Icon::previous:
        return paintChevron(painter, -1);
    case Icon::next:
        return paintChevron(painter, 1);
    case Icon::matchCase:
        // The font has its size already.
        painter.scale(1 / painter.worldTransform().m11(), 1 / painter.worldTransform().m22());
        painter.setFont(Theme::font(-0.5, QFont::DemiBold));
        painter.drawText(QRectF(-40, -40, 80, 80), Qt::AlignCenter, IconButton::tr("Aa"));
        return;
    case Icon::back:
        painter.drawPolyline(QPolygonF{QPointF(1.5, -5), QPointF(-3.5, 0), QPointF(1.5, 5)});
        return;
    case Icon::close:
        return paintCross(painter);
    case Icon::sparkles:
        return paintSparkles(painter);
    }
}

} // namespace

IconButton::IconButton(Icon icon, const QString& title, QWidget* parent, const QString& keys)
    : QAbstractButton(parent), icon_(icon)
{
    setAccessibleName(title);
    setToolTip(plainToolTip(keys.isEmpty() ? title : tr("%1 (%2)").arg(title, keys)));
    setFocusPolicy(Qt::TabFocus);
    setCursor(Qt::ArrowCursor);
    setAttribute(Qt::WA_Hover);
    // Beside a large font it is larger, but not higher than a line.
    const int high = std::max(side, QFontMetrics(Theme::font()).height() + 4);
    setFixedSize(high, high);
}

void IconButton::paintEvent(QPaintEvent*)
{
    const Theme& theme = Theme::current();
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const QRectF panel = QRectF(rect()).adjusted(0.5, 0.5, -0.5, -0.5);
    QColor fill = Qt::transparent;
    if (isChecked())
        fill = theme.selection;
    else if (isEnabled() && isDown())
        fill = theme.controlPressed;
    else if (isEnabled() && underMouse())
        fill = theme.controlHover;
    painter.setBrush(fill);
    painter.setPen(Qt::NoPen);
    painter.drawRoundedRect(panel, 5, 5);
    if (hasFocus())
        paintFocusRing(painter, rect(), 5);

    QColor color = isChecked() ? theme.accent : theme.secondaryText;
    if (!isEnabled())
        color = theme.disabledText;
    painter.setPen(QPen(color, 1.3, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    painter.setBrush(Qt::NoBrush);
    painter.translate(panel.center());
    painter.scale(panel.height() / (side - 1), panel.height() / (side - 1));
    paintIcon(painter, icon_);
}

} // namespace plovik

#include "moc_IconButton.cpp"
