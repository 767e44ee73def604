// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/ui/diff/GapButtons.h"

#include "app/ui/diff/DiffController.h"
#include "app/ui/diff/DiffGeometry.h"
#include "app/ui/widgets/Theme.h"

#include <QCoreApplication>
#include <QPainter>

namespace plovik {

namespace {

using Shows = GapButton::Shows;

constexpr int buttonSize = 20;

int gapOf(const DiffDocument& document, int row)
{
    const DiffDocument::Row& header = document.row(row);
    return header.isRest() ? document.gaps().count() - 1 : header.hunk;
}

void paintArrow(QPainter& painter, QPointF from, QPointF tip)
{
    const double back = tip.y() > from.y() ? -3.5 : 3.5;
    painter.drawLine(from, tip);
    painter.drawPolyline(QPolygonF{tip + QPointF(-3.5, back), tip, tip + QPointF(3.5, back)});
}

void paintBothArrows(QPainter& painter)
{
    painter.drawLine(QPointF(0, -4), QPointF(0, 4));
    painter.drawPolyline(QPolygonF{QPointF(-3, -1.5), QPointF(0, -4.5), QPointF(3, -1.5)});
    painter.drawPolyline(QPolygonF{QPointF(-3, 1.5), QPointF(0, 4.5), QPointF(3, 1.5)});
}

} // namespace

std::vector<GapButton> gapButtons(const DiffDocument& document, const DiffGeometry& geometry, int row)
{
    const DiffDocument::Row& header = document.row(row);
    if (!document.gaps().areKnown() || header.kind != DiffDocument::Kind::hunk)
        return {};
    const int gap = gapOf(document, row);
    const int rest = document.gaps().gap(gap).rest();
    std::vector<GapButton> buttons;
    if (rest == 0)
        return buttons;
    if (rest <= DiffGaps::step) {
        buttons.push_back({Shows::between, row, {}});
    } else {
        if (!header.isRest())
            buttons.push_back({Shows::above, row, {}});
        if (gap > 0)
            buttons.push_back({Shows::below, row, {}});
        buttons.push_back({Shows::wholeFile, row, {}});
    }
    const QRect area = geometry.rowRect(row);
    int left = DiffMetrics::moreLeft;
    for (GapButton& button : buttons) {
        button.area = QRect(left, area.top() + (area.height() - buttonSize) / 2, buttonSize, buttonSize);
        left += DiffMetrics::moreWidth;
    }
    return buttons;
}

GapButton gapButtonAt(const DiffDocument& document, const DiffGeometry& geometry, QPoint point)
{
    if (const int row = geometry.rowAt(point); row >= 0) {
        for (const GapButton& button : gapButtons(document, geometry, row)) {
            if (button.area.contains(point))
                return button;
        }
    }
    return {};
}

QString gapButtonTitle(const DiffDocument& document, const GapButton& button)
{
    if (button.row < 0)
        return {};
    const int step = DiffGaps::step;
    switch (button.shows) {
    case Shows::above:
        return QCoreApplication::translate("Diff", "Show %Ln More Line(s) Above", nullptr, step);
    case Shows::below:
        return QCoreApplication::translate("Diff", "Show %Ln More Line(s) Below", nullptr, step);
    case Shows::between: {
        const int rest = document.gaps().gap(gapOf(document, button.row)).rest();
        return QCoreApplication::translate("Diff", "Show %Ln More Line(s)", nullptr, rest);
    }
    case Shows::wholeFile:
        return QCoreApplication::translate("Diff", "Show Whole File");
    }
    return {};
}

void paintGapButton(QPainter& painter, const GapButton& button, bool isHovered)
{
    const Theme& theme = Theme::current();
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    if (isHovered) {
        painter.setPen(Qt::NoPen);
        painter.setBrush(theme.selection);
        painter.drawRoundedRect(button.area, 4, 4);
    }
    painter.setPen(
        QPen(isHovered ? theme.text : theme.hunkHeaderText, 1.3, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    painter.translate(QRectF(button.area).center());
    if (button.shows == Shows::above)
        paintArrow(painter, {0, 5}, {0, -5});
    else if (button.shows == Shows::below)
        paintArrow(painter, {0, -5}, {0, 5});
    else
        paintBothArrows(painter);
    if (button.shows == Shows::wholeFile) {
        painter.drawLine(QPointF(-4, -7), QPointF(4, -7));
        painter.drawLine(QPointF(-4, 7), QPointF(4, 7));
    }
    painter.restore();
}

void press(DiffController& controller, const GapButton& button)
{
    const DiffDocument::Row& header = controller.diff().document().row(button.row);
    if (button.shows == Shows::wholeFile)
        Q_EMIT controller.wholeFileRequested(true);
    else if (button.shows == Shows::above)
        controller.showMore(header.hunk, GapSide::above, button.row);
    else // The row before the header stays in place, above the new lines.
        controller.showMore(header.isRest() ? header.hunk : header.hunk - 1, GapSide::below, button.row - 1);
}

} // namespace plovik
