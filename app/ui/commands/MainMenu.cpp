// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/ui/commands/MainMenu.h"

#include "app/settings/Settings.h"
#include "app/ui/commands/Commands.h"
#include "app/ui/commands/NavigationButtons.h"
#include "app/ui/commands/UndoCommand.h"
#include "app/ui/widgets/RowPainting.h"

#include <QAction>
#include <QApplication>
#include <QMenu>
#include <QMenuBar>
#include <QMetaMethod>
#include <QWidget>

#include <algorithm>
#include <utility>
#include <vector>

namespace plovik::mainMenu {

namespace {

/// Nothing stands for a separator.
using Entry = std::optional<CommandId>;
constexpr std::nullopt_t line = std::nullopt;

struct Layout {
    const char* title; ///< untranslated, in the context "Commands"
    std::vector<Entry> entries;
};

std::vector<Layout> layouts()
{
    using enum CommandId;
    return {{QT_TRANSLATE_NOOP("Commands", "Plovik"),
             {about, checkForUpdates, line, showSettings, line, hideAll, showAll, line, quit}},
            {QT_TRANSLATE_NOOP("Commands", "File"), {openRepository, line, closeWindow}},
            {QT_TRANSLATE_NOOP("Commands", "Edit"), {undo, redo, line, cut, copy, paste, selectAll}},
            {QT_TRANSLATE_NOOP("Commands", "Repository"),
             {showWorkingCopy, showHistory, showStashes, line, refresh, fetch, pull, push, cancelAction, line,
              newBranch, stashChanges, restoreDiscarded, line, writeMessage, showWhatIsSent}},
            {QT_TRANSLATE_NOOP("Commands", "View"),
             {back, forward, goToCommit, line, sideBySide, ignoreWhiteSpace, wholeFile, wrapLines, line, largerCode,
              smallerCode, standardCodeSize, line, nextChange, previousChange, line, commandLog}},
            {QT_TRANSLATE_NOOP("Commands", "Window"), {minimize, zoom, line, bringAllToFront}}};
}

bool hasSlot(const QObject& object, const char* slot)
{
    return object.metaObject()->indexOfMethod(QMetaObject::normalizedSignature(slot)) >= 0;
}

QWidget* offeringInFocus(const char* slot)
{
    QWidget* const focus = QApplication::focusWidget();
    return focus && hasSlot(*focus, slot) ? focus : nullptr;
}

QWidget* offeringInSight(const char* slot, QWidget& window)
{
    for (QWidget* widget = QApplication::focusWidget(); widget && widget != &window; widget = widget->parentWidget()) {
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
void callSlot(QAction* action, QMenu* menu, const char* slot, Find find)
{
    QObject::connect(action, &QAction::triggered, menu, [slot, find] {
        if (QWidget* const widget = find())
            QMetaObject::invokeMethod(widget, QByteArray(slot).chopped(2).constData()); // without "()"
    });
    QObject::connect(menu, &QMenu::aboutToShow, action, [action, find] { action->setEnabled(find() != nullptr); });
    // While the menu is closed the key must reach the widget that offers the slot then.
    QObject::connect(menu, &QMenu::aboutToHide, action, [action] { action->setEnabled(true); });
}

/// Enables, checks and hides the items of the store's commands as the store and the settings change, so that neither
/// the menu nor a key begins what would be dropped.
class CommandStates : public QObject {
public:
    CommandStates(RepositoryStore& store, QObject* parent) : QObject(parent), store_(store)
    {
        notifiers_ = followOffers(store, [this] { show(); });
        connect(&Settings::shared(), &Settings::changed, this, [this] { show(); });
    }

    void add(QAction* action, const Command& command)
    {
        action->setCheckable(command.isOn != nullptr);
        items_.push_back({action, &command});
        show(items_.back());
    }

private:
    struct Item {
        QAction* action;
        const Command* command;
    };

    void show()
    {
        for (const Item& item : items_)
            show(item);
    }

    void show(const Item& item)
    {
        const auto& [action, command] = item;
        action->setEnabled(command->isOffered(store_));
        action->setToolTip(plainToolTip(command->whyNot(store_)));
        action->setVisible(!command->isThere || command->isThere());
        if (command->isOn)
            action->setChecked(command->isOn(store_));
    }

    RepositoryStore& store_;
    std::vector<Item> items_;
    std::vector<QPropertyNotifier> notifiers_;
};

/// Gives an item what it does, by the kind of the command's action.
struct Wiring {
    QAction* item;
    QMenu* menu;
    const Command& command;
    QWidget& window;
    MenuTarget& application;
    RepositoryStore& store;
    CommandStates& states;

    /// Undo is the only command of the menu bar with an action of its own.
    void operator()(std::monostate) const { new UndoCommand(*item, *menu, store); }
    void operator()(void (*act)(RepositoryStore&)) const
    {
        connect([act, &store = store] { act(store); });
        states.add(item, command);
    }
    void operator()(void (*act)(QWidget&)) const
    {
        connect([act, &window = window] { act(window); });
    }
    void operator()(void (MenuTarget::*act)()) const
    {
        connect([act, &application = application] { (application.*act)(); });
    }
    void operator()(Command::FocusSlot slot) const
    {
        callSlot(item, menu, slot.signature, [signature = slot.signature] { return offeringInFocus(signature); });
    }
    void operator()(Command::SightSlot slot) const
    {
        callSlot(item, menu, slot.signature,
                 [signature = slot.signature, &window = window] { return offeringInSight(signature, window); });
    }

    template <typename Act>
    void connect(Act act) const
    {
        QObject::connect(item, &QAction::triggered, menu, std::move(act));
    }
};

} // namespace

void build(QMenuBar& bar, MenuTarget& target, RepositoryStore& store)
{
    QWidget& window = *bar.window();
    bar.setAccessibleName(QCoreApplication::translate("Commands", "Menu Bar"));
    auto& states = *new CommandStates(store, &bar);
    for (const Layout& layout : layouts()) {
        QMenu* const menu = bar.addMenu(QCoreApplication::translate("Commands", layout.title));
        menu->setToolTipsVisible(true);
        for (const Entry& entry : layout.entries) {
            if (!entry) {
                menu->addSeparator();
                continue;
            }
            const Command& command = plovik::command(*entry);
            QAction* const item = menu->addAction(command.title());
            // Menus are named by their titles alone, whatever platform conventions would make of words like "Quit".
            item->setMenuRole(QAction::NoRole);
            item->setShortcut(command.shortcut());
            if (command.otherKeys != QKeyCombination())
                item->setShortcuts({command.shortcut(), QKeySequence(command.otherKeys)});
            std::visit(Wiring{item, menu, command, window, target, store, states}, command.action);
        }
    }
    new NavigationButtons(store, window);
}

} // namespace plovik::mainMenu
