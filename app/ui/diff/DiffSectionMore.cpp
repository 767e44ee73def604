// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/ui/diff/DiffAccessible.h"
#include "app/ui/diff/DiffSectionBar.h"
#include "app/ui/diff/DiffSectionView.h"
#include "app/ui/widgets/Theme.h"

#include <QMenu>
#include <QPainter>

#include <algorithm>
#include <utility>

namespace plovik {

namespace {

using namespace Qt::StringLiterals;

constexpr int step = 10; ///< lines that one press shows
constexpr int buttonSize = 20;

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

void DiffSectionView::setTexts(DiffTexts texts)
{
    if (texts == texts_)
        return;
    texts_ = std::move(texts);
    DiffGaps gaps = DiffGaps::of(document_.diff(), texts_);
    if (!gaps.areKnown() && !document_.gaps().areKnown())
        return;
    gaps.showAs(document_.gaps());
    if (showsWholeFile_)
        gaps.showAll();
    showGaps(std::move(gaps), anchorRow());
    returnToHeld();
}

/// A file that is shown whole shrinks to its changes when a new diff of it comes, until its text comes, too.
void DiffSectionView::holdWholeFile(DiffPlace place)
{
    const int anchor = place == DiffPlace::kept && showsWholeFile_ && document_.gaps().showsLines() ? anchorRow() : -1;
    if (place == DiffPlace::start)
        held_.reset();
    if (anchor >= 0 && document_.row(anchor).newNumber)
        held_ = Held{*document_.row(anchor).newNumber, rowRect(anchor).top() - visibleTop_};
}

void DiffSectionView::returnToHeld()
{
    if (const std::optional<Held> held = std::exchange(held_, std::nullopt); held && showsWholeFile_)
        Q_EMIT contentHeightChanged(rowRect(document_.rowOf({-1, held->number})).top() - held->y - visibleTop_);
}

void DiffSectionView::setShowsWholeFile(bool whole)
{
    showsWholeFile_ = whole;
    DiffGaps gaps = document_.gaps();
    if (whole ? !gaps.hidesLines() : !gaps.showsLines())
        return;
    if (whole)
        gaps.showAll();
    else
        gaps.showNone();
    showGaps(std::move(gaps), anchorRow());
}

void DiffSectionView::setDiffLayout(DiffLayout layout)
{
    layout_ = layout;
    if (document_.layoutFor(layout) ==
        document_.layoutFor(lines_.areSideBySide() ? DiffLayout::sideBySide : DiffLayout::unified))
        return;
    // Text that is selected within one side is not that of both, nor the other way round.
    if (selection_.hasText())
        selection_.clear();
    relay([] {}, anchorRow());
}

void DiffSectionView::showGaps(DiffGaps gaps, int anchor)
{
    const bool isRead = content_.use == DiffContent::Use::read;
    // Hunks that can be staged keep the headers that their buttons stand in.
    const auto headers = isRead ? DiffDocument::Headers::atGaps : DiffDocument::Headers::all;
    relay([&] { document_.setGaps(std::move(gaps), headers); }, anchor);
}

/// Makes the lines anew. The selection and the keyboard stay with their rows, and `anchor` where it is looked at.
void DiffSectionView::relay(const std::function<void()>& change, int anchor)
{
    using Place = DiffDocument::Place;
    const auto placeOf = [this](int row) { return row < 0 ? Place() : document_.placeOf(row); };
    const Place anchorPlace = placeOf(anchor);
    const Place currentPlace = placeOf(current_);
    const int y = anchor < 0 ? 0 : rowRect(anchor).top();
    std::vector<Place> picked;
    for (const int row : selection_.hasText() ? std::vector<int>() : selectedRows()) {
        if (document_.row(row).isChange())
            picked.push_back(document_.placeOf(row));
    }
    const DiffSelection before = selection_;
    const auto textPlace = [&](const DiffPosition& at) {
        return placeOf(before.hasText() ? lines_.nearestRow(at.line, before.textSide()) : -1);
    };
    const Place begin = textPlace(before.textBegin());
    const Place end = textPlace(before.textEnd());

    change();
    lines_ = DiffLines(document_, layout_);
    metrics_ = DiffMetrics::of(document_, lines_);
    drag_ = Drag::none;
    dragTimer_.stop();
    ++contentRevision_;
    selection_.clear();
    for (const Place& place : picked) {
        const int row = document_.rowOf(place);
        selection_.pick(lines_.lineOf(row), document_.row(row).side);
    }
    if (before.hasText()) {
        selection_.startText({lines_.lineOf(document_.rowOf(begin)), before.textBegin().column}, before.textSide());
        selection_.extendText({lines_.lineOf(document_.rowOf(end)), before.textEnd().column});
    }
    if (current_ >= 0)
        current_ = document_.rowOf(currentPlace);
    remeasure(anchor < 0 ? 0 : rowRect(document_.rowOf(anchorPlace)).top() - y);
    updateOffers();
    announceDiffChange(this);
    hoverMore(underMouse() ? mapFromGlobal(QCursor::pos()) : QPoint(-1, -1));
}

bool DiffSectionView::isInSight(int row) const
{
    const QRect seen = visibleRegion().boundingRect().adjusted(0, barHeight(), 0, 0);
    return seen.intersects(rowRect(row));
}

/// The row by which to hold what is looked at; -1 where this diff begins below the top of what is in sight.
int DiffSectionView::anchorRow() const
{
    if (visibleTop_ < 0 || document_.rowCount() == 0)
        return -1;
    if (current_ >= 0 && isInSight(current_))
        return current_;
    return lines_.nearestRow(lineAt(visibleTop_ + barHeight()), keyboardSide_);
}

std::vector<DiffSectionView::MoreButton> DiffSectionView::moreButtons(int row) const
{
    const DiffDocument::Row& header = document_.row(row);
    if (!document_.gaps().areKnown() || header.kind != DiffDocument::Kind::hunk)
        return {};
    const int index = header.isRest() ? document_.gaps().count() - 1 : header.hunk;
    const int rest = document_.gaps().gap(index).rest();
    std::vector<MoreButton> buttons;
    if (rest == 0)
        return buttons;
    if (rest <= step) {
        buttons.push_back({More::between, row, {}});
    } else {
        if (!header.isRest())
            buttons.push_back({More::above, row, {}});
        if (index > 0)
            buttons.push_back({More::below, row, {}});
        buttons.push_back({More::whole, row, {}});
    }
    const QRect area = rowRect(row);
    int left = DiffMetrics::moreLeft;
    for (MoreButton& button : buttons) {
        button.area = QRect(left, area.top() + (area.height() - buttonSize) / 2, buttonSize, buttonSize);
        left += DiffMetrics::moreWidth;
    }
    return buttons;
}

DiffSectionView::MoreButton DiffSectionView::moreButtonAt(QPoint point) const
{
    if (document_.rowCount() > 0 && visibleRowsArea().contains(point)) {
        for (const MoreButton& button : moreButtons(rowNear(point))) {
            if (button.area.contains(point))
                return button;
        }
    }
    return {};
}

QString DiffSectionView::moreTitle(const MoreButton& button) const
{
    switch (button.more) {
    case More::above:
        return u"Show %1 More Lines Above"_s.arg(step);
    case More::below:
        return u"Show %1 More Lines Below"_s.arg(step);
    case More::between: {
        const bool isRest = document_.row(button.row).isRest();
        const int index = isRest ? document_.gaps().count() - 1 : document_.row(button.row).hunk;
        const int rest = document_.gaps().gap(index).rest();
        return rest == 1 ? u"Show 1 More Line"_s : u"Show %1 More Lines"_s.arg(rest);
    }
    case More::whole:
        return u"Show Whole File"_s;
    }
    return {};
}

void DiffSectionView::hoverMore(QPoint point)
{
    const MoreButton button = moreButtonAt(point);
    if (button == hoveredMore_)
        return;
    hoveredMore_ = button;
    setToolTip(button.row < 0 ? QString() : moreTitle(button));
    update();
}

void DiffSectionView::paintMoreButtons(QPainter& painter, int row) const
{
    const Theme& theme = Theme::current();
    for (const MoreButton& button : moreButtons(row)) {
        painter.save();
        painter.setRenderHint(QPainter::Antialiasing);
        if (button == hoveredMore_) {
            painter.setPen(Qt::NoPen);
            painter.setBrush(theme.selection);
            painter.drawRoundedRect(button.area, 4, 4);
        }
        painter.setPen(QPen(button == hoveredMore_ ? theme.text : theme.hunkHeaderText, 1.3, Qt::SolidLine,
                            Qt::RoundCap, Qt::RoundJoin));
        painter.translate(QRectF(button.area).center());
        if (button.more == More::above)
            paintArrow(painter, {0, 5}, {0, -5});
        else if (button.more == More::below)
            paintArrow(painter, {0, -5}, {0, 5});
        else
            paintBothArrows(painter);
        if (button.more == More::whole) {
            painter.drawLine(QPointF(-4, -7), QPointF(4, -7));
            painter.drawLine(QPointF(-4, 7), QPointF(4, 7));
        }
        painter.restore();
    }
}

void DiffSectionView::pressMore(const MoreButton& button)
{
    const DiffDocument::Row& header = document_.row(button.row);
    if (button.more == More::whole)
        Q_EMIT wholeFileRequested(true);
    else if (button.more == More::above)
        showMore(header.hunk, More::above, button.row);
    else // What stands above the new lines stays.
        showMore(header.isRest() ? header.hunk : header.hunk - 1, button.more, button.row - 1);
}

/// The nearest gap above or below a hunk that is still open; -1 for none.
int DiffSectionView::gapFrom(int hunk, More more) const
{
    const DiffGaps& gaps = document_.gaps();
    int index = more == More::above ? hunk : hunk + 1;
    while (hunk >= 0 && index >= 0 && index < gaps.count() && gaps.gap(index).rest() == 0)
        index += more == More::above ? -1 : 1;
    return hunk < -1 || index < 0 || index >= gaps.count() ? -1 : index;
}

void DiffSectionView::showMore(int hunk, More more, int anchor)
{
    const int index = gapFrom(hunk, more);
    if (index < 0)
        return;
    DiffGaps gaps = document_.gaps();
    gaps.showMore(index, more == More::above ? DiffGaps::End::bottom : DiffGaps::End::top, step);
    showGaps(std::move(gaps), anchor);
}

void DiffSectionView::addMoreActions(QMenu& menu)
{
    if (!document_.gaps().areKnown())
        return;
    if (!menu.isEmpty())
        menu.addSeparator();
    const int hunk = activeHunk();
    const auto add = [&](const QString& title, More more, QKeyCombination keys) {
        QAction* const action = menu.addAction(title, this, [this, hunk, more] { showMore(hunk, more, anchorRow()); });
        action->setShortcut(keys);
        action->setEnabled(hunk >= 0 && gapFrom(hunk, more) >= 0);
    };
    add(u"Show More Above"_s, More::above, Qt::CTRL | Qt::Key_Up);
    add(u"Show More Below"_s, More::below, Qt::CTRL | Qt::Key_Down);
    if (document_.gaps().hidesLines())
        menu.addAction(u"Show Whole File"_s, this, [this] { Q_EMIT wholeFileRequested(true); });
    if (document_.gaps().showsLines())
        menu.addAction(u"Show Changes Only"_s, this, [this] { Q_EMIT wholeFileRequested(false); });
}

} // namespace plovik
