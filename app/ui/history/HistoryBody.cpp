// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/ui/history/HistoryBody.h"

#include "app/store/HistoryMatches.h"
#include "app/ui/history/GraphCell.h"
#include "app/ui/history/HistoryModel.h"
#include "app/ui/history/HistoryRowPainter.h"
#include "app/ui/history/PlanSigns.h"
#include "app/ui/widgets/Theme.h"

#include <QPainter>

#include <algorithm>
#include <chrono>
#include <cmath>

namespace plovik {

namespace {

/// Rows that answer an earlier search stand back.
constexpr double outdatedOpacity = 0.4;
constexpr float hoverOpacity = 0.4F;
constexpr float matchOpacity = 0.5F;

/// Returns `y` moved to the nearest edge between device pixels. Two rows then share an edge at fractional scale
/// factors, and antialiasing leaves no seam between them.
double onDevicePixel(const QPainter& painter, double y)
{
    const QTransform& device = painter.deviceTransform();
    if (device.type() > QTransform::TxScale || device.m22() <= 0)
        return y;
    return (std::round(device.m22() * y + device.dy()) - device.dy()) / device.m22();
}

gitkit::Date currentTime() { return std::chrono::floor<std::chrono::seconds>(std::chrono::system_clock::now()); }

} // namespace

HistoryBody::HistoryBody(const HistoryModel& model, HistoryRowPainter& rows, const HistoryColumns& columns,
                         const Sight& sight)
    : model_(model), rows_(rows), columns_(columns), sight_(sight)
{}

int HistoryBody::rowAt(int y) const { return (y + sight_.scrolled) / rows_.rowHeight(); }

void HistoryBody::paint(QPainter& painter, const QRect& exposed)
{
    painter.fillRect(exposed, Theme::current().content);
    const int first = std::max(0, rowAt(exposed.top() - 1));
    const int last = std::min(rowAt(exposed.bottom() + 1), model_.rowCount() - 1);
    paintTints(painter, first, last);
    painter.setRenderHint(QPainter::Antialiasing);
    if (sight_.isOutdated)
        painter.setOpacity(outdatedOpacity);
    if (columns_.graphWidth > 0)
        paintGraph(painter, first, last);
    paintTexts(painter, first, last);
}

QRectF HistoryBody::bandOf(const QPainter& painter, int row) const
{
    const int height = rows_.rowHeight();
    const double top = onDevicePixel(painter, row * height - sight_.scrolled);
    const double bottom = onDevicePixel(painter, (row + 1) * height - sight_.scrolled);
    return {0, top, static_cast<double>(sight_.size.width()), bottom - top};
}

void HistoryBody::paintTints(QPainter& painter, int first, int last) const
{
    const auto isSelected = [&](int row) { return sight_.isSelected && sight_.isSelected(row); };
    QColor found = Theme::current().found;
    found.setAlphaF(matchOpacity);
    for (int row = first; sight_.matches && row <= last; ++row) {
        if (!sight_.matches->contains(model_.hash(row)))
            continue;
        QRectF band = bandOf(painter, row);
        band.setWidth(band.width() - columns_.subjectLeft);
        if (!sight_.isMirrored)
            band.translate(columns_.subjectLeft, 0);
        painter.fillRect(band, found);
    }
    QColor tint = Theme::current().selection;
    for (int row = first; row <= last; ++row) {
        if (isSelected(row))
            painter.fillRect(bandOf(painter, row), tint);
    }
    tint.setAlphaF(hoverOpacity);
    if (sight_.hovered >= first && sight_.hovered <= last && !isSelected(sight_.hovered))
        painter.fillRect(bandOf(painter, sight_.hovered), tint);
}

void HistoryBody::paintGraph(QPainter& painter, int first, int last) const
{
    std::vector<gitkit::GraphRow> rows;
    for (int row = first; row <= last; ++row) {
        std::optional<HistoryRow> shown = model_.row(row);
        if (!shown)
            break;
        rows.push_back(std::move(shown->graph));
    }
    std::vector<GraphCell::Lit> lit(rows.size());
    const auto hovered = static_cast<std::size_t>(sight_.hovered - first);
    if (sight_.hovered >= first && hovered < rows.size())
        lit = litLine(rows, hovered);
    const GraphLanes lanes(sight_.lanes, columns_.graphWidth);
    painter.save();
    if (sight_.isMirrored) {
        painter.translate(sight_.size.width(), 0);
        painter.scale(-1, 1);
    }
    painter.setClipRect(QRectF(0, 0, columns_.graphWidth, sight_.size.height()), Qt::IntersectClip);
    for (std::size_t index = 0; index < rows.size(); ++index) {
        const QRectF band = bandOf(painter, first + static_cast<int>(index));
        GraphCell{rows[index], lanes, lit[index]}.paint(painter, band.topLeft(), band.height(), Theme::current());
    }
    painter.restore();
}

void HistoryBody::paintTexts(QPainter& painter, int first, int last)
{
    const gitkit::Date now = currentTime();
    for (int row = first; row <= last; ++row) {
        const std::optional<HistoryRow> shown = model_.row(row);
        if (!shown)
            break;
        const double top = row * rows_.rowHeight() - sight_.scrolled;
        const HistoryRowPainter::Place place{top, sight_.isMirrored ? sight_.size.width() : 0.0};
        rows_.paint(painter, *shown, columns_, place, now);
        const PlanSign sign = sight_.rewriting ? planSignOf(*sight_.rewriting, shown->commit.hash) : PlanSign();
        if (row == sight_.hovered && sight_.rewriting && sight_.rewriting->find(shown->commit.hash))
            paintPlanGrip(painter, columns_, place, rows_.rowHeight());
        if (!sign.isEmpty())
            paintPlanSign(painter, sign, columns_, place, rows_.rowHeight(), rows_.subjectOf(*shown, columns_));
    }
}

} // namespace plovik
