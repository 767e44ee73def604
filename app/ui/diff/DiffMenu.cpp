// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/ui/diff/DiffMenu.h"

#include "app/ui/commands/Commands.h"
#include "app/ui/diff/DiffController.h"
#include "app/ui/diff/DiffOffers.h"
#include "app/ui/diff/DiffSectionView.h"
#include "app/ui/widgets/RowPainting.h"

#include <QCoreApplication>
#include <QMenu>
#include <QPointer>

#include <algorithm>

namespace plovik {

namespace {

QString tr(const char* text) { return QCoreApplication::translate("Diff", text); }

std::optional<CommandId> commandOf(const DiffOffer& offer)
{
    const bool isLines = offer.part == DiffAction::Part::lines;
    switch (offer.verb) {
    case DiffAction::Verb::stage:
        return isLines ? CommandId::stageLines : CommandId::stageHunk;
    case DiffAction::Verb::unstage:
        return isLines ? CommandId::unstageLines : CommandId::unstageHunk;
    case DiffAction::Verb::discard:
        return isLines ? CommandId::discardLines : CommandId::discardHunk;
    case DiffAction::Verb::stash:
        return isLines ? CommandId::stashLines : CommandId::stashHunk;
    default:
        return std::nullopt;
    }
}

void addOffers(QMenu& menu, DiffController& controller)
{
    // The menu means the hunk that it was opened for, wherever the pointer goes meanwhile.
    const int hunk = controller.activeHunk();
    for (const DiffOffer& offer : menuOffers(controller)) {
        QAction* const action = menu.addAction(offer.title);
        action->setEnabled(offer.refusal.isEmpty());
        action->setToolTip(plainToolTip(offer.refusal));
        if (const std::optional<CommandId> id = commandOf(offer))
            markAs(*id, action);
        QObject::connect(
            action, &QAction::triggered, &controller,
            [&controller, hunk, verb = offer.verb, part = offer.part] { controller.request(hunk, verb, part); });
    }
}

void addGaps(QMenu& menu, DiffController& controller)
{
    const DiffGaps& gaps = controller.diff().document().gaps();
    if (!gaps.areKnown())
        return;
    if (!menu.isEmpty())
        menu.addSeparator();
    const int hunk = controller.activeHunk();
    const auto add = [&](CommandId id, const QString& title, GapSide side, QKeyCombination keys) {
        QAction* const action =
            menu.addAction(title, &controller, [&controller, hunk, side] { controller.showMore(hunk, side); });
        markAs(id, action)->setShortcut(keys);
        action->setEnabled(hunk >= 0 && controller.diff().canShowMore(hunk, side));
    };
    add(CommandId::showMoreAbove, tr(QT_TRANSLATE_NOOP("Diff", "Show More Above")), GapSide::above,
        Qt::CTRL | Qt::Key_Up);
    add(CommandId::showMoreBelow, tr(QT_TRANSLATE_NOOP("Diff", "Show More Below")), GapSide::below,
        Qt::CTRL | Qt::Key_Down);
    const auto addWhole = [&](const QString& title, bool whole) {
        menu.addAction(title, &controller, [&controller, whole] { Q_EMIT controller.wholeFileRequested(whole); });
    };
    if (gaps.hidesLines())
        addWhole(tr(QT_TRANSLATE_NOOP("Diff", "Show Whole File")), true);
    if (gaps.showsLines())
        addWhole(tr(QT_TRANSLATE_NOOP("Diff", "Show Changes Only")), false);
}

/// Offers to go from a moved line to where it was or is.
void addMove(QMenu& menu, DiffSectionView& view)
{
    DiffController& controller = view.controller();
    const int row = controller.currentRow();
    const int other = row < 0 ? -1 : controller.diff().document().movedRow(row);
    if (other < 0)
        return;
    menu.addSeparator();
    QAction* const entry = menu.addAction(movedText(controller.diff().document(), row), &view, [&controller, other] {
        controller.setCurrentRow(other);
        Q_EMIT controller.revealRequested(other, other, 3);
    });
    markAs(CommandId::goToMovedLine, entry);
}

/// Offers the history of the selected lines of a file that a commit has.
void addLinesHistory(QMenu& menu, DiffController& controller)
{
    const bool isWorkingCopy = controller.diff().content().inHead.has_value();
    if (controller.diff().content().revision.empty() && !isWorkingCopy)
        return;
    if (!menu.isEmpty())
        menu.addSeparator();
    const std::optional<gitkit::LineRange> lines = controller.linesAtHand();
    QAction* const entry =
        menu.addAction(tr(QT_TRANSLATE_NOOP("Diff", "History of These Lines")), &controller, [&controller, lines] {
            if (lines)
                Q_EMIT controller.linesHistoryRequested(*lines);
        });
    entry->setEnabled(lines.has_value());
    const QString whyNot = lines ? QString()
                           : isWorkingCopy
                               ? tr(QT_TRANSLATE_NOOP("Diff", "Select lines that the last commit has."))
                               : tr(QT_TRANSLATE_NOOP("Diff", "Select lines that the file has after the change."));
    entry->setToolTip(plainToolTip(whyNot));
    markAs(CommandId::linesHistory, entry);
    const auto addLink = [&](CommandId id, const QString& title, bool isOpened) {
        QAction* const link = markAs(id, menu.addAction(title, &controller, [&controller, lines, isOpened] {
            if (lines)
                Q_EMIT controller.linesLinkRequested(*lines, isOpened);
        }));
        link->setEnabled(lines.has_value());
        link->setToolTip(plainToolTip(whyNot));
    };
    addLink(CommandId::copyFileLink, tr(QT_TRANSLATE_NOOP("Diff", "Copy Link to These Lines")), false);
    addLink(CommandId::openFileOnWeb, tr(QT_TRANSLATE_NOOP("Diff", "Open These Lines on the Web")), true);
}

} // namespace

QMenu* makeDiffMenu(DiffSectionView& view)
{
    DiffController& controller = view.controller();
    auto* const menu = new QMenu(&view);
    menu->setAttribute(Qt::WA_DeleteOnClose);
    menu->setToolTipsVisible(true);
    addOffers(*menu, controller);
    addGaps(*menu, controller);
    addMove(*menu, view);
    addLinesHistory(*menu, controller);
    if (!menu->isEmpty())
        menu->addSeparator();
    QAction* const copy = menu->addAction(tr(QT_TRANSLATE_NOOP("Diff", "Copy")), &view, &DiffSectionView::copy);
    copy->setShortcut(QKeySequence::Copy);
    copy->setEnabled(!controller.selection().isEmpty());
    QAction* const all =
        menu->addAction(tr(QT_TRANSLATE_NOOP("Diff", "Select All")), &view, &DiffSectionView::selectAll);
    all->setShortcut(QKeySequence::SelectAll);
    all->setEnabled(controller.diff().document().rowCount() > 0);
    // What another diff has in the same place must not be staged or discarded instead.
    QObject::connect(&controller, &DiffController::aboutToReplace, menu, &QMenu::close);
    return menu;
}

} // namespace plovik
