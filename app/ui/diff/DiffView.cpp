// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/ui/diff/DiffView.h"

#include "app/settings/CodeFont.h"
#include "app/ui/diff/ChangeMap.h"
#include "app/ui/diff/DiffFound.h"
#include "app/ui/diff/DiffSectionBar.h"
#include "app/ui/diff/DiffSectionView.h"
#include "app/ui/widgets/FocusRing.h"
#include "app/ui/widgets/Theme.h"

#include <QEvent>
#include <QScopedValueRollback>
#include <QScrollBar>
#include <QWheelEvent>

#include <algorithm>
#include <utility>

namespace plovik {

namespace {

bool hasSelection(const DiffSectionView* section) { return !section->controller().selection().isEmpty(); }

} // namespace

DiffView::DiffView(QWidget* parent) : QAbstractScrollArea(parent), map_(new ChangeMap([this] { return mapMarks(); }))
{
    setVerticalScrollBar(map_);
    giveFocusRing(*this);
    setFocusPolicy(Qt::NoFocus);
    applyTheme();
    viewport()->setAutoFillBackground(true);
    auto* const corner = new QWidget;
    corner->setBackgroundRole(QPalette::Base);
    corner->setAutoFillBackground(true);
    setCornerWidget(corner);
    verticalScrollBar()->setSingleStep(20);
    horizontalScrollBar()->setSingleStep(20);
}

/// Takes the section of a kind out of `from`, or makes one.
DiffSectionView* DiffView::takeSection(DiffKind kind, std::vector<DiffSectionView*>& from)
{
    const auto known = std::ranges::find(from, kind, &DiffSectionView::kind);
    if (known == from.end())
        return addSection();
    DiffSectionView* const section = *known;
    from.erase(known);
    return section;
}

DiffSectionView* DiffView::addSection()
{
    auto made = std::make_shared<DiffController>();
    DiffController* const controller = made.get();
    auto* const section = new DiffSectionView(std::move(made), viewport());
    mapped_.clear();
    controller->setActionsAvailable(areActionsAvailable_);
    controller->setLayout(layout_);
    controller->setWraps(wraps_);
    controller->setShowsWholeFile(showsWholeFile_);
    section->bar().setReserve(barReserve_);
    connect(controller, &DiffController::actionRequested, this, [this, controller](const DiffAction& action) {
        // The action may replace the content at once.
        const DiffContent content = controller->diff().content();
        Q_EMIT actionRequested(content, action);
    });
    connect(controller, &DiffController::linesHistoryRequested, this, [this, controller](gitkit::LineRange lines) {
        const DiffContent content = controller->diff().content();
        Q_EMIT linesHistoryRequested(content, lines);
    });
    connect(controller, &DiffController::linesLinkRequested, this,
            [this, controller](gitkit::LineRange lines, bool isOpened) {
                const DiffContent content = controller->diff().content();
                Q_EMIT linesLinkRequested(content, lines, isOpened);
            });
    connect(controller, &DiffController::wholeFileRequested, this, &DiffView::setShowsWholeFile);
    connect(controller, &DiffController::allLinesRequested, this, &DiffView::allLinesRequested);
    connect(controller, &DiffController::changeRequested, this, &DiffView::goToChange);
    connect(controller, &DiffController::endRequested, this, &DiffView::goToEnd);
    connect(controller, &DiffController::leaveRequested, this,
            [this, section](int direction) { leave(section, direction); });
    connect(section, &DiffSectionView::foundChanged, map_, &ChangeMap::forget);
    connect(section, &DiffSectionView::contentHeightChanged, this, &DiffView::layOut);
    connect(section, &DiffSectionView::revealRequested, this,
            [this, section](const QRect& area) { reveal(section, area); });
    return section;
}

void DiffView::setContents(std::vector<DiffContent> contents, DiffPlace place)
{
    const int x = horizontalScrollBar()->value();
    const int y = verticalScrollBar()->value();
    {
        const QScopedValueRollback filling(isFilling_, true);
        std::vector<DiffSectionView*> before = std::exchange(sections_, {});
        for (DiffContent& content : contents) {
            DiffSectionView* const section = takeSection(content.kind, before);
            section->bar().setFollows(!sections_.empty());
            sections_.push_back(section);
            section->controller().setContent(std::move(content), place);
            section->show();
        }
        // A section may be removed by one of its own event handlers, so it is deleted later.
        for (DiffSectionView* const gone : before) {
            if (gone->hasFocus() && !sections_.empty())
                sections_.front()->setFocus(Qt::OtherFocusReason);
            gone->disconnect(this);
            gone->controller().disconnect(this);
            gone->hide();
            gone->deleteLater();
        }
    }
    setFocusProxy(sections_.empty() ? nullptr : sections_.front());
    layOut(0);
    verticalScrollBar()->setValue(place == DiffPlace::kept ? y : 0);
    horizontalScrollBar()->setValue(place == DiffPlace::kept ? x : 0);
}

QWidget* DiffView::orderTabs()
{
    QWidget* last = nullptr;
    for (DiffSectionView* const section : sections_)
        last = section->orderTabs(last);
    return last;
}

void DiffView::setBarReserve(int width)
{
    barReserve_ = width;
    for (DiffSectionView* const section : sections_)
        section->bar().setReserve(width);
}

void DiffView::setActionsAvailable(bool available)
{
    areActionsAvailable_ = available;
    for (DiffSectionView* const section : sections_)
        section->controller().setActionsAvailable(available);
}

void DiffView::setTexts(DiffKind kind, const DiffTexts& texts)
{
    if (const auto section = std::ranges::find(sections_, kind, &DiffSectionView::kind); section != sections_.end())
        (*section)->controller().setTexts(texts);
}

void DiffView::setSyntax(DiffKind kind, const SyntaxOf& syntax)
{
    if (const auto section = std::ranges::find(sections_, kind, &DiffSectionView::kind); section != sections_.end())
        (*section)->controller().setSyntax(syntax);
}

void DiffView::setLayout(DiffLayout layout)
{
    layout_ = layout;
    for (DiffSectionView* const section : sections_)
        section->controller().setLayout(layout);
}

void DiffView::setWraps(bool wraps)
{
    wraps_ = wraps;
    for (DiffSectionView* const section : sections_)
        section->controller().setWraps(wraps);
}

void DiffView::setShowsWholeFile(bool whole)
{
    const bool isOther = whole != std::exchange(showsWholeFile_, whole);
    for (DiffSectionView* const section : sections_)
        section->controller().setShowsWholeFile(whole);
    if (isOther)
        Q_EMIT showsWholeFileChanged(whole);
}

/// Keeps what was looked at in place; it has moved down by `shift`.
void DiffView::layOut(int shift)
{
    if (isFilling_)
        return;
    const int width = viewport()->width();
    for (DiffSectionView* const section : sections_)
        shift += section->fit(width);
    const int scrolled = verticalScrollBar()->value() + shift;
    int total = 0;
    int hidden = 0;
    tops_.clear();
    for (DiffSectionView* const section : sections_) {
        const int height = section->heightFor(width);
        tops_.push_back(total);
        section->resize(width, height);
        total += height;
        hidden = std::max(hidden, section->hiddenWidth(width));
    }
    verticalScrollBar()->setRange(0, std::max(0, total - viewport()->height()));
    verticalScrollBar()->setPageStep(viewport()->height());
    verticalScrollBar()->setValue(scrolled);
    horizontalScrollBar()->setRange(0, hidden);
    horizontalScrollBar()->setPageStep(width);
    placeSections();
    forgetMap(total);
    Q_EMIT laidOut();
}

/// Has the map drawn anew unless it shows the same rows in the same places.
void DiffView::forgetMap(int total)
{
    std::vector<int> shown = tops_;
    shown.push_back(total);
    for (const DiffSectionView* const section : sections_)
        shown.push_back(section->controller().diff().revision());
    if (shown != std::exchange(mapped_, shown))
        map_->forget();
}

std::vector<MapMark> DiffView::mapMarks() const
{
    using Kind = DiffDocument::Kind;
    std::vector<MapMark> marks;
    for (std::size_t i = 0; i < sections_.size() && i < tops_.size(); ++i) {
        const DiffSectionView& section = *sections_[i];
        const DiffDocument& document = section.controller().diff().document();
        const auto add = [&](MapMark::Kind kind, int first, int last) {
            const int top = section.rowRect(first).top();
            marks.push_back({kind, tops_[i] + top, section.rowRect(last).bottom() + 1 - top});
        };
        for (int row = 0; row < document.rowCount(); ++row) {
            const Kind kind = document.row(row).kind;
            const int first = row;
            if (!document.row(row).isChange())
                continue;
            while (row + 1 < document.rowCount() && document.row(row + 1).kind == kind)
                ++row;
            add(kind == Kind::addition ? MapMark::Kind::added : MapMark::Kind::removed, first, row);
        }
        if (section.found()) {
            for (const DiffFound::Run& run : section.found()->runs)
                add(section.found()->isCurrent(run) ? MapMark::Kind::current : MapMark::Kind::found, run.row, run.row);
        }
    }
    return marks;
}

void DiffView::placeSections()
{
    const int scrolled = verticalScrollBar()->value();
    for (std::size_t i = 0; i < sections_.size() && i < tops_.size(); ++i) {
        sections_[i]->move(0, tops_[i] - scrolled);
        sections_[i]->setVisibleTop(scrolled - tops_[i]);
        sections_[i]->setOffset(horizontalScrollBar()->value());
    }
}

void DiffView::reveal(DiffSectionView* section, QRect area)
{
    const int top = section->y() + verticalScrollBar()->value() + area.top();
    // The bar stays in sight and covers the first lines.
    const int covered = section->coveredHeight();
    int value = verticalScrollBar()->value();
    value = std::max(value, top + area.height() - viewport()->height());
    value = std::min(value, top - covered);
    verticalScrollBar()->setValue(value);
    if (area.width() <= 1) {
        int x = horizontalScrollBar()->value();
        x = area.left() >= viewport()->width() ? x + area.left() - viewport()->width() + 1 : x;
        horizontalScrollBar()->setValue(area.left() < 0 ? x + area.left() : x);
    }
}

void DiffView::leave(DiffSectionView* section, int direction)
{
    auto at = std::ranges::find(sections_, section);
    while (at != sections_.end()) {
        if (direction < 0 && at == sections_.begin())
            break;
        at += direction;
        if (at == sections_.end())
            break;
        const auto& hunks = (*at)->controller().diff().document().hunks();
        if (hunks.empty())
            continue;
        const int row = direction > 0 ? hunks.front().first : hunks.back().first;
        (*at)->controller().setCurrentRow(row);
        (*at)->setFocus(Qt::OtherFocusReason);
        reveal(*at, (*at)->rowRect(row));
        return;
    }
    Q_EMIT left(direction);
}

/// Returns the diff that a walk goes on from: the one with the focus, else the one it has led to before, else the first
/// one in sight.
DiffSectionView* DiffView::sectionAtHand() const
{
    DiffSectionView* best = nullptr;
    for (DiffSectionView* const section : sections_) {
        const auto rank = [](const DiffSectionView* of) {
            return (of->hasFocus() ? 4 : 0) + (of->controller().wasWalked() ? 2 : 0) +
                   (of->geometry().bottom() > 0 ? 1 : 0);
        };
        if (!best || rank(section) > rank(best))
            best = section;
    }
    return best;
}

void DiffView::goToChange(int direction)
{
    DiffSectionView* const start = sectionAtHand();
    if (!start || start->controller().moveToChange(direction, start->walkStart(direction)))
        return;
    auto at = std::ranges::find(sections_, start);
    while (direction > 0 ? ++at != sections_.end() : at-- != sections_.begin()) {
        DiffController& next = (*at)->controller();
        if (!next.moveToChange(direction, direction > 0 ? -1 : next.diff().document().rowCount()))
            continue;
        if (start->hasFocus())
            (*at)->setFocus(Qt::OtherFocusReason);
        start->controller().stopWalk();
        return;
    }
    Q_EMIT walkEnded(direction);
}

void DiffView::goToEnd(int direction, bool extend)
{
    DiffSectionView* const start = sectionAtHand();
    DiffSectionView* goal = extend ? start : nullptr; // a selection stays within its diff
    for (DiffSectionView* const section : sections_) {
        const bool hasRows = section->controller().currentRow() >= 0;
        if (!extend && hasRows && (!goal || direction > 0))
            goal = section;
    }
    if (!goal)
        return;
    goal->controller().moveBy(direction * goal->controller().diff().lines().count(), extend);
    if (start->hasFocus())
        goal->setFocus(Qt::OtherFocusReason);
    // What stands around the lines comes into sight as well.
    QScrollBar* const bar = verticalScrollBar();
    if (!extend)
        bar->setValue(direction < 0 ? bar->minimum() : bar->maximum());
}

QString DiffView::selectedText() const
{
    for (const DiffSectionView* const section : sections_) {
        const DiffController& controller = section->controller();
        if (QString text = controller.diff().textOf(controller.selection()); !text.isEmpty())
            return text;
    }
    return {};
}

void DiffView::copy()
{
    const auto chosen = std::ranges::find_if(
        sections_, [](const DiffSectionView* section) { return section->hasFocus() && hasSelection(section); });
    const auto any = std::ranges::find_if(sections_, hasSelection);
    if (chosen != sections_.end())
        (*chosen)->copy();
    else if (any != sections_.end())
        (*any)->copy();
}

void DiffView::selectAll()
{
    const auto chosen = std::ranges::find_if(sections_, &DiffSectionView::hasFocus);
    if (chosen != sections_.end())
        (*chosen)->selectAll();
    else if (!sections_.empty())
        sections_.front()->selectAll();
}

void DiffView::resizeEvent(QResizeEvent* event)
{
    QAbstractScrollArea::resizeEvent(event);
    layOut(0);
}

void DiffView::wheelEvent(QWheelEvent* event)
{
    if (!event->modifiers().testFlag(Qt::ControlModifier)) {
        turned_ = 0;
        QAbstractScrollArea::wheelEvent(event);
        return;
    }
    turned_ = CodeFont::changeSizeByWheel(turned_ + event->angleDelta().y());
    event->accept();
}

void DiffView::scrollContentsBy(int, int) { placeSections(); }

void DiffView::changeEvent(QEvent* event)
{
    QAbstractScrollArea::changeEvent(event);
    if (event->type() == QEvent::PaletteChange)
        applyTheme();
}

void DiffView::applyTheme() { viewport()->setBackgroundRole(QPalette::Base); }

} // namespace plovik

#include "moc_DiffView.cpp"
