// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/ui/diff/ChangeMap.h"

#include "app/ui/widgets/Theme.h"

#include <QMouseEvent>
#include <QPainter>
#include <QStyleOptionSlider>

#include <algorithm>
#include <utility>

namespace plovik {

namespace {

constexpr int leastMark = 2;
/// How far from a mark a click may be.
constexpr int reach = 3;

} // namespace

ChangeMap::ChangeMap(Marks marks, QWidget* parent) : QScrollBar(Qt::Vertical, parent), marks_(std::move(marks)) {}

void ChangeMap::forget()
{
    isKnown_ = false;
    update();
}

/// Works out what each pixel of the bar shows, so that drawing it costs the same for every diff.
void ChangeMap::draw()
{
    isKnown_ = true;
    lines_.assign(static_cast<std::size_t>(height()), {});
    const double scale = static_cast<double>(height()) / std::max(1, total());
    for (const MapMark& mark : marks_()) {
        const int first = std::clamp(static_cast<int>(mark.top * scale), 0, std::max(0, height() - leastMark));
        const int end = std::max(first + leastMark, static_cast<int>((mark.top + mark.height) * scale));
        for (int y = first; y < std::min(end, height()); ++y) {
            Line& line = lines_[static_cast<std::size_t>(y)];
            line.top = line.top < 0 ? mark.top : line.top;
            line.isRemoved = line.isRemoved || mark.kind == MapMark::Kind::removed;
            line.isAdded = line.isAdded || mark.kind == MapMark::Kind::added;
            line.isFound = line.isFound || mark.kind == MapMark::Kind::found;
            line.isCurrent = line.isCurrent || mark.kind == MapMark::Kind::current;
        }
    }
}

void ChangeMap::paintEvent(QPaintEvent* event)
{
    QScrollBar::paintEvent(event);
    if (maximum() <= minimum())
        return;
    if (!isKnown_)
        draw();
    const Theme& theme = Theme::current();
    QPainter painter(this);
    const int half = width() / 2;
    const int end = std::min(event->rect().bottom() + 1, height());
    // Pixels that show the same are filled at once: a long diff would take thousands of fillings.
    for (int y = event->rect().top(), next = y; y < end; y = next) {
        const Line& line = lines_[static_cast<std::size_t>(y)];
        while (next < end && line.looksLike(lines_[static_cast<std::size_t>(next)]))
            ++next;
        const int run = next - y;
        if (line.isRemoved)
            painter.fillRect(1, y, half - 1, run, theme.statusDeleted);
        if (line.isAdded)
            painter.fillRect(half, y, width() - half - 1, run, theme.statusAdded);
        if (line.isFound || line.isCurrent)
            painter.fillRect(0, y, width(), run, line.isCurrent ? theme.text : theme.foundBorder);
    }
}

void ChangeMap::resizeEvent(QResizeEvent* event)
{
    QScrollBar::resizeEvent(event);
    forget();
}

/// Returns where the mark nearest to a height of the bar begins in what is scrolled.
std::optional<int> ChangeMap::markNear(int y) const
{
    for (int distance = 0; distance <= reach; ++distance) {
        for (const int at : {y - distance, y + distance}) {
            if (at >= 0 && at < static_cast<int>(lines_.size()) && lines_[static_cast<std::size_t>(at)].top >= 0)
                // Within a long mark, the place that was clicked is meant.
                return std::max(lines_[static_cast<std::size_t>(at)].top,
                                static_cast<int>(static_cast<qint64>(at) * total() / std::max(1, height())));
        }
    }
    return std::nullopt;
}

void ChangeMap::mousePressEvent(QMouseEvent* event)
{
    QStyleOptionSlider option;
    initStyleOption(&option);
    const QPoint point = event->position().toPoint();
    const bool isOnHandle =
        style()->hitTestComplexControl(QStyle::CC_ScrollBar, &option, point, this) == QStyle::SC_ScrollBarSlider;
    const std::optional<int> mark = markNear(point.y());
    if (event->button() != Qt::LeftButton || isOnHandle || !mark) {
        QScrollBar::mousePressEvent(event);
        return;
    }
    // Some lines before it stay in sight.
    setValue(*mark - pageStep() / 3);
}

} // namespace plovik

#include "moc_ChangeMap.cpp"
