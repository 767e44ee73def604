// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/ui/commands/MenuItems.h"

#include "app/settings/Settings.h"
#include "app/ui/commands/CommandPalette.h"
#include "app/ui/commands/MainMenu.h"
#include "app/ui/commands/SelectionActions.h"
#include "app/ui/commands/UndoCommand.h"
#include "app/ui/widgets/Mnemonics.h"
#include "app/ui/widgets/RowPainting.h"

#include <QAction>
#include <QMenu>
#include <QMenuBar>
#include <QMetaMethod>
#include <QWidget>

#include <algorithm>
#include <utility>

namespace plovik {

namespace {

bool hasSlot(const QObject& object, const char* slot)
{
    return object.metaObject()->indexOfMethod(QMetaObject::normalizedSignature(slot)) >= 0;
}

QWidget* offeringInFocus(const char* slot)
{
    QWidget* const focus = focusBehindMenus();
    return focus && hasSlot(*focus, slot) ? focus : nullptr;
}

QWidget* offeringInSight(const char* slot, QWidget& window)
{
    for (QWidget* widget = focusBehindMenus(); widget && widget != &window; widget = widget->parentWidget()) {
        if (hasSlot(*widget, slot))
            return widget;
    }
    const QList<QWidget*> all = window.findChildren<QWidget*>();
    const auto found =
        std::ranges::find_if(all, [slot](QWidget* widget) { return widget->isVisible() && hasSlot(*widget, slot); });
    return found == all.end() ? nullptr : *found;
}

/// Lets an item call a slot of the widget that `find` returns.
template <typename Find>
void callSlot(QAction* action, QMenu* menu, const char* slot, const Command& command, Find find)
{
    QObject::connect(action, &QAction::triggered, menu, [slot, find] {
        if (QWidget* const widget = find())
            QMetaObject::invokeMethod(widget, QByteArray(slot).chopped(2).constData()); // without "()"
    });
    QObject::connect(menu, &QMenu::aboutToShow, action, [action, &command, find] {
        const bool isOffered = find() != nullptr;
        action->setEnabled(isOffered);
        action->setToolTip(plainToolTip(isOffered ? QString() : command.whatIsWanted()));
    });
    // While the menu is closed the key must reach the widget that offers the slot then.
    QObject::connect(menu, &QMenu::aboutToHide, action, [action] { action->setEnabled(true); });
}

/// Returns the tooltip that an entry was given. Without one it would repeat its text.
QString ownToolTip(const QAction& entry) { return entry.toolTip() == entry.iconText() ? QString() : entry.toolTip(); }

/// Returns an item's text with the keys that it shows without listening to them.
QString withViewKeys(const QString& title, const Command& command)
{
    const QString keys = command.shortcut().toString(QKeySequence::NativeText);
    return command.hasViewKeys && !keys.isEmpty() ? title + u'\t' + keys : title;
}

} // namespace

/// Gives an item what it does, by the kind of the command's action.
struct MenuItems::Wiring {
    MenuItems& items;
    QAction* action;
    QMenu& menu;
    const Command& command;

    /// Three commands of the menu bar have an action of their own.
    void operator()(std::monostate) const
    {
        if (command.id == CommandId::undo || command.id == CommandId::redo)
            new UndoCommand(command.id, *action, menu, items.store_);
        else
            connect([&items = items] { showCommandPalette(items.bar_, items.application_, items.store_); });
    }
    void operator()(void (*act)(RepositoryStore&)) const
    {
        connect([act, &store = items.store_] { act(store); });
        items.addStored({action, &command});
    }
    void operator()(void (*act)(QWidget&)) const
    {
        connect([act, &window = items.window_] { act(window); });
    }
    void operator()(void (MenuTarget::*act)()) const
    {
        connect([act, &application = items.application_] { (application.*act)(); });
    }
    void operator()(Command::FocusSlot slot) const
    {
        callSlot(action, &menu, slot.signature, command,
                 [signature = slot.signature] { return offeringInFocus(signature); });
    }
    void operator()(Command::SightSlot slot) const
    {
        callSlot(action, &menu, slot.signature, command,
                 [signature = slot.signature, &window = items.window_] { return offeringInSight(signature, window); });
    }
    void operator()(Command::OnSelection) const { items.addSelected({action, &command}, menu); }

    template <typename Act>
    void connect(Act act) const
    {
        QObject::connect(action, &QAction::triggered, &menu, std::move(act));
    }
};

MenuItems::MenuItems(QMenuBar& bar, MenuTarget& application, RepositoryStore& store)
    : QObject(&bar), bar_(bar), window_(*bar.window()), application_(application), store_(store),
      selection_(new SelectionActions(window_, this)), notifiers_(followOffers(store, [this] { showStored(); }))
{
    connect(&Settings::shared(), &Settings::changed, this, [this] { showStored(); });
}

QAction* MenuItems::add(QMenu& menu, const Command& command)
{
    QAction* const action = menu.addAction(withViewKeys(command.title(), command));
    // Menus are named by their titles alone, whatever platform conventions would make of words like "Quit".
    action->setMenuRole(QAction::NoRole);
    if (!command.hasViewKeys)
        action->setShortcuts(command.otherKeys == QKeyCombination()
                                 ? QList{command.shortcut()}
                                 : QList{command.shortcut(), QKeySequence(command.otherKeys)});
    std::visit(Wiring{*this, action, menu, command}, command.action);
    return markAs(command.id, action);
}

void MenuItems::addStored(const Item& item)
{
    item.action->setCheckable(item.command->isOn != nullptr);
    stored_.push_back(item);
    showStored(item);
}

void MenuItems::showStored()
{
    for (const Item& item : stored_)
        showStored(item);
}

/// Neither the menu nor a key begins what would be dropped.
void MenuItems::showStored(const Item& item) const
{
    const auto& [action, command] = item;
    action->setEnabled(command->isOffered(store_));
    action->setToolTip(plainToolTip(command->whyNot(store_)));
    action->setVisible(!command->isThere || command->isThere());
    if (command->isOn)
        action->setChecked(command->isOn(store_));
}

void MenuItems::addSelected(const Item& item, QMenu& menu)
{
    const auto& [action, command] = item;
    connect(action, &QAction::triggered, this, [this, command] {
        if (QAction* const found = selection_->of(command->id))
            found->trigger();
    });
    // The first of a menu's items looks for all.
    const bool isFirst = !menu.property("looksForSelection").toBool();
    menu.setProperty("looksForSelection", true);
    connect(&menu, &QMenu::aboutToShow, action, [this, action, command, isFirst] {
        if (isFirst)
            selection_->look();
        const QAction* const found = selection_->of(command->id);
        const QString title = found ? withoutMnemonic(found->text()) : command->title();
        action->setText(withViewKeys(title, *command));
        action->setEnabled(found && found->isEnabled());
        action->setToolTip(found ? ownToolTip(*found) : plainToolTip(command->whatIsWanted()));
    });
}

} // namespace plovik
