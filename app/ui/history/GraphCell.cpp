// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/ui/history/GraphCell.h"

#include <QPainterPath>

#include <algorithm>
#include <array>

namespace plovik {

namespace {

constexpr double widestPitch = 14, leastPitch = 8; ///< between two lanes
constexpr int mostAtWidestPitch = 12;              ///< lanes; more of them stand closer together
constexpr double lineWidth = 2;

bool isWhole(double value) { return qAbs(value - qRound(value)) < 1e-6; }

bool areDevicePixels(const QRectF& rect, const QTransform& device)
{
    const QRectF mapped = device.mapRect(rect);
    return isWhole(mapped.left()) && isWhole(mapped.right()) && isWhole(mapped.top()) && isWhole(mapped.bottom());
}

class CellPainter {
public:
    CellPainter(QPainter& painter, QPointF origin, double height, const Theme& theme, const GraphCell& cell)
        : painter_(painter), device_(painter.deviceTransform()), theme_(theme), origin_(origin), height_(height),
          cell_(cell), lanes_(cell.lanes)
    {}

    /// Fills a vertical stroke as a rectangle. Antialiasing changes nothing where the edges lie on device pixels, and
    /// filling without it is several times faster.
    void line(int lane, double from, double to)
    {
        const double width = widthOf(lane, from<height_ / 2, to> height_ / 2);
        const QRectF stroke(origin_.x() + lanes_.x(lane) - width / 2, origin_.y() + from, width, to - from);
        painter_.setRenderHint(QPainter::Antialiasing, !areDevicePixels(stroke, device_));
        painter_.fillRect(stroke, theme_.lane(lane));
    }

    /// Draws a curve between lanes from `y` to `y + drop`. Both of its ends are vertical. `lane` gives the colour.
    void curve(int from, int to, double y, double drop, int lane)
    {
        painter_.setRenderHint(QPainter::Antialiasing);
        const double fromX = origin_.x() + lanes_.x(from);
        const double toX = origin_.x() + lanes_.x(to);
        const double top = origin_.y() + y;
        QPainterPath path(QPointF(fromX, top));
        path.cubicTo(fromX, top + 0.7 * drop, toX, top + 0.3 * drop, toX, top + drop);
        const double width = widthOf(lane, y<height_ / 2, y + drop> height_ / 2);
        painter_.strokePath(path, QPen(theme_.lane(lane), width, Qt::SolidLine, Qt::FlatCap, Qt::MiterJoin));
    }

    /// Draws the line that stands for all lanes beyond the edge.
    void edge(double from, double to)
    {
        painter_.setRenderHint(QPainter::Antialiasing);
        const double x = origin_.x() + lanes_.edge();
        QPen pen(theme_.secondaryText, 1, Qt::CustomDashLine, Qt::FlatCap);
        pen.setDashPattern({2, 2});
        painter_.setPen(pen);
        painter_.drawLine(QPointF(x, origin_.y() + from), QPointF(x, origin_.y() + to));
    }

    void dot(int lane, double radius)
    {
        painter_.setRenderHint(QPainter::Antialiasing);
        painter_.setPen(Qt::NoPen);
        painter_.setBrush(theme_.lane(lane));
        painter_.drawEllipse(origin_ + QPointF(lanes_.x(lane), height_ / 2), radius, radius);
    }

