// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/ui/history/GraphCell.h"

#include <QPainterPath>

namespace plovik {

namespace {

constexpr double lineWidth = 2;

bool isWhole(double value) { return qAbs(value - qRound(value)) < 1e-6; }

bool areDevicePixels(const QRectF& rect, const QTransform& device)
{
    const QRectF mapped = device.mapRect(rect);
    return isWhole(mapped.left()) && isWhole(mapped.right()) && isWhole(mapped.top()) && isWhole(mapped.bottom());
}

class CellPainter {
public:
    CellPainter(QPainter& painter, QPointF origin, double height, const Theme& theme)
        : painter_(painter), device_(painter.deviceTransform()), theme_(theme), origin_(origin), height_(height)
    {}

    /// Fills a vertical stroke as a rectangle. Antialiasing changes nothing where the edges lie on device pixels, and
    /// filling without it is several times faster.
    void line(int column, double from, double to)
    {
        const double left = GraphCell::columnX(column) - lineWidth / 2;
        const QRectF stroke(origin_.x() + left, origin_.y() + from, lineWidth, to - from);
        painter_.setRenderHint(QPainter::Antialiasing, !areDevicePixels(stroke, device_));
        painter_.fillRect(stroke, theme_.lane(column));
    }

    /// Draws a curve from column `from` at `y` to column `to` at `y + drop`. Both of its ends are vertical.
    void curve(int from, int to, double y, double drop, int colour)
    {
        painter_.setRenderHint(QPainter::Antialiasing);
        const double fromX = origin_.x() + GraphCell::columnX(from);
        const double toX = origin_.x() + GraphCell::columnX(to);
        const double top = origin_.y() + y;
        QPainterPath path(QPointF(fromX, top));
        path.cubicTo(fromX, top + 0.7 * drop, toX, top + 0.3 * drop, toX, top + drop);
        painter_.strokePath(path, QPen(theme_.lane(colour), lineWidth, Qt::SolidLine, Qt::FlatCap, Qt::MiterJoin));
    }

    void dot(int column, double radius)
    {
        painter_.setRenderHint(QPainter::Antialiasing);
        painter_.setPen(Qt::NoPen);
        painter_.setBrush(theme_.lane(column));
        painter_.drawEllipse(origin_ + QPointF(GraphCell::columnX(column), height_ / 2), radius, radius);
    }

private:
    QPainter& painter_;
    const QTransform device_;
    const Theme& theme_;
    QPointF origin_;
    double height_;
};

} // namespace

void GraphCell::paint(QPainter& painter, QPointF origin, double height, const Theme& theme) const
{
    CellPainter cell(painter, origin, height, theme);
    const double middle = height * 0.5;
    const auto isDrawn = [lane = row.lane](int column) { return std::min(column, lane) < widestColumns; };

    for (const int column : row.pass) {
        if (column < widestColumns)
            cell.line(column, 0, height);
    }
    for (const int column : row.top) {
        if (column == row.lane && isDrawn(column))
            cell.line(column, 0, middle);
        else if (isDrawn(column))
            cell.curve(column, row.lane, 0, middle, column);
    }
    for (const int column : row.bottom) {
        if (column == row.lane && isDrawn(column))
            cell.line(column, middle, height);
        else if (isDrawn(column))
            cell.curve(row.lane, column, middle, middle, column);
    }
    if (row.lane <= widestColumns)
        cell.dot(row.lane, dotRadius());
    painter.setRenderHint(QPainter::Antialiasing);
}

} // namespace plovik
