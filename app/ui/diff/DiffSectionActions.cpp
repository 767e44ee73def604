// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/ui/diff/DiffRowPainter.h"
#include "app/ui/diff/DiffSectionBar.h"
#include "app/ui/diff/DiffSectionView.h"

#include <QMenu>
#include <QPainter>
#include <QPushButton>
#include <QStyleOptionButton>

#include <algorithm>
#include <array>

namespace plovik {

namespace {

using namespace Qt::StringLiterals;
using Verb = DiffAction::Verb;
using Part = DiffAction::Part;

constexpr std::array<Verb, 3> verbs{Verb::stage, Verb::unstage, Verb::discard};
constexpr int buttonGap = 6;

} // namespace

std::set<int> DiffSectionView::selectedChanges() const
{
    std::set<int> ids;
    for (const int row : selectedRows()) {
        if (document_.row(row).isChange())
            ids.insert(document_.row(row).id);
    }
    return ids;
}

std::vector<int> DiffSectionView::selectedRows() const
{
    std::vector<int> rows;
    const DiffSelection::Lines lines = selection_.lines();
    for (int line = lines.first; line < std::min(lines.end, lines_.count()); ++line) {
        const int before = lines_.rowAt(line, DiffSide::before);
        const int after = lines_.rowAt(line, DiffSide::after);
        for (const int row : {before, after == before ? -1 : after}) {
            if (row >= 0 && selection_.holds(line, document_.row(row).side))
                rows.push_back(row);
        }
    }
    std::ranges::sort(rows);
    return rows;
}

int DiffSectionView::activeHunk() const
{
    if (hovered_ >= 0)
        return hovered_;
    return keyboardHunk();
}

bool DiffSectionView::canTakeHunks() const { return isAvailable_ && notes_.wholeOnly.isEmpty(); }

void DiffSectionView::setActionsAvailable(bool available)
{
    if (available == isAvailable_)
        return;
    isAvailable_ = available;
    updateOffers();
}

void DiffSectionView::request(Verb verb, Part part) { requestOf(activeHunk(), verb, part); }

void DiffSectionView::requestOf(int hunk, Verb verb, Part part)
{
    if (!canTakeHunks() || !content_.allows(verb))
        return;
    DiffAction action{verb, part, {}};
    if (part == Part::lines)
        action.lines = selectedChanges();
    else if (part == Part::hunk && hunk >= 0)
        action.lines = document_.changesOf(document_.hunks()[static_cast<std::size_t>(hunk)]);
    else if (part == Part::all)
        action.lines = document_.changesOf({0, document_.rowCount()});
    if (!action.lines.empty())
        Q_EMIT actionRequested(action);
}

void DiffSectionView::requestFromKey(Verb verb)
{
    // Return means whatever moves a change to the other side.
    if (verb == Verb::stage && !content_.allows(verb))
        verb = Verb::unstage;
    // Wherever the pointer rests, keys mean the keyboard's own hunk.
    requestOf(keyboardHunk(), verb, selectedChanges().empty() ? Part::hunk : Part::lines);
}

void DiffSectionView::updateOffers()
{
    DiffSectionBar::Offer offer{Part::lines, static_cast<int>(selectedChanges().size()), notes_.wholeOnly};
    // The reader's own choice is in the way here, so that what it takes away stays in sight.
    const bool isRead = content_.diff.whiteSpace == gitkit::WhiteSpace::ignored;
    if (offer.count == 0 && document_.hunks().size() > 1 && (notes_.wholeOnly.isEmpty() || isRead))
        offer = {Part::all, 1, notes_.wholeOnly};
    if (!isAvailable_)
        offer.refusal = u"Another file is being read."_s;
    bar_->setOffer(content_, offer);

    for (const Verb verb : verbs) {
        const bool isOffered =
            (notes_.wholeOnly.isEmpty() || isRead) && content_.allows(verb) && !document_.hunks().empty();
        if (isOffered && !hunkButtons_.contains(verb))
            addHunkButton(verb);
        if (const auto known = hunkButtons_.find(verb); known != hunkButtons_.end()) {
            known->second->setVisible(isOffered);
            known->second->setEnabled(canTakeHunks());
            known->second->setToolTip(notes_.wholeOnly);
        }
    }
    bar_->raise();
    orderTabs();
    placeHunkButtons();
    update();
}

void DiffSectionView::addHunkButton(Verb verb)
{
    QPushButton* const button = makeDiffButton(this);
    button->setText(actionTitle(verb, Part::hunk));
    button->setAccessibleName(actionName(verb, Part::hunk));
    button->installEventFilter(this);
    connect(button, &QPushButton::clicked, this, [this, verb] { request(verb, Part::hunk); });
    hunkButtons_.emplace(verb, button);
}

void DiffSectionView::orderTabs()
{
    QWidget* before = this;
    const auto follow = [&before](QWidget* next) {
        if (before->nextInFocusChain() != next)
            setTabOrder(before, next);
        before = next;
    };
    for (const auto& [verb, button] : bar_->buttons())
        follow(button);
    for (const auto& [verb, button] : hunkButtons_)
        follow(button);
}

bool DiffSectionView::eventFilter(QObject* watched, QEvent* event)
{
    // A button that the keyboard comes to may be out of sight, in the hunk of the current line.
    if (event->type() == QEvent::FocusIn && activeHunk() >= 0)
        Q_EMIT revealRequested(rowRect(document_.hunks()[static_cast<std::size_t>(activeHunk())].first));
    return QWidget::eventFilter(watched, event);
}

int DiffSectionView::hunkButtonsWidth() const
{
    int width = 0;
    for (const auto& [verb, button] : hunkButtons_)
        width += button->isHidden() ? 0 : button->sizeHint().width() + buttonGap;
    return width;
}

void DiffSectionView::placeHunkButtons()
{
    const int hunk = activeHunk();
    if (hunk < 0)
        return;
    const QRect header = rowRect(document_.hunks()[static_cast<std::size_t>(hunk)].first);
    int right = header.right() + 1 - DiffMetrics::margin;
    for (auto each = hunkButtons_.rbegin(); each != hunkButtons_.rend(); ++each) {
        if (each->second->isHidden())
            continue;
        const QSize size = each->second->sizeHint();
        each->second->setGeometry(right - size.width(), header.top() + (header.height() - size.height()) / 2,
                                  size.width(), size.height());
        right -= size.width() + buttonGap;
    }
}

/// The buttons themselves stand in one hunk at a time; the others are shown theirs.
void DiffSectionView::paintHunkButtons(QPainter& painter, int row) const
{
    const int hunk = document_.row(row).hunk;
    if (hunk == activeHunk())
        return;
    const int by = rowRect(row).top() - rowRect(document_.hunks()[static_cast<std::size_t>(activeHunk())].first).top();
    for (const auto& [verb, button] : hunkButtons_) {
        if (button->isHidden())
            continue;
        QStyleOptionButton option;
        option.initFrom(button);
        option.state &= ~(QStyle::State_HasFocus | QStyle::State_MouseOver);
        option.state |= QStyle::State_Raised;
        option.rect = button->geometry().translated(0, by);
        option.text = button->text();
        painter.setFont(button->font());
        style()->drawControl(QStyle::CE_PushButton, &option, &painter, button);
    }
}

void DiffSectionView::addActions(QMenu& menu)
{
    const bool canTake = canTakeHunks();
    const auto count = static_cast<int>(selectedChanges().size());
    const auto add = [&](Verb verb, Part part) {
        if (!content_.allows(verb))
            return;
        QAction* const action = menu.addAction(actionTitle(verb, part, count));
        action->setEnabled(canTake);
        action->setToolTip(notes_.wholeOnly);
        connect(action, &QAction::triggered, this, [this, verb, part] { request(verb, part); });
    };
    if (count > 0) {
        for (const Verb verb : verbs)
            add(verb, Part::lines);
    }
    if (activeHunk() >= 0) {
        for (const Verb verb : verbs)
            add(verb, Part::hunk);
    }
    addMoreActions(menu);
    if (!menu.isEmpty())
        menu.addSeparator();
    QAction* const copyAction = menu.addAction(u"Copy"_s, this, &DiffSectionView::copy);
    copyAction->setShortcut(QKeySequence::Copy);
    copyAction->setEnabled(!selection_.isEmpty());
    QAction* const allAction = menu.addAction(u"Select All"_s, this, &DiffSectionView::selectAll);
    allAction->setShortcut(QKeySequence::SelectAll);
    allAction->setEnabled(document_.rowCount() > 0);
}

} // namespace plovik
