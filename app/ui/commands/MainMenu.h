// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

class QMenuBar;

namespace plovik {

class RepositoryStore;

/// The commands that the menu bar of every repository window reaches and that are the application's.
class MenuTarget {
public:
    virtual ~MenuTarget() = default;

    virtual void openDocument() = 0;
    virtual void showSettings() = 0;
    virtual void hideAll() = 0;
    virtual void showAll() = 0;
    virtual void quit() = 0;
    virtual void about() = 0;
    virtual void checkForUpdates() = 0;
    virtual void bringAllToFront() = 0;
};

namespace mainMenu {

/// Fills a window's menu bar. The window's own commands (close, minimise, zoom) act on the bar's window, those of the
/// repository on `store`, the editing ones on the widget with the focus; where that has nothing to undo, "Undo" takes
/// back the store's last discard. `target` outlives the bar; the store may go before it.
void build(QMenuBar& bar, MenuTarget& target, RepositoryStore& store);

} // namespace mainMenu

} // namespace plovik
