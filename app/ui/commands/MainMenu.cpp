// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/ui/commands/MainMenu.h"

#include "app/settings/Settings.h"
#include "app/store/RepositoryStore.h"
#include "app/store/actions/Remotes.h"
#include "app/ui/commands/NavigationButtons.h"
#include "app/ui/commands/UndoCommand.h"
#include "app/ui/workingcopy/MessageButtons.h"

#include <QAction>
#include <QApplication>
#include <QMenu>
#include <QMenuBar>
#include <QMetaMethod>
#include <QWidget>

#include <algorithm>
#include <functional>
#include <utility>
#include <vector>

namespace plovik::mainMenu {

namespace {

QAction* add(QMenu* menu, const QString& title, const QKeySequence& key, std::function<void()> run)
{
    QAction* const action = menu->addAction(title);
    // Menus are named by their titles alone, whatever platform conventions would make of words like "Quit".
    action->setMenuRole(QAction::NoRole);
    action->setShortcut(key);
    QObject::connect(action, &QAction::triggered, menu, [run = std::move(run)] { run(); });
    return action;
}

bool hasSlot(const QObject& object, const char* slot)
{
    return object.metaObject()->indexOfMethod(QMetaObject::normalizedSignature(slot)) >= 0;
}

bool focusOffers(const char* slot)
{
    const QWidget* const focus = QApplication::focusWidget();
    return focus && hasSlot(*focus, slot);
}

/// An item that calls a slot of the widget with the focus, as text fields and lists have them.
void addEditing(QMenu* menu, const QString& title, const QKeySequence& key, const char* slot)
{
    const QByteArray name = QByteArray(slot).chopped(2); // without "()"
    QAction* const action = add(menu, title, key, [name] {
        if (QWidget* const focus = QApplication::focusWidget())
            QMetaObject::invokeMethod(focus, name.constData());
    });
    QObject::connect(menu, &QMenu::aboutToShow, action, [action, slot] { action->setEnabled(focusOffers(slot)); });
    // While the menu is closed the key must reach whatever has the focus then.
    QObject::connect(menu, &QMenu::aboutToHide, action, [action] { action->setEnabled(true); });
}

void buildApplicationMenu(QMenu* menu, MenuTarget& target)
{
    add(menu, QStringLiteral("About Plovik"), {}, [&target] { target.about(); });
    add(menu, QStringLiteral("Check for Updates…"), {}, [&target] { target.checkForUpdates(); });
    menu->addSeparator();
    add(menu, QStringLiteral("Settings…"), QKeySequence(Qt::CTRL | Qt::Key_Comma),
        [&target] { target.showSettings(); });
    menu->addSeparator();
    add(menu, QStringLiteral("Hide Plovik"), QKeySequence(Qt::CTRL | Qt::Key_H), [&target] { target.hideAll(); });
    add(menu, QStringLiteral("Show All"), {}, [&target] { target.showAll(); });
    menu->addSeparator();
    add(menu, QStringLiteral("Quit Plovik"), QKeySequence(Qt::CTRL | Qt::Key_Q), [&target] { target.quit(); });
}

void buildEditMenu(QMenu* menu, RepositoryStore& store)
{
    QAction* const undo = menu->addAction(QString());
    undo->setMenuRole(QAction::NoRole);
    undo->setShortcut(QKeySequence(Qt::CTRL | Qt::Key_Z));
    new UndoCommand(*undo, *menu, store);
    addEditing(menu, QStringLiteral("Redo"), QKeySequence(Qt::CTRL | Qt::SHIFT | Qt::Key_Z), "redo()");
    menu->addSeparator();
    addEditing(menu, QStringLiteral("Cut"), QKeySequence(Qt::CTRL | Qt::Key_X), "cut()");
    addEditing(menu, QStringLiteral("Copy"), QKeySequence(Qt::CTRL | Qt::Key_C), "copy()");
    addEditing(menu, QStringLiteral("Paste"), QKeySequence(Qt::CTRL | Qt::Key_V), "paste()");
    addEditing(menu, QStringLiteral("Select All"), QKeySequence(Qt::CTRL | Qt::Key_A), "selectAll()");
}

/// Keeps what the store can do now apart from what it would drop, for the menu and for its keys.
class CommandStates : public QObject {
public:
    struct Command {
        QAction* action;
        bool (*isPossible)(const RepositoryStore&);
    };

