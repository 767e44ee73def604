// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/ui/inspector/BlameMenu.h"

#include "app/store/ShownText.h"
#include "app/ui/commands/Commands.h"
#include "app/ui/inspector/BlameList.h"
#include "app/ui/widgets/RowPainting.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QMenu>

#include <algorithm>
#include <utility>
#include <vector>

namespace plovik {

QMenu* makeBlameMenu(BlameList& list)
{
    auto* const menu = new QMenu(&list);
    menu->setToolTipsVisible(true);
    const int row = list.currentRow();
    const bool isCommitted = !list.document()->commit(row).isUncommitted;
    const auto add = [&](const QString& title, auto action) {
        return menu->addAction(title, &list, std::move(action));
    };
    // The menu means the lines that it was opened for, which may be replaced meanwhile.
    const auto ifShown = [&list, opened = list.document()](auto action) {
        return [&list, opened, action] {
            if (list.document() == opened)
                action();
        };
    };
    QAction* const show =
        add(BlameList::tr("Show Commit"), ifShown([&list, row] { Q_EMIT list.commitRequested(row); }));
    markAs(CommandId::showCommit, show)->setShortcut(Qt::Key_Return);
    show->setEnabled(isCommitted);
    QAction* const before =
        add(BlameList::tr("Blame Before This Commit"), ifShown([&list, row] { list.askForBefore(row); }));
    markAs(CommandId::blameBefore, before)->setShortcut(Qt::Key_B);
    if (const QString reason = list.reasonAgainstBefore(row); !reason.isEmpty()) {
        before->setToolTip(plainToolTip(reason));
        before->setEnabled(false);
    }
    markAs(CommandId::showFileHistory,
           add(BlameList::tr("Show File History"), [&list] { Q_EMIT list.fileHistoryRequested(); }));
    std::vector<int> rows = list.selectedRows();
    if (rows.empty())
        rows.push_back(row);
    const auto [first, last] = std::ranges::minmax(rows);
    QAction* const history =
        add(BlameList::tr("History of These Lines"),
            ifShown([&list, first, last] { Q_EMIT list.linesHistoryRequested({first + 1, last + 1}); }));
    markAs(CommandId::linesHistory, history)->setEnabled(list.reasonAgainstLines().isEmpty());
    history->setToolTip(plainToolTip(list.reasonAgainstLines()));
    for (const bool isOpened : {false, true}) {
        QAction* const link =
            add(isOpened ? BlameList::tr("Open These Lines on the Web") : BlameList::tr("Copy Link to These Lines"),
                ifShown([&list, first, last, isOpened] {
                    Q_EMIT list.linesLinkRequested({first + 1, last + 1}, isOpened);
                }));
        markAs(isOpened ? CommandId::openFileOnWeb : CommandId::copyFileLink, link)->setEnabled(history->isEnabled());
        link->setToolTip(plainToolTip(list.reasonAgainstLines()));
    }
    menu->addSeparator();
    QAction* const hash = add(BlameList::tr("Copy Hash"), [hash = shownText(list.document()->commit(row).hash)] {
        QGuiApplication::clipboard()->setText(hash);
    });
    markAs(CommandId::copyHash, hash)->setEnabled(isCommitted);
    if (!isCommitted) {
        for (QAction* const action : {show, hash})
            action->setToolTip(BlameList::tr("These lines are not committed yet."));
    }
    const bool isOne = list.selectedRows().size() < 2;
    QAction* const lines =
        add(isOne ? BlameList::tr("Copy Line") : BlameList::tr("Copy Lines"), [&list] { list.copy(); });
    lines->setShortcut(QKeySequence::Copy);
    for (QAction* action : menu->actions())
        action->setShortcutVisibleInContextMenu(true);
    return menu;
}

} // namespace plovik
