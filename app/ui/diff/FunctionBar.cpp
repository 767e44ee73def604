// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/ui/diff/FunctionBar.h"

#include "app/ui/diff/DiffGeometry.h"
#include "app/ui/diff/ShownDiff.h"
#include "app/ui/widgets/RowPainting.h"
#include "app/ui/widgets/Theme.h"

#include <QMouseEvent>
#include <QPainter>

#include <algorithm>

namespace plovik {

FunctionBar::FunctionBar(const ShownDiff& diff, const DiffGeometry& geometry, QWidget* section)
    : QWidget(section), diff_(diff), geometry_(geometry), outline_(diff)
{
    setCursor(Qt::PointingHandCursor);
    setAttribute(Qt::WA_OpaquePaintEvent);
}

int FunctionBar::mostHeight() const { return outline_.isEmpty() ? 0 : geometry_.metrics().functionBarHeight; }

void FunctionBar::follow(int visibleTop)
{
    const DiffDocument& document = diff_.document();
    const int top = visibleTop + geometry_.barHeight();
    const int row = visibleTop < 0 ? -1 : geometry_.rowAt({0, top});
    const int named = row < 0 ? -1 : outline_.nameRow(row);
    setVisible(named >= 0 && named < row);
    if (isHidden())
        return;
    namedRow_ = named;
    const DiffMetrics& metrics = geometry_.metrics();
    setText(outline_.name(named), metrics.numberFont, metrics.hunkTextLeft);
    // The next hunk's header pushes it out of sight.
    const auto& hunks = document.hunks();
    const auto next = std::ranges::upper_bound(hunks, row, {}, &DiffDocument::Hunk::first);
    const bool hasHeader = next != hunks.end() && document.row(next->first).kind == DiffDocument::Kind::hunk;
    const int most = hasHeader ? geometry_.rowRect(next->first).top() - metrics.functionBarHeight : top;
    setGeometry(0, std::min(top, most), parentWidget()->width(), metrics.functionBarHeight);
}

void FunctionBar::setText(const QString& text, const QFont& font, int left)
{
    if (text == text_ && font == font_ && left == left_)
        return;
    text_ = text;
    font_ = font;
    left_ = left;
    setAccessibleName(tr("Function %1").arg(text));
    update();
}

void FunctionBar::mousePressEvent(QMouseEvent* event)
{
    // It must not go on to the lines below, whatever the button.
    event->accept();
    if (event->button() == Qt::LeftButton)
        Q_EMIT pressed(namedRow_);
}

void FunctionBar::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    painter.setLayoutDirection(Qt::LeftToRight); // as code is
    const Theme& theme = Theme::current();
    painter.fillRect(rect(), theme.hunkHeader);
    painter.fillRect(0, height() - 1, width(), 1, theme.separator);
    paintText(painter, rect().adjusted(left_, 0, -12, 0), text_, font_, theme.hunkHeaderText);
}

} // namespace plovik

#include "moc_FunctionBar.cpp"
