// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/ui/stashes/StashMenu.h"

#include "GitKit/records/Stash.h"
#include "app/store/actions/Stashes.h"
#include "app/ui/commands/Commands.h"
#include "app/ui/commands/Foretelling.h"

#include <QCoreApplication>
#include <QMenu>

namespace plovik {

namespace {

using gitkit::Stash;
using gitkit::StashUse;

constexpr StashCommand commands[] = {
    {QT_TRANSLATE_NOOP("Stashes", "Apply Stash"), QT_TRANSLATE_NOOP("Stashes", "Apply"), CommandId::applyStash,
     Verb::applyStash,
     [](RepositoryStore& store, const Stash& stash) { actions::stashApply(store.actors(), stash, StashUse::apply); }},
    {QT_TRANSLATE_NOOP("Stashes", "Pop Stash"), QT_TRANSLATE_NOOP("Stashes", "Pop"), CommandId::popStash,
     Verb::applyStash,
     [](RepositoryStore& store, const Stash& stash) { actions::stashApply(store.actors(), stash, StashUse::pop); }},
    {QT_TRANSLATE_NOOP("Stashes", "Drop Stash…"), QT_TRANSLATE_NOOP("Stashes", "Drop…"), CommandId::dropStash,
     Verb::dropStash, [](RepositoryStore& store, const Stash& stash) { actions::confirmDrop(store.actors(), stash); }},
};

constexpr const char* branchTitle = QT_TRANSLATE_NOOP("Stashes", "New Branch from Stash…");

} // namespace

std::span<const StashCommand> stashCommands() { return commands; }

QString stashCommandTitle(const char* name) { return QCoreApplication::translate("Stashes", name); }

QMenu* makeStashMenu(RepositoryStore& store, const Stash& stash, QWidget* parent)
{
    auto* menu = new QMenu(parent);
    for (const StashCommand& command : commands) {
        if (command.verb == Verb::dropStash) {
            markAs(CommandId::branchFromStash,
                   addChange(*menu, store, Verb::createBranch, stashCommandTitle(branchTitle), [&store, stash] {
                       store.window().showSheet(NewBranchSheet{.startPoint = {}, .stash = stash});
                   }));
            menu->addSeparator();
        }
        QAction* const entry =
            markAs(command.id, addChange(*menu, store, command.verb, stashCommandTitle(command.menuName),
                                         [&store, stash, &command] { command.run(store, stash); }));
        if (command.verb == Verb::applyStash)
            foretellIn(*menu, *entry, store, {.act = ForetoldQuestion::Act::applyStash, .ref = stash.hash});
    }
    return menu;
}

} // namespace plovik