    /// Draws a "›" right of the edge: what stands here, or comes here, goes on further right.
    void beyondMark(double y)
    {
        painter_.setRenderHint(QPainter::Antialiasing);
        painter_.setPen(QPen(theme_.secondaryText, 1.25, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
        const QPointF tip = origin_ + QPointF(lanes_.edge() + 8.5, y);
        const std::array corners{tip + QPointF(-2.5, -3), tip, tip + QPointF(-2.5, 3)};
        painter_.setBrush(Qt::NoBrush);
        painter_.drawPolyline(corners.data(), static_cast<int>(corners.size()));
    }

private:
    double widthOf(int lane, bool isAbove, bool isBelow) const
    {
        const GraphCell::Lit& lit = cell_.lit;
        const bool isLit = lane == lit.lane && ((isAbove && lit.above) || (isBelow && lit.below));
        return isLit ? 2 * lineWidth : lineWidth;
    }

    QPainter& painter_;
    const QTransform device_;
    const Theme& theme_;
    QPointF origin_;
    double height_;
    const GraphCell& cell_;
    const GraphLanes& lanes_;
};

bool contains(const std::vector<int>& lanes, int lane) { return std::ranges::find(lanes, lane) != lanes.end(); }

} // namespace

GraphLanes::GraphLanes(int lanes, double width)
{
    const double room = std::max(0.0, width - left - right);
    if (lanes > 1)
        pitch_ = std::clamp(room / (lanes - 1), leastPitch, widestPitch);
    const int fitting = 1 + static_cast<int>(std::floor(room / pitch_ + 1e-6));
    // Where not all have room, the place of the last one is that of all others.
    shown_ = fitting >= lanes ? lanes : std::max(1, fitting - 1);
}

double GraphLanes::widthFor(int lanes)
{
    constexpr double usual = (mostAtWidestPitch - 1) * widestPitch;
    const double wide = (lanes - 1) * widestPitch;
    return left + right + std::min(wide, std::max(usual, (lanes - 1) * leastPitch));
}

double GraphLanes::widestFor(int lanes) { return left + right + (lanes - 1) * widestPitch; }

double GraphCell::dotRadius() const
{
    const double radius = std::min(row.bottom.size() > 1 ? 4.5 : 4.0, lanes.pitch() * 0.45);
    return row.lane == lit.lane ? radius + 1 : radius;
}

void GraphCell::paint(QPainter& painter, QPointF origin, double height, const Theme& theme) const
{
    CellPainter cell(painter, origin, height, theme, *this);
    const double middle = height * 0.5;
    const bool isDotBeyond = lanes.isBeyond(row.lane);
    const auto isAnyBeyond = [this](const std::vector<int>& some) {
        return std::ranges::any_of(some, [this](int lane) { return lanes.isBeyond(lane); });
    };

    for (const int lane : row.pass) {
        if (!lanes.isBeyond(lane))
            cell.line(lane, 0, height);
    }
    if (isAnyBeyond(row.pass) || (isDotBeyond && isAnyBeyond(row.top)))
        cell.edge(0, middle);
    if (isAnyBeyond(row.pass) || (isDotBeyond && isAnyBeyond(row.bottom)))
        cell.edge(middle, height);
    for (const int lane : row.top) {
        if (lanes.isBeyond(lane) && isDotBeyond)
            continue; // they meet on the line at the edge
        if (lane == row.lane)
            cell.line(lane, 0, middle);
        else
            cell.curve(lane, row.lane, 0, middle, lane);
    }
    for (const int lane : row.bottom) {
        if (lanes.isBeyond(lane) && isDotBeyond)
            continue;
        if (lane == row.lane)
            cell.line(lane, middle, height);
        else
            cell.curve(row.lane, lane, middle, middle, lane);
    }
    cell.dot(row.lane, dotRadius());
    if (isDotBeyond)
        cell.beyondMark(middle);
    else if (isAnyBeyond(row.top))
        cell.beyondMark(middle * 0.35);
    if (!isDotBeyond && isAnyBeyond(row.bottom))
        cell.beyondMark(height - middle * 0.35);
    painter.setRenderHint(QPainter::Antialiasing);
}

std::vector<GraphCell::Lit> litLine(std::span<const gitkit::GraphRow> rows, std::size_t of)
{
    std::vector<GraphCell::Lit> lit(rows.size());
    const int lane = rows[of].lane;
    lit[of].lane = lane;
    lit[of].below = contains(rows[of].bottom, lane);
    for (std::size_t row = of + 1; row < rows.size() && lit[row - 1].below; ++row) {
        const bool goesOn =
            contains(rows[row].pass, lane) || (rows[row].lane == lane && contains(rows[row].bottom, lane));
        lit[row] = {lane, true, goesOn};
    }
    lit[of].above = contains(rows[of].top, lane);
    for (std::size_t row = of; row > 0 && lit[row].above; --row) {
        const gitkit::GraphRow& above = rows[row - 1];
        const bool goesOn = contains(above.pass, lane) || (above.lane == lane && contains(above.top, lane));
        lit[row - 1] = {lane, goesOn, true};
    }
    return lit;
}

int lanesOf(const gitkit::GraphRow& row)
{
    int last = row.lane;
    for (const auto* lanes : {&row.top, &row.pass, &row.bottom}) {
        for (const int lane : *lanes)
            last = std::max(last, lane);
    }
    return last + 1;
}

} // namespace plovik
