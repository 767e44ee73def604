// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "app/settings/OwnCommands.h"
#include "app/store/RepositoryStore.h"

#include <QObject>

#include <optional>
#include <string>
#include <vector>

class QAction;
class QMenu;
class QShortcut;
class QWidget;

namespace plovik {

class MenuTarget;

/// What a context menu was opened for. Only what its place names is set.
struct OwnCommandTarget {
    ownCommands::Entry::Place place = ownCommands::Entry::Place::repository;
    std::string commit = {}; ///< full hash
    std::string branch = {}; ///< full name of a ref
    std::vector<std::string> files = {};
};

/// Adds the user's own commands for such a target to the end of its menu; none when there are none. Main thread.
void addOwnCommands(QMenu& menu, RepositoryStore& store, const OwnCommandTarget& target);

/// Fills the menu in which all of them stand: those for a commit, branch or file run for what is selected in sight. Main thread.
void fillOwnCommands(QMenu& menu, QWidget& window, RepositoryStore& store, MenuTarget& target);

/// Returns the place of an entry among the user's commands; nullopt for every other entry of a menu.
std::optional<int> ownCommandOf(const QAction& entry);

/// Listens to the keys of the user's commands in one window, also after they were changed. Those that a command of the menus
/// has are left to it. Main thread.
class OwnCommandKeys : public QObject {
public:
    /// `store` may go before it only with the window.
    OwnCommandKeys(QWidget& window, RepositoryStore& store);

private:
    void listen();

    QWidget& window_;
    RepositoryStore& store_;
    std::vector<QShortcut*> shortcuts_;
};

/// Returns the title of the command of the menus that has these keys; empty when none has. Main thread.
QString commandWithKeys(const QString& keys);

} // namespace plovik
