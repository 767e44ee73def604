// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "app/ui/commands/Commands.h"

#include <QObject>

#include <vector>

class QAction;
class QMenu;
class QMenuBar;
class QWidget;

namespace plovik {

class MenuTarget;
class SelectionActions;

/// Makes the items of a menu bar from the table of commands, and keeps them enabled, checked, visible and named as the
/// store, the settings, the focus and the selection say. Owned by the menu bar `bar`; main thread.
class MenuItems : public QObject {
public:
    /// `application` outlives the items; `store` may go before them.
    MenuItems(QMenuBar& bar, MenuTarget& application, RepositoryStore& store);

    QAction* add(QMenu& menu, const Command& command);

private:
    struct Item {
        QAction* action;
        const Command* command;
    };
    struct Wiring;

    void addStored(const Item& item);
    void addSelected(const Item& item, QMenu& menu);
    void showStored();
    void showStored(const Item& item) const;

    QMenuBar& bar_;
    QWidget& window_;
    MenuTarget& application_;
    RepositoryStore& store_;
    SelectionActions* selection_;
    std::vector<Item> stored_; ///< those of the store
    std::vector<QPropertyNotifier> notifiers_;
};

} // namespace plovik
