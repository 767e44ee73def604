// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/ui/merge/MergeGeometry.h"

#include "app/settings/CodeFont.h"
#include "app/ui/merge/ConflictStrip.h"
#include "app/ui/widgets/Theme.h"

#include <QFontInfo>
#include <QFontMetrics>

#include <algorithm>
#include <cmath>

namespace plovik {

namespace {

using gitkit::MergeSegment;
using gitkit::MergeSide;
using Kind = MergeSegment::Kind;

constexpr double heightPerPixel = 1.6;
constexpr int buttonSize = 16;

std::size_t rowsOf(const MergeSegment& segment, bool isBaseShown)
{
    std::size_t rows = std::max(segment.left.count, segment.right.count);
    if (isBaseShown)
        rows = std::max(rows, segment.base.count);
    // What both sides have taken away would not be seen at all.
    return segment.kind == Kind::equal ? rows : std::max<std::size_t>(rows, 1);
}

} // namespace

void MergeGeometry::measure()
{
    const QFont font = CodeFont::current();
    const QFontMetricsF metrics(font);
    cell_ = metrics.horizontalAdvance(u'0');
    lineHeight_ = std::max(qRound(QFontInfo(font).pixelSize() * heightPerPixel), static_cast<int>(metrics.height()));
    stripHeight_ = ConflictStrip::heightOfAll();
    headHeight_ = std::max(26, QFontMetrics(Theme::font()).height() + 10);
}

void MergeGeometry::layOut(const MergeResult* result, bool isBaseShown)
{
    isBaseShown_ = isBaseShown;
    tops_.assign(1, 0);
    rows_.clear();
    numbers_.clear();
    std::size_t lines = 100;
    if (result) {
        int number = 0;
        for (const MergeSegment& segment : result->sides().segments) {
            numbers_.push_back(segment.kind == Kind::conflict ? ++number : 0);
            rows_.push_back(rowsOf(segment, isBaseShown));
            const int strip = numbers_.back() > 0 ? stripHeight_ : 0;
            tops_.push_back(tops_.back() + strip + static_cast<int>(rows_.back()) * lineHeight_);
        }
        for (const MergeSide side : {MergeSide::base, MergeSide::left, MergeSide::right})
            lines = std::max(lines, result->sides().text(side).lineCount());
    }
    const auto digits = static_cast<double>(QString::number(lines).size());
    numberWidth_ = static_cast<int>(std::ceil(cell_ * digits)) + 2 * gap;
}

int MergeGeometry::stripHeight(std::size_t segment) const { return numbers_[segment] > 0 ? stripHeight_ : 0; }

std::vector<MergeGeometry::Column> MergeGeometry::columns() const
{
    std::vector<MergeSide> sides{MergeSide::left, MergeSide::right};
    if (isBaseShown_)
        sides.insert(sides.begin(), MergeSide::base);
    const int count = static_cast<int>(sides.size());
    std::vector<Column> columns;
    for (int index = 0; index < count; ++index) {
        const int left = size_.width() * index / count;
        columns.push_back({sides[static_cast<std::size_t>(index)], left, size_.width() * (index + 1) / count - left});
    }
    return columns;
}

MergeGeometry::Column MergeGeometry::columnOf(MergeSide side) const
{
    const std::vector<Column> all = columns();
    const auto found = std::ranges::find(all, side, &Column::side);
    return found == all.end() ? Column{side, 0, 0} : *found;
}

std::size_t MergeGeometry::segmentAt(int y) const
{
    const auto index = std::distance(tops_.begin(), std::ranges::upper_bound(tops_, y)) - 1;
    return static_cast<std::size_t>(
        std::clamp<std::ptrdiff_t>(index, 0, static_cast<std::ptrdiff_t>(tops_.size()) - 2));
}

QRect MergeGeometry::refusalRect(std::size_t segment, MergeSide side) const
{
    const Column column = columnOf(side);
    return {column.left + column.width - buttonSize - 6, toViewport(tops_[segment]) + (lineHeight_ - buttonSize) / 2,
            buttonSize, buttonSize};
}

} // namespace plovik
