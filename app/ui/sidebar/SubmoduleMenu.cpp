// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/ui/sidebar/SubmoduleMenu.h"

#include "app/store/ShownText.h"
#include "app/store/actions/Submodules.h"
#include "app/ui/commands/Commands.h"
#include "app/ui/widgets/RowPainting.h"

#include <QClipboard>
#include <QCoreApplication>
#include <QGuiApplication>
#include <QMenu>

namespace plovik {

namespace {

struct SubmoduleMenuTexts {
    Q_DECLARE_TR_FUNCTIONS(plovik::SubmoduleMenu)
};

} // namespace

QMenu* makeSubmoduleMenu(RepositoryStore& store, const gitkit::Submodule& submodule, QWidget* parent)
{
    auto* const menu = new QMenu(parent);
    menu->setToolTipsVisible(true);
    QAction* const open = menu->addAction(SubmoduleMenuTexts::tr("Open"), menu,
                                          [&store, submodule] { actions::openSubmodule(store.actors(), submodule); });
    markAs(CommandId::openSubmodule, open);
    const QString why = actions::whyNotOpened(submodule);
    open->setEnabled(why.isEmpty());
    open->setToolTip(plainToolTip(why));
    menu->addSeparator();
    markAs(CommandId::updateSubmodule,
           addChange(*menu, store, Verb::updateSubmodules,
                     submodule.isInitialised ? SubmoduleMenuTexts::tr("Update") : SubmoduleMenuTexts::tr("Initialise"),
                     [&store, submodule] { actions::updateSubmodules(store.actors(), {submodule}); }));
    addCommand(*menu, store, CommandId::updateAllSubmodules);
    menu->addSeparator();
    menu->addAction(SubmoduleMenuTexts::tr("Copy Path"), menu,
                    [path = exactText(submodule.path)] { QGuiApplication::clipboard()->setText(path); });
    return menu;
}

QMenu* makeSubmodulesMenu(RepositoryStore& store, QWidget* parent)
{
    auto* const menu = new QMenu(parent);
    menu->setToolTipsVisible(true);
    addCommand(*menu, store, CommandId::updateAllSubmodules);
    return menu;
}

} // namespace plovik
