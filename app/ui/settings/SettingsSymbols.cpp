// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/ui/settings/SettingsSymbols.h"

#include <QLinearGradient>
#include <QPainter>
#include <QPainterPath>

#include <cmath>
#include <numbers>

namespace plovik {

namespace {

constexpr double grid = 24;
constexpr double stroke = 1.6;

QPointF around(double angle, double radius)
{
    return {grid / 2 + radius * std::cos(angle), grid / 2 + radius * std::sin(angle)};
}

QPainterPath gear()
{
    constexpr int teeth = 8;
    constexpr double turn = 2 * std::numbers::pi / teeth;
    QPolygonF rim;
    for (int tooth = 0; tooth < teeth; ++tooth) {
        const double middle = tooth * turn;
        rim << around(middle - 0.30 * turn, 7.0) << around(middle - 0.17 * turn, 9.4)
            << around(middle + 0.17 * turn, 9.4) << around(middle + 0.30 * turn, 7.0);
    }
    QPainterPath path;
    path.addPolygon(rim);
    path.closeSubpath();
    path.addEllipse(QPointF(grid / 2, grid / 2), 3, 3);
    return path;
}

/// Lines of code, indented.
QPainterPath text()
{
    QPainterPath path;
    for (const QLineF& line :
         {QLineF(4, 6, 14, 6), QLineF(8, 10, 20, 10), QLineF(8, 14, 16, 14), QLineF(4, 18, 11, 18)})
    {
        path.moveTo(line.p1());
        path.lineTo(line.p2());
    }
    return path;
}

QPainterPath terminal()
{
    QPainterPath path;
    path.addRoundedRect(QRectF(2.8, 4.3, 18.4, 15.4), 3, 3);
    path.addPolygon(QPolygonF{QPointF(6.8, 9), QPointF(10, 12), QPointF(6.8, 15)});
    path.moveTo(12.5, 15.3);
    path.lineTo(17, 15.3);
    return path;
}

QPainterPath play()
{
    QPainterPath path;
    path.addEllipse(QRectF(3, 3, 18, 18));
    path.addPolygon(QPolygonF{QPointF(10, 8.2), QPointF(15.8, 12), QPointF(10, 15.8)});
    path.closeSubpath();
    return path;
}

/// A star of four points with hollow sides.
void addSparkle(QPainterPath& path, QPointF middle, double radius)
{
    const double waist = 0.16 * radius;
    path.moveTo(middle + QPointF(0, -radius));
    for (const auto& [hollow, tip] :
         {std::pair(QPointF(waist, -waist), QPointF(radius, 0)), std::pair(QPointF(waist, waist), QPointF(0, radius)),
          std::pair(QPointF(-waist, waist), QPointF(-radius, 0)),
          std::pair(QPointF(-waist, -waist), QPointF(0, -radius))})
        path.quadTo(middle + hollow, middle + tip);
    path.closeSubpath();
}

QPainterPath sparkles()
{
    QPainterPath path;
    addSparkle(path, QPointF(10, 13.2), 7.6);
    addSparkle(path, QPointF(18.6, 5.6), 3.4);
    return path;
}

QPainterPath folder()
{
    QPainterPath path(QPointF(3, 17.5));
    path.lineTo(3, 6.8);
    path.quadTo(3, 5, 4.8, 5);
    path.lineTo(8.6, 5);
    path.lineTo(11, 7.6);
    path.lineTo(19.2, 7.6);
    path.quadTo(21, 7.6, 21, 9.4);
    path.lineTo(21, 17.2);
    path.quadTo(21, 19, 19.2, 19);
    path.lineTo(4.8, 19);
    path.quadTo(3, 19, 3, 17.2);
    return path;
}

QPainterPath globe()
{
    const QPointF middle(grid / 2, grid / 2);
    QPainterPath path;
    path.addEllipse(middle, 9, 9);
    path.addEllipse(middle, 3.8, 9);
    path.moveTo(3, grid / 2);
    path.lineTo(21, grid / 2);
    return path;
}

QPainterPath pathOf(SettingsSymbol symbol)
{
    switch (symbol) {
    case SettingsSymbol::gear:
        return gear();
    case SettingsSymbol::text:
        return text();
    case SettingsSymbol::terminal:
        return terminal();
    case SettingsSymbol::play:
        return play();
    case SettingsSymbol::sparkles:
        return sparkles();
    case SettingsSymbol::globe:
        return globe();
    case SettingsSymbol::folder:
        break;
    }
    return folder();
}

} // namespace

void paintSymbol(QPainter& painter, SettingsSymbol symbol, const QRectF& area, const QColor& color)
{
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.translate(area.topLeft());
    painter.scale(area.width() / grid, area.height() / grid);
    painter.setPen(QPen(color, stroke, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    painter.setBrush(Qt::NoBrush);
    painter.drawPath(pathOf(symbol));
    painter.restore();
}

void paintApplicationSign(QPainter& painter, const QRectF& area)
{
    const QColor branch(0xFFC24D);
    const QColor shadow(0x173B7D);
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.translate(area.topLeft());
    painter.scale(area.width() / 112, area.height() / 116);
    painter.translate(-8, -8);
    QLinearGradient tile(0, 8, 0, 120);
    tile.setColorAt(0, QColor(0x4A8BF0));
    tile.setColorAt(1, QColor(0x2459BB));
    painter.setPen(Qt::NoPen);
    painter.setBrush(shadow);
    painter.drawRoundedRect(QRectF(8, 12, 112, 112), 27, 27);
    painter.setBrush(tile);
    painter.drawRoundedRect(QRectF(8, 8, 112, 112), 27, 27);

    // A branch that leaves the trunk and comes back to it: the letter P.
    QPainterPath bow(QPointF(44, 30));
    bow.lineTo(66, 30);
    bow.cubicTo(80, 30, 89, 39, 89, 52);
    bow.cubicTo(89, 65, 80, 74, 66, 74);
    bow.lineTo(44, 74);
    painter.strokePath(bow, QPen(branch, 10, Qt::SolidLine, Qt::RoundCap));
    painter.strokePath(
        [] {
            QPainterPath trunk(QPointF(44, 29));
            trunk.lineTo(44, 101);
            return trunk;
        }(),
        QPen(Qt::white, 10, Qt::SolidLine, Qt::RoundCap));
    painter.setBrush(branch);
    painter.drawEllipse(QPointF(89, 52), 12, 12);
    painter.setBrush(Qt::white);
    painter.drawEllipse(QPointF(44, 30), 12, 12);
    painter.drawEllipse(QPointF(44, 101), 12, 12);
    painter.restore();
}

} // namespace plovik
