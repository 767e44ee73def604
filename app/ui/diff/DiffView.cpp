// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/ui/diff/DiffView.h"

#include "app/ui/diff/DiffSectionBar.h"
#include "app/ui/diff/DiffSectionView.h"
#include "app/ui/widgets/Theme.h"

#include <QEvent>
#include <QScopedValueRollback>
#include <QScrollBar>

#include <algorithm>
#include <utility>

namespace plovik {

DiffView::DiffView(QWidget* parent) : QAbstractScrollArea(parent)
{
    setFrameShape(QFrame::NoFrame);
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

/// Takes the section of this name out of `from`, or makes one.
DiffSectionView* DiffView::sectionNamed(const QString& name, std::vector<DiffSectionView*>& from)
{
    const auto known =
        std::ranges::find_if(from, [&name](const DiffSectionView* section) { return section->content().name == name; });
    if (known == from.end())
        return addSection();
    DiffSectionView* const section = *known;
    from.erase(known);
    return section;
}

DiffSectionView* DiffView::addSection()
{
    auto* const section = new DiffSectionView(viewport());
    section->setActionsAvailable(areActionsAvailable_);
    section->setDiffLayout(layout_);
    section->setShowsWholeFile(showsWholeFile_);
    section->setBarReserve(barReserve_);
    connect(section, &DiffSectionView::actionRequested, this, [this, section](const DiffAction& action) {
        // What is asked for may bring another content at once.
        const DiffContent content = section->content();
        Q_EMIT actionRequested(content, action);
    });
    connect(section, &DiffSectionView::contentHeightChanged, this, &DiffView::layOut);
    connect(section, &DiffSectionView::wholeFileRequested, this, &DiffView::setShowsWholeFile);
    connect(section, &DiffSectionView::changeRequested, this, &DiffView::goToChange);
    connect(section, &DiffSectionView::revealRequested, this,
            [this, section](const QRect& area) { reveal(section, area); });
    connect(section, &DiffSectionView::leaveRequested, this,
            [this, section](int direction) { leave(section, direction); });
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
            DiffSectionView* const section = sectionNamed(content.name, before);
            section->setFollows(!sections_.empty());
            sections_.push_back(section);
            section->setContent(std::move(content), place);
            section->show();
        }
        // A section that goes while it runs a handler of its own is deleted afterwards.
        for (DiffSectionView* const gone : before) {
            if (gone->hasFocus() && !sections_.empty())
                sections_.front()->setFocus(Qt::OtherFocusReason);
            gone->hide();
            gone->deleteLater();
        }
    }
    setFocusProxy(sections_.empty() ? nullptr : sections_.front());
    layOut(0);
    verticalScrollBar()->setValue(place == DiffPlace::kept ? y : 0);
    horizontalScrollBar()->setValue(place == DiffPlace::kept ? x : 0);
}

void DiffView::setBarReserve(int width)
{
    barReserve_ = width;
    for (DiffSectionView* const section : sections_)
        section->setBarReserve(width);
}

void DiffView::setActionsAvailable(bool available)
{
    areActionsAvailable_ = available;
    for (DiffSectionView* const section : sections_)
        section->setActionsAvailable(available);
}

void DiffView::setTexts(const QString& section, const DiffTexts& texts)
{
    for (DiffSectionView* const each : sections_) {
        if (each->content().name == section)
            each->setTexts(texts);
    }
}

void DiffView::setSyntax(const QString& section, const SyntaxOf& syntax)
{
    for (DiffSectionView* const each : sections_) {
        if (each->content().name == section)
            each->setSyntax(syntax);
    }
}

void DiffView::setLayout(DiffLayout layout)
{
    layout_ = layout;
    for (DiffSectionView* const section : sections_)
        section->setDiffLayout(layout);
}

void DiffView::setShowsWholeFile(bool whole)
{
    const bool isOther = whole != std::exchange(showsWholeFile_, whole);
    for (DiffSectionView* const section : sections_)
        section->setShowsWholeFile(whole);
    if (isOther)
        Q_EMIT showsWholeFileChanged(whole);
}

/// `shift` is by how much what was looked at has moved down.
void DiffView::layOut(int shift)
{
    if (isFilling_)
        return;
    const int width = viewport()->width();
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
    Q_EMIT laidOut();
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
    const int covered = section->content().title.isEmpty() ? 0 : DiffSectionBar::barHeight;
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
            return;
        at += direction;
        if (at == sections_.end())
            return;
        const auto& hunks = (*at)->document().hunks();
        if (hunks.empty())
            continue;
        const int row = direction > 0 ? hunks.front().first : hunks.back().first;
        (*at)->setCurrentRow(row);
        (*at)->setFocus(Qt::OtherFocusReason);
        reveal(*at, (*at)->rowRect(row));
        return;
    }
}

/// Where keys mean to go on from: the diff with the focus, else where they have led before, else the first in sight.
DiffSectionView* DiffView::sectionAtHand() const
{
    DiffSectionView* best = nullptr;
    for (DiffSectionView* const section : sections_) {
        const auto rank = [](const DiffSectionView* of) {
            return (of->hasFocus() ? 4 : 0) + (of->wasWalked() ? 2 : 0) + (of->geometry().bottom() > 0 ? 1 : 0);
        };
        if (!best || rank(section) > rank(best))
            best = section;
    }
    return best;
}

void DiffView::goToChange(int direction)
{
    DiffSectionView* const start = sectionAtHand();
    if (!start || start->moveToChange(direction, false))
        return;
    auto at = std::ranges::find(sections_, start);
    while (direction > 0 ? ++at != sections_.end() : at-- != sections_.begin()) {
        if (!(*at)->moveToChange(direction, true))
            continue;
        if (start->hasFocus())
            (*at)->setFocus(Qt::OtherFocusReason);
        start->stopWalk();
        return;
    }
}

void DiffView::copy()
{
    const auto chosen = std::ranges::find_if(sections_, [](const DiffSectionView* section) {
        return section->hasFocus() && !section->selection().isEmpty();
    });
    const auto any =
        std::ranges::find_if(sections_, [](const DiffSectionView* section) { return !section->selection().isEmpty(); });
    if (chosen != sections_.end())
        (*chosen)->copy();
    else if (any != sections_.end())
        (*any)->copy();
}

void DiffView::selectAll()
{
    const auto chosen =
        std::ranges::find_if(sections_, [](const DiffSectionView* section) { return section->hasFocus(); });
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

void DiffView::scrollContentsBy(int, int) { placeSections(); }

void DiffView::changeEvent(QEvent* event)
{
    QAbstractScrollArea::changeEvent(event);
    if (event->type() == QEvent::PaletteChange)
        applyTheme();
}

void DiffView::applyTheme() { viewport()->setBackgroundRole(QPalette::Base); }

} // namespace plovik
