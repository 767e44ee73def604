// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "app/ui/widgets/Mnemonics.h"

#include <QAction>
#include <QApplication>
#include <QDialog>
#include <QMenu>
#include <QWidget>

#include <string>
#include <vector>

namespace plovik::test {

/// The widget of that accessible name, or of that title, inside `parent` and its dialogs; null when there is none.
template <typename Widget = QWidget>
Widget* named(const QWidget& parent, const QString& name)
{
    for (Widget* widget : parent.findChildren<Widget*>()) {
        const QVariant title = widget->property("text");
        if (widget->accessibleName() == name || (title.isValid() && title.toString() == name))
            return widget;
    }
    return nullptr;
}

/// The dialog that is open over `window`, the newest of several; null when there is none.
inline QDialog* openDialog(const QWidget& window)
{
    QDialog* found = nullptr;
    for (QDialog* dialog : window.findChildren<QDialog*>()) {
        if (dialog->isVisible())
            found = dialog;
    }
    return found;
}

/// The titles of a menu's entries; in brackets those that are disabled, "—" for a separator.
inline std::vector<std::string> entries(const QMenu& menu)
{
    std::vector<std::string> titles;
    for (const QAction* action : menu.actions()) {
        const std::string title = action->isSeparator() ? "—" : withoutMnemonic(action->text()).toStdString();
        titles.push_back(action->isEnabled() ? title : "(" + title + ")");
    }
    return titles;
}

inline QAction* entry(const QMenu& menu, const QString& title)
{
    for (QAction* action : menu.actions()) {
        if (withoutMnemonic(action->text()) == title)
            return action;
    }
    return nullptr;
}

} // namespace plovik::test
