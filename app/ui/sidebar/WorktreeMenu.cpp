// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/ui/sidebar/WorktreeMenu.h"

#include "app/store/ShownText.h"
#include "app/store/actions/Worktrees.h"
#include "app/ui/commands/Commands.h"
#include "app/ui/widgets/RowPainting.h"

#include <QClipboard>
#include <QCoreApplication>
#include <QGuiApplication>
#include <QMenu>

namespace plovik {

namespace {

using gitkit::Worktree;

struct WorktreeMenuTexts {
    Q_DECLARE_TR_FUNCTIONS(plovik::WorktreeMenu)
};

void allow(QAction& entry, const QString& whyNot)
{
    if (whyNot.isEmpty())
        return;
    entry.setEnabled(false);
    entry.setToolTip(plainToolTip(whyNot));
}

void addLock(QMenu& menu, RepositoryStore& store, const Worktree& tree)
{
    if (tree.lock) {
        markAs(CommandId::unlockWorktree, addChange(menu, store, Verb::changeWorktree, WorktreeMenuTexts::tr("Unlock"),
                                                    [&store, tree] { actions::unlockWorktree(store.actors(), tree); }));
        return;
    }
    QAction* const lock = addChange(menu, store, Verb::changeWorktree, WorktreeMenuTexts::tr("Lock…"),
                                    [&store, tree] { store.window().showSheet(LockWorktreeSheet{tree}); });
    allow(*markAs(CommandId::lockWorktree, lock), actions::whyNotChanged(tree));
}

QString whyNotRemoved(const Worktree& tree)
{
    return tree.isHere && !tree.isMain ? WorktreeMenuTexts::tr("This window shows it. Remove it in another one.")
                                       : actions::whyNotChanged(tree);
}

} // namespace

QMenu* makeWorktreeMenu(RepositoryStore& store, const Worktree& tree, QWidget* parent)
{
    auto* const menu = new QMenu(parent);
    menu->setToolTipsVisible(true);
    QAction* const open = menu->addAction(WorktreeMenuTexts::tr("Open"), menu,
                                          [&store, tree] { actions::openWorktree(store.actors(), tree); });
    allow(*markAs(CommandId::openWorktree, open), actions::whyNotOpened(tree));
    addCommand(*menu, store, CommandId::newWorktree);
    menu->addSeparator();
    addLock(*menu, store, tree);
    menu->addAction(WorktreeMenuTexts::tr("Copy Path"), menu,
                    [path = exactText(tree.folder.native())] { QGuiApplication::clipboard()->setText(path); });
    menu->addSeparator();
    QAction* const remove =
        addChange(*menu, store, Verb::changeWorktree,
                  tree.isMissing ? WorktreeMenuTexts::tr("Forget…") : WorktreeMenuTexts::tr("Remove…"),
                  [&store, tree] { actions::askToRemoveWorktree(store.actors(), tree); });
    allow(*markAs(CommandId::removeWorktree, remove), whyNotRemoved(tree));
    return menu;
}

QMenu* makeWorktreesMenu(RepositoryStore& store, QWidget* parent)
{
    auto* const menu = new QMenu(parent);
    menu->setToolTipsVisible(true);
    addCommand(*menu, store, CommandId::newWorktree);
    addCommand(*menu, store, CommandId::worktrees);
    return menu;
}

} // namespace plovik
