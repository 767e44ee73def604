// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "app/ui/commands/Commands.h"

#include <QObject>
#include <QPointer>

#include <map>
#include <vector>

class QAction;
class QMenu;
class QWidget;

namespace plovik {

/// The commands for what is selected in a window. They are the entries of the context menus that its lists and texts
/// would open now, so that a command of the menu bar does what the context menu does, and is refused for the same
/// reason. Owned by its parent; main thread.
class SelectionActions : public QObject {
public:
    explicit SelectionActions(QWidget& window, QObject* parent);
    ~SelectionActions() override;

    /// Asks what has the focus, and then everything in sight, for its context menu.
    void look();
    /// Returns the entry that look() has found, or null when nothing that is selected has the command. What has the
    /// focus goes before the rest. It is null again once what it was for has gone.
    QAction* of(CommandId id) const;
    /// Returns the same for one of the user's own commands, by its place among them.
    QAction* ofOwnCommand(int number) const;

private:
    void add(QWidget& widget);
    void add(const QMenu& menu);
    void drop();

    QWidget& window_;
    std::vector<QPointer<QMenu>> menus_;
    std::map<CommandId, QPointer<QAction>> found_;
    std::map<int, QPointer<QAction>> own_;
};

/// Returns the widget of the application that has the focus, or that gets it back when the menus are left.
QWidget* focusBehindMenus();

} // namespace plovik