    /// The commands depend on some of the store's fields.
    template <typename... Fields>
    CommandStates(RepositoryStore& store, std::vector<Command> commands, QObject* parent, Fields&... fields)
        : QObject(parent), commands_(std::move(commands))
    {
        const auto updates = [this, &store] {
            for (const Command& command : commands_)
                command.action->setEnabled(command.isPossible(store));
        };
        (notifiers_.push_back(fields.addNotifier(updates)), ...);
        updates();
    }

private:
    std::vector<Command> commands_;
    std::vector<QPropertyNotifier> notifiers_;
};

bool isIdle(const RepositoryStore& store) { return !store.changes().activity.value(); }
bool canCancel(const RepositoryStore& store) { return !isIdle(store) && !store.changes().isCancelling.value(); }
bool canStash(const RepositoryStore& store) { return isIdle(store) && !store.snapshot().status.value().files.empty(); }

void select(RepositoryStore& store, SidebarItem item) { store.window().select(std::move(item)); }

bool canWriteMessage(const RepositoryStore& store)
{
    return !store.draft().generatingMessage.value() && store.snapshot().status.value().stagedCount() > 0;
}

/// What has to do with written commit messages; there only while the settings say so.
void addMessageCommands(QMenu* menu, RepositoryStore& store)
{
    QAction* const separator = menu->addSeparator();
    QAction* const write =
        add(menu, QStringLiteral("Write Commit Message"), QKeySequence(Qt::CTRL | Qt::SHIFT | Qt::Key_M), [&store] {
            select(store, SidebarItem::workingCopy());
            writeCommitMessage(store);
        });
    QAction* const preview =
        add(menu, QStringLiteral("Show What Is Sent…"), {}, [&store] { store.window().showSheet(SentChangesSheet{}); });
    new CommandStates(store, {{write, canWriteMessage}, {preview, canWriteMessage}}, menu,
                      store.draft().generatingMessage, store.snapshot().status);
    const auto showOffer = [=] {
        for (QAction* const action : {separator, write, preview})
            action->setVisible(Settings::shared().value(settings::aiEnabled));
    };
    QObject::connect(&Settings::shared(), &Settings::changed, menu, showOffer);
    showOffer();
}

void buildRepositoryMenu(QMenu* menu, RepositoryStore& store)
{
    constexpr auto shifted = Qt::CTRL | Qt::SHIFT;
    add(menu, QStringLiteral("Working Copy"), QKeySequence(Qt::CTRL | Qt::Key_1),
        [&store] { select(store, SidebarItem::workingCopy()); });
    add(menu, QStringLiteral("History"), QKeySequence(Qt::CTRL | Qt::Key_2),
        [&store] { select(store, SidebarItem::history()); });
    add(menu, QStringLiteral("Stashes"), QKeySequence(Qt::CTRL | Qt::Key_3),
        [&store] { select(store, SidebarItem::stashes()); });
    menu->addSeparator();
    add(menu, QStringLiteral("Refresh"), QKeySequence(Qt::CTRL | Qt::Key_R),
        [&store] { store.snapshot().refresh(RefreshScope::full); });
    std::vector<CommandStates::Command> commands{{add(menu, QStringLiteral("Fetch"), QKeySequence(shifted | Qt::Key_F),
                                                      [&store] { actions::fetch(store.actors()); }),
                                                  isIdle},
                                                 {add(menu, QStringLiteral("Pull"), QKeySequence(shifted | Qt::Key_P),
                                                      [&store] { actions::pull(store.actors()); }),
                                                  isIdle},
                                                 // P is Pull's.
                                                 {add(menu, QStringLiteral("Push"), QKeySequence(shifted | Qt::Key_U),
                                                      [&store] { actions::push(store.actors()); }),
                                                  isIdle}};
    commands.push_back({add(menu, QStringLiteral("Cancel Action"), QKeySequence(Qt::CTRL | Qt::Key_Period),
                            [&store] { store.changes().cancelActivity(); }),
                        canCancel});
    menu->addSeparator();
    commands.push_back({add(menu, QStringLiteral("New Branch…"), QKeySequence(shifted | Qt::Key_B),
                            [&store] { store.window().showSheet(NewBranchSheet{}); }),
                        isIdle});
    commands.push_back({add(menu, QStringLiteral("Stash Changes…"), QKeySequence(shifted | Qt::Key_S),
                            [&store] { store.window().showSheet(StashSheet{}); }),
                        canStash});
    new CommandStates(store, std::move(commands), menu, store.changes().activity, store.changes().isCancelling,
                      store.snapshot().status);
    addMessageCommands(menu, store);
}

/// An item that switches a setting, and shows it wherever it is switched.
void addSwitch(QMenu* menu, const QString& title, const Setting<bool>& setting)
{
    QAction* const action = add(menu, title, {}, [] {});
    action->setCheckable(true);
    action->setChecked(Settings::shared().value(setting));
    QObject::connect(action, &QAction::toggled, menu, [&setting](bool isOn) { Settings::shared().set(setting, isOn); });
    QObject::connect(&Settings::shared(), &Settings::changed, action, [action, &setting](const QString& key) {
        if (key == QLatin1String(setting.key))
            action->setChecked(Settings::shared().value(setting));
    });
}

/// The widget that offers a slot: the one with the focus, or one around it, or else the one in sight.
QWidget* offering(const char* slot, QWidget& window)
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

/// An item that calls a slot of what is in sight.
void addForSight(QMenu* menu, QWidget* window, const QString& title, const QKeySequence& key, const char* slot)
{
    QAction* const action = add(menu, title, key, [window, slot] {
        if (QWidget* const widget = offering(slot, *window))
            QMetaObject::invokeMethod(widget, QByteArray(slot).chopped(2).constData());
    });
    QObject::connect(menu, &QMenu::aboutToShow, action,
                     [action, window, slot] { action->setEnabled(offering(slot, *window)); });
    // While the menu is closed the key must reach whatever is in sight then.
    QObject::connect(menu, &QMenu::aboutToHide, action, [action] { action->setEnabled(true); });
}

/// Opens and closes the panel, and is checked while it is open.
class CommandLogSwitch : public QObject {
public:
    CommandLogSwitch(QAction& action, RepositoryStore& store) : QObject(&action)
    {
        action.setCheckable(true);
        action.setChecked(store.window().showsCommandLog.value());
        connect(&action, &QAction::toggled, this, [&store](bool shows) { store.window().showCommandLog(shows); });
        notifier_ = store.window().showsCommandLog.addNotifier(
            [&action, &store] { action.setChecked(store.window().showsCommandLog.value()); });
    }

private:
    QPropertyNotifier notifier_;
};

void buildViewMenu(QMenu* menu, QWidget* window, RepositoryStore& store)
{
    std::vector<CommandStates::Command> commands{
        {add(menu, QStringLiteral("Back"), QKeySequence(Qt::ALT | Qt::Key_Left), [&store] { store.trail().goBack(); }),
         [](const RepositoryStore& asked) { return asked.trail().canGoBack.value(); }},
        {add(menu, QStringLiteral("Forward"), QKeySequence(Qt::ALT | Qt::Key_Right),
             [&store] { store.trail().goForward(); }),
         [](const RepositoryStore& asked) { return asked.trail().canGoForward.value(); }},
        {add(menu, QStringLiteral("Go to Commit…"), QKeySequence(Qt::CTRL | Qt::Key_G),
             [&store] { store.window().showSheet(GoToCommitSheet{}); }),
         [](const RepositoryStore& asked) { return asked.snapshot().status.value().hasCommits(); }}};
    new CommandStates(store, std::move(commands), menu, store.trail().canGoBack, store.trail().canGoForward,
                      store.snapshot().status);
    menu->addSeparator();
    addSwitch(menu, QStringLiteral("Side by Side"), settings::diffSideBySide);
    addSwitch(menu, QStringLiteral("Ignore White Space"), settings::diffIgnoresWhiteSpace);
    menu->addSeparator();
    addForSight(menu, window, QStringLiteral("Next Change"), QKeySequence(Qt::Key_F7), "nextChange()");
    addForSight(menu, window, QStringLiteral("Previous Change"), QKeySequence(Qt::SHIFT | Qt::Key_F7),
                "previousChange()");
    menu->addSeparator();
    QAction* const log =
        add(menu, QStringLiteral("Command Log"), QKeySequence(Qt::CTRL | Qt::SHIFT | Qt::Key_L), [] {});
    new CommandLogSwitch(*log, store);
    new NavigationButtons(store, *window);
}

void toggleMaximized(QWidget* window)
{
    if (window->isMaximized())
        window->showNormal();
    else
        window->showMaximized();
}

void buildWindowMenu(QMenu* menu, QWidget* window, MenuTarget& target)
{
    add(menu, QStringLiteral("Minimize"), QKeySequence(Qt::CTRL | Qt::Key_M), [window] { window->showMinimized(); });
    add(menu, QStringLiteral("Zoom"), {}, [window] { toggleMaximized(window); });
    menu->addSeparator();
    add(menu, QStringLiteral("Bring All to Front"), {}, [&target] { target.bringAllToFront(); });
}

} // namespace

void build(QMenuBar& bar, MenuTarget& target, RepositoryStore& store)
{
    QWidget* const window = bar.window();
    buildApplicationMenu(bar.addMenu(QStringLiteral("Plovik")), target);

    QMenu* const file = bar.addMenu(QStringLiteral("File"));
    add(file, QStringLiteral("Open Repository…"), QKeySequence(Qt::CTRL | Qt::Key_O),
        [&target] { target.openDocument(); });
    file->addSeparator();
    add(file, QStringLiteral("Close Window"), QKeySequence(Qt::CTRL | Qt::Key_W), [window] { window->close(); });

    buildEditMenu(bar.addMenu(QStringLiteral("Edit")), store);
    buildRepositoryMenu(bar.addMenu(QStringLiteral("Repository")), store);
    buildViewMenu(bar.addMenu(QStringLiteral("View")), window, store);
    buildWindowMenu(bar.addMenu(QStringLiteral("Window")), window, target);
}

} // namespace plovik::mainMenu
