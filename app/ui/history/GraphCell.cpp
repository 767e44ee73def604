// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/ui/history/GraphCell.h"

#include <QPainterPath>

#include <algorithm>
#include <vector>

namespace plovik {

namespace {

constexpr double lineWidth = 2;
constexpr double ringWidth = 1.5;

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

    /// Draws the line that stands for all columns beyond the edge.
    void edge(double from, double to)
    {
        painter_.setRenderHint(QPainter::Antialiasing);
        const double x = origin_.x() + GraphCell::columnX(GraphCell::widestColumns);
        QPen pen(theme_.secondaryText, 1, Qt::CustomDashLine, Qt::FlatCap);
        pen.setDashPattern({2, 2});
        painter_.setPen(pen);
        painter_.drawLine(QPointF(x, origin_.y() + from), QPointF(x, origin_.y() + to));
    }

    void dot(int column, double radius)
    {
        const bool isBeyond = column >= GraphCell::widestColumns;
        const QColor colour = theme_.lane(column);
        radius -= isBeyond ? 1.25 : 0; // half of the ring's width, and it must not reach over the edge
        painter_.setRenderHint(QPainter::Antialiasing);
        painter_.setPen(isBeyond ? QPen(colour, ringWidth) : QPen(Qt::NoPen));
        painter_.setBrush(isBeyond ? QBrush(Qt::NoBrush) : QBrush(colour));
        painter_.drawEllipse(origin_ + QPointF(GraphCell::columnX(column), height_ / 2), radius, radius);
    }

private:
    QPainter& painter_;
    const QTransform device_;
    const Theme& theme_;
    QPointF origin_;
    double height_;
};

bool isBeyond(int column) { return column >= GraphCell::widestColumns; }

} // namespace

void GraphCell::paint(QPainter& painter, QPointF origin, double height, const Theme& theme) const
{
    CellPainter cell(painter, origin, height, theme);
    const double middle = height * 0.5;
    const double ring = isBeyond(row.lane) ? dotRadius() : 0;
    const auto isAnyBeyond = [](const std::vector<int>& columns) { return std::ranges::any_of(columns, isBeyond); };

    for (const int column : row.pass) {
        if (!isBeyond(column))
            cell.line(column, 0, height);
    }
    if (isAnyBeyond(row.pass) || (ring > 0 && isAnyBeyond(row.top)))
        cell.edge(0, middle - ring);
    if (isAnyBeyond(row.pass) || (ring > 0 && isAnyBeyond(row.bottom)))
        cell.edge(middle + ring, height);
    for (const int column : row.top) {
        if (isBeyond(column) && ring > 0)
            continue; // they meet on the line at the edge
        if (column == row.lane)
            cell.line(column, 0, middle);
        else
            cell.curve(column, row.lane, 0, middle - ring, column);
    }
    for (const int column : row.bottom) {
        if (isBeyond(column) && ring > 0)
            continue;
        if (column == row.lane)
            cell.line(column, middle, height);
        else
            cell.curve(row.lane, column, middle + ring, middle - ring, column);
    }
    cell.dot(row.lane, dotRadius());
    painter.setRenderHint(QPainter::Antialiasing);
}

} // namespace plovik
