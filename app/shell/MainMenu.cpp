#include "app/shell/MainMenu.h"

#include <QAction>
#include <QApplication>
#include <QMenu>
#include <QMenuBar>
#include <QMetaMethod>
#include <QWidget>

#include <functional>

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

/// An item whose command this version does not have.
void addUnavailable(QMenu* menu, const QString& title, const QKeySequence& key = {})
{
    add(menu, title, key, [] {})->setEnabled(false);
}

bool focusOffers(const char* slot)
{
    const QWidget* const focus = QApplication::focusWidget();
    return focus && focus->metaObject()->indexOfMethod(QMetaObject::normalizedSignature(slot)) >= 0;
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
    addUnavailable(menu, QStringLiteral("Check for Updates…"));
    menu->addSeparator();
    addUnavailable(menu, QStringLiteral("Settings…"), QKeySequence(Qt::CTRL | Qt::Key_Comma));
    menu->addSeparator();
    add(menu, QStringLiteral("Hide Plovik"), QKeySequence(Qt::CTRL | Qt::Key_H), [&target] { target.hideAll(); });
    add(menu, QStringLiteral("Show All"), {}, [&target] { target.showAll(); });
    menu->addSeparator();
    add(menu, QStringLiteral("Quit Plovik"), QKeySequence(Qt::CTRL | Qt::Key_Q), [&target] { target.quit(); });
}

void buildEditMenu(QMenu* menu)
{
    addEditing(menu, QStringLiteral("Undo"), QKeySequence(Qt::CTRL | Qt::Key_Z), "undo()");
    addEditing(menu, QStringLiteral("Redo"), QKeySequence(Qt::CTRL | Qt::SHIFT | Qt::Key_Z), "redo()");
    menu->addSeparator();
    addEditing(menu, QStringLiteral("Cut"), QKeySequence(Qt::CTRL | Qt::Key_X), "cut()");
    addEditing(menu, QStringLiteral("Copy"), QKeySequence(Qt::CTRL | Qt::Key_C), "copy()");
    addEditing(menu, QStringLiteral("Paste"), QKeySequence(Qt::CTRL | Qt::Key_V), "paste()");
    addEditing(menu, QStringLiteral("Select All"), QKeySequence(Qt::CTRL | Qt::Key_A), "selectAll()");
}

void buildRepositoryMenu(QMenu* menu, MenuTarget& target)
{
    constexpr auto shifted = Qt::CTRL | Qt::SHIFT;
    add(menu, QStringLiteral("Working Copy"), QKeySequence(Qt::CTRL | Qt::Key_1),
        [&target] { target.showWorkingCopy(); });
    add(menu, QStringLiteral("History"), QKeySequence(Qt::CTRL | Qt::Key_2), [&target] { target.showHistory(); });
    add(menu, QStringLiteral("Stashes"), QKeySequence(Qt::CTRL | Qt::Key_3), [&target] { target.showStashes(); });
    menu->addSeparator();
    add(menu, QStringLiteral("Refresh"), QKeySequence(Qt::CTRL | Qt::Key_R), [&target] { target.refreshRepository(); });
    addUnavailable(menu, QStringLiteral("Fetch"), QKeySequence(shifted | Qt::Key_F));
    addUnavailable(menu, QStringLiteral("Pull"), QKeySequence(shifted | Qt::Key_P));
    // P is Pull's.
    addUnavailable(menu, QStringLiteral("Push"), QKeySequence(shifted | Qt::Key_U));
    menu->addSeparator();
    addUnavailable(menu, QStringLiteral("New Branch…"), QKeySequence(shifted | Qt::Key_B));
    addUnavailable(menu, QStringLiteral("Stash Changes…"), QKeySequence(shifted | Qt::Key_S));
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

void build(QMenuBar& bar, MenuTarget& target)
{
    QWidget* const window = bar.window();
    buildApplicationMenu(bar.addMenu(QStringLiteral("Plovik")), target);

    QMenu* const file = bar.addMenu(QStringLiteral("File"));
    add(file, QStringLiteral("Open Repository…"), QKeySequence(Qt::CTRL | Qt::Key_O),
        [&target] { target.openDocument(); });
    file->addSeparator();
    add(file, QStringLiteral("Close Window"), QKeySequence(Qt::CTRL | Qt::Key_W), [window] { window->close(); });

    buildEditMenu(bar.addMenu(QStringLiteral("Edit")));
    buildRepositoryMenu(bar.addMenu(QStringLiteral("Repository")), target);
    buildWindowMenu(bar.addMenu(QStringLiteral("Window")), window, target);
}

} // namespace plovik::mainMenu
