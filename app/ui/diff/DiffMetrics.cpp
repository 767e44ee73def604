// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/ui/diff/DiffMetrics.h"

#include "app/settings/CodeFont.h"
#include "app/ui/diff/DiffDocument.h"
#include "app/ui/diff/DiffLines.h"
#include "app/ui/widgets/Theme.h"

#include <QFontInfo>
#include <QFontMetricsF>

#include <algorithm>
#include <cmath>

namespace plovik {

DiffMetrics DiffMetrics::of(const DiffDocument& document, const DiffLines& lines, int wrapWidth, int tickWidth)
{
    constexpr double heightPerPixel = 20.0 / 12;
    constexpr double tightest = 0.95; // of the font's own line height, which is wide
    constexpr int fewestDigits = 3;
    DiffMetrics metrics;
    metrics.codeFont = CodeFont::current();
    metrics.numberFont = metrics.codeFont;
    metrics.numberFont.setPointSizeF(std::max(7.0, metrics.codeFont.pointSizeF() * 0.9));
    const QFontMetricsF code(metrics.codeFont);
    metrics.cell = code.horizontalAdvance(QLatin1Char('0'));
    metrics.lineHeight = std::max(qRound(QFontInfo(metrics.codeFont).pixelSize() * heightPerPixel),
                                  static_cast<int>(code.height() * tightest));
    const int buttonHeight = QFontMetrics(Theme::font(-1)).height() + 4;
    metrics.hunkHeight = std::max({28, metrics.lineHeight + 8, buttonHeight + 4});
    metrics.functionBarHeight = std::max(24, QFontMetrics(metrics.numberFont).height() + 6);

    const auto digits = std::max(fewestDigits, static_cast<int>(QString::number(document.largestNumber()).size()));
    const double digit = QFontMetricsF(metrics.numberFont).horizontalAdvance(QLatin1Char('0'));
    metrics.numberWidth = static_cast<int>(std::ceil(digit * digits));
    // The old lines of a merge have several numbers, of which none is shown.
    const bool hasOneNumber = document.isCombined() || lines.areSideBySide();
    metrics.tickWidth = tickWidth;
    metrics.gutterWidth =
        tickWidth + 2 * margin + metrics.numberWidth + (hasOneNumber ? 0 : metrics.numberWidth + numberGap);
    constexpr int moreButtons = 3;
    metrics.hunkTextLeft = std::max(metrics.gutterWidth, moreLeft + moreButtons * moreWidth) + 6;
    const int signs = document.isCombined() ? 2 : 1;
    metrics.codeLeft = metrics.gutterWidth + static_cast<int>(std::ceil(metrics.cell * (signs + 0.5))) + 8;

    metrics.layOut(document, lines, wrapWidth);
    return metrics;
}

int DiffMetrics::barHeight() { return std::max(34, QFontMetrics(Theme::font()).height() + 10); }

int DiffMetrics::columnsIn(int wrapWidth) const
{
    constexpr int fewest = 12;
    return wrapWidth <= 0 ? 0 : std::max(fewest, static_cast<int>((wrapWidth - codeLeft - margin) / cell));
}

void DiffMetrics::layOut(const DiffDocument& document, const DiffLines& lines, int wrapWidth)
{
    wrapColumns = columnsIn(wrapWidth);
    const auto heightOf = [&](int row) {
        const bool wraps = wrapColumns > 0 && row >= 0;
        const std::size_t more = wraps ? document.wrapPoints(row, wrapColumns).size() : 0;
        return lineHeight * (1 + static_cast<int>(more));
    };
    tops.clear();
    tops.reserve(static_cast<std::size_t>(lines.count()) + 1);
    int top = 0;
    tops.push_back(top);
    for (int line = 0; line < lines.count(); ++line) {
        const int row = lines.rowAt(line, DiffSide::both);
        if (document.row(row).kind == gitkit::DiffLine::Kind::hunk)
            top += hunkHeight;
        else
            top += std::max(heightOf(row), lines.areSideBySide() ? heightOf(lines.rowAt(line, DiffSide::after)) : 0);
        tops.push_back(top);
    }
}

int DiffMetrics::lineAt(int y) const
{
    const auto after = std::ranges::upper_bound(tops, y);
    const auto line = static_cast<int>(after - tops.begin()) - 1;
    return std::clamp(line, tops.size() > 1 ? 0 : -1, static_cast<int>(tops.size()) - 2);
}

} // namespace plovik
