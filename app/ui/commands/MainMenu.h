// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "app/ui/commands/Commands.h"

#include <QString>

#include <filesystem>
#include <vector>

class QMenu;
class QMenuBar;

namespace plovik {

class RepositoryStore;

/// The commands that every repository window reaches and that are the application's.
class MenuTarget {
public:
    virtual ~MenuTarget() = default;

    virtual void openDocument() = 0;
    /// Asks what to clone, with the address in the clipboard if there is one.
    virtual void cloneRepository() = 0;
    /// The same with an address, which may be empty.
    virtual void cloneFrom(const QString& address) = 0;
    virtual void newRepository() = 0;
    /// Opens a folder's repository, or brings its window to the front.
    virtual void openFolder(const std::filesystem::path& folder) = 0;
    /// Returns the top levels of the repositories with a window.
    virtual std::vector<std::filesystem::path> openRoots() const = 0;
    virtual void showSettings() = 0;
    virtual void quit() = 0;
    virtual void about() = 0;
    virtual void checkForUpdates() = 0;
    virtual void bringAllToFront() = 0;
};

namespace mainMenu {

/// Fills a window's menu bar. The window's own commands (close, minimise, zoom) act on the bar's window, those of the
/// repository on `store`, the editing ones on the widget with the focus, and those of the context menus on what is
/// selected; where a text has nothing to undo or redo, "Undo" and "Redo" go through the steps of the store. `target` outlives the
/// bar; the store may go before it.
void build(QMenuBar& bar, MenuTarget& target, RepositoryStore& store);

/// The commands of a menu, in its order.
struct Group {
    QString title;
    std::vector<CommandId> commands;
};
std::vector<Group> groups();

} // namespace mainMenu

} // namespace plovik
