// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "app/store/RepositoryStore.h"
#include "app/ui/commands/Commands.h"

#include <span>

class QMenu;
class QWidget;

namespace plovik {

/// One thing that can be done with a stash. The table is constant.
struct StashCommand {
    const char* menuName;   ///< untranslated, in the context "Stashes"
    const char* buttonName; ///< likewise
    CommandId id;
    Verb verb;
    void (*run)(RepositoryStore&, const gitkit::Stash&);
};
std::span<const StashCommand> stashCommands();

/// Returns the translation of one of the names.
QString stashCommandTitle(const char* name);

/// What can be done with a stash. The menu belongs to `parent`; its entries act through `store` on the stash as it was
/// when the menu opened. Main thread.
QMenu* makeStashMenu(RepositoryStore& store, const gitkit::Stash& stash, QWidget* parent);

} // namespace plovik
