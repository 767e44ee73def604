// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/ui/stashes/StashMenu.h"
#include "app/store/actions/Stashes.h"

#include "GitKit/records/Stash.h"

#include <QMenu>

using namespace Qt::StringLiterals;

namespace plovik {

QMenu* makeStashMenu(RepositoryStore& store, const gitkit::Stash& stash, QWidget* parent)
{
    using Use = gitkit::StashUse;
    auto* menu = new QMenu(parent);
    menu->addAction(u"Apply Stash"_s, menu,
                    [&store, stash] { actions::stashApply(store.actors(), stash, Use::apply); });
    menu->addAction(u"Pop Stash"_s, menu, [&store, stash] { actions::stashApply(store.actors(), stash, Use::pop); });
    menu->addSeparator();
    menu->addAction(u"Drop Stash…"_s, menu, [&store, stash] { actions::confirmDrop(store.actors(), stash); });
    // While an action runs the store would drop another one.
    for (QAction* entry : menu->actions())
        entry->setEnabled(!store.changes().activity.value());
    return menu;
}

} // namespace plovik
