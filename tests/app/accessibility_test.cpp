// SPDX-License-Identifier: GPL-3.0-or-later
// What assistive technology sees of every window: each node that can be used or read has a name, and the right role.

#include "app/shell/AboutDialog.h"
#include "app/store/RepositoryStore.h"
#include "app/ui/commands/CommandPalette.h"
#include "app/ui/commands/MainMenu.h"
#include "app/ui/dialogs/MessageDialog.h"
#include "app/ui/dialogs/ShortcutsDialog.h"
#include "app/ui/welcome/CloneDialog.h"
#include "app/ui/welcome/CreateDialog.h"
#include "app/ui/widgets/LabelAccessible.h"
#include "app/ui/widgets/MenuAccessible.h"
#include "app/ui/window/RepositoryView.h"
#include "tests/app/NoTarget.h"
#include "tests/app/SettlingWorker.h"
#include "tests/app/ShownWidgets.h"
#include "tests/support/Given.h"
#include "tests/support/TestRepository.h"

#include <QAccessible>
#include <QLabel>
#include <QMainWindow>
#include <QMenuBar>
#include <QTest>

#include <gtest/gtest.h>

#include <set>

using namespace Qt::StringLiterals;

namespace plovik {
namespace {

/// Collects what a screen reader could say nothing about.
class Walk {
public:
    std::string through(QWidget& window)
    {
        node(QAccessible::queryAccessibleInterface(&window), {});
        std::string lines;
        for (const std::string& each : mute_)
            lines += "\n" + each;
        return lines;
    }

    int nodes = 0;
    int named = 0;

private:
    static bool isLayout(QAccessible::Role role)
    {
        return role == QAccessible::Client || role == QAccessible::Pane || role == QAccessible::Splitter ||
               role == QAccessible::LayeredPane || role == QAccessible::NoRole || role == QAccessible::Grouping;
    }

    /// Returns whether a node has nothing to say: bars, lines and empty space.
    static bool isFurniture(const QAccessibleInterface& node)
    {
        const QAccessible::Role role = node.role();
        return role == QAccessible::ScrollBar || role == QAccessible::Separator || role == QAccessible::Grip ||
               (isLayout(role) && !node.state().focusable);
    }

    void node(QAccessibleInterface* node, const QString& path)
    {
        if (!node || !node->isValid() || node->state().invisible)
            return;
        ++nodes;
        const QString name = node->text(QAccessible::Name);
        const QString value = node->text(QAccessible::Value);
        named += name.isEmpty() ? 0 : 1;
        const char* kind = node->object() ? node->object()->metaObject()->className() : "row";
        const QString here = path + u'/' + (name.isEmpty() ? QString::fromLatin1(kind) : name.left(40));
        if (name.trimmed().isEmpty() && value.trimmed().isEmpty() && !isFurniture(*node) && !node->rect().isEmpty())
            mute_.insert(u"%1: %2, role %3"_s.arg(here, QString::fromLatin1(kind)).arg(node->role()).toStdString());
        // Scroll bars and their parts speak for themselves, and long lists have rows that are all alike.
        constexpr int mostChildren = 60;
        if (node->role() == QAccessible::ScrollBar)
            return;
        for (int index = 0; index < std::min(node->childCount(), mostChildren); ++index)
            this->node(node->child(index), here);
    }

    std::set<std::string> mute_;
};

class AccessibilityTest : public testing::Test {
protected:
    AccessibilityTest()
    {
        repo.write("file.txt", "1\n2\n3\n").write("dir/other.txt", "1\n").commit("one");
        repo.write("file.txt", "1\n2\n3\n4\n").commit("two\n\nBody of the message.");
        repo.git({"branch", "side"}).git({"tag", "v1"});
        repo.write("file.txt", "stashed\n").git({"stash", "-q"});
        repo.write("file.txt", "1\n2\n3\n4\n5\n").write("new.txt", "new\n").git({"add", "new.txt"});
        window.setCentralWidget(view = new RepositoryView(store));
        mainMenu::build(*window.menuBar(), target, store);
        window.setWindowTitle(u"repository"_s);
        window.resize(1240, 780);
        window.show();
        store.snapshot().refresh(RefreshScope::full);
        EXPECT_TRUE(worker.settle());
    }
    ~AccessibilityTest() override
    {
        worker.settle();
        delete window.takeCentralWidget();
    }

    void look(const char* place)
    {
        EXPECT_TRUE(worker.settle());
        QApplication::processEvents();
        Walk walk;
        EXPECT_EQ(walk.through(window), "") << place;
        EXPECT_GT(walk.named, 30) << place;
    }

    TestRepository repo;
    test::SettlingWorker worker;
    RepositoryStore store{repo.path(), worker};
    test::NoTarget target;
    QMainWindow window;
    RepositoryView* view = nullptr;
};

TEST_F(AccessibilityTest, EveryViewOfAWindowIsNamed)
{
    store.window().selectPaths({"file.txt"});
    look("working copy");
    store.draft().setAmend(true);
    look("amending");
    store.window().select(SidebarItem::history());
    look("history");
    store.window().select(SidebarItem::stashes());
    look("stashes");
    store.window().select(SidebarItem::timeline());
    EXPECT_TRUE(worker.settle());
    TimelineRow row;
    row.title = u"Merge of “side”"_s;
    row.step.after.emplace();
    given(store.undo().timeline, std::make_shared<const std::vector<TimelineRow>>(1, row));
    given(store.undo().said, std::optional(Undo::Said{1, u"Dropped stash@{0}."_s, Undo::Said::Offer::undo}));
    given(store.undo().interrupted, u"Merge of “side”"_s);
    look("timeline");
    given(store.undo().interrupted, QString());
    store.window().inspect({"file.txt", std::nullopt, InspectedFile::Tab::blame});
    look("blame");
    store.window().inspect({"file.txt", repo.head(), InspectedFile::Tab::history});
    look("file history");
    store.window().closeInspector();
    store.window().showCommandLog(true);
    look("command log");
}

TEST_F(AccessibilityTest, NamedLabelsTellTheirText)
{
    installLabelAccessibility();
    QLabel label(u"<b>Ada</b> &lt;ada@example.org&gt;"_s);
    QAccessibleInterface* const node = QAccessible::queryAccessibleInterface(&label);
    EXPECT_EQ(node->text(QAccessible::Name), u"Ada <ada@example.org>"_s);
    label.setAccessibleName(u"Author"_s);
    EXPECT_EQ(node->text(QAccessible::Name), u"Author"_s);
    EXPECT_EQ(node->text(QAccessible::Description), u"Ada <ada@example.org>"_s);
    EXPECT_EQ(node->role(), QAccessible::StaticText);
}

TEST_F(AccessibilityTest, EntriesOfMenusTellTheirKeysApartFromTheirNames)
{
    installMenuAccessibility();
    QStringList names;
    for (QMenu* const menu : window.menuBar()->findChildren<QMenu*>()) {
        Q_EMIT menu->aboutToShow();
        QAccessibleInterface* const read = QAccessible::queryAccessibleInterface(menu);
        for (int index = 0; index < read->childCount(); ++index) {
            QAccessibleInterface* const entry = read->child(index);
            EXPECT_FALSE(entry->text(QAccessible::Name).contains(u'\t'));
            if (entry->text(QAccessible::Name) != u"Discard Changes…"_s)
                continue;
            names << entry->text(QAccessible::Accelerator);
            EXPECT_EQ(entry->parent(), read);
            EXPECT_EQ(entry->role(), QAccessible::MenuItem);
        }
        Q_EMIT menu->aboutToHide();
    }
    EXPECT_EQ(names, QStringList{u"Del"_s});
}

TEST_F(AccessibilityTest, EveryDialogIsNamed)
{
    for (const SheetKind& sheet : {SheetKind(NewBranchSheet{}), SheetKind(NewTagSheet{repo.head()}),
                                   SheetKind(StashSheet{}), SheetKind(GoToCommitSheet{}), SheetKind(DiscardedSheet{})})
    {
        store.window().showSheet(sheet);
        EXPECT_TRUE(worker.settle());
        QDialog* const dialog = test::openDialog(window);
        ASSERT_TRUE(dialog);
        EXPECT_EQ(Walk().through(*dialog), "") << sheet.index();
        EXPECT_EQ(QAccessible::queryAccessibleInterface(dialog)->role(), QAccessible::Dialog);
        store.window().closeSheet();
    }
    store.staging().confirmDiscard(store.snapshot().status.value().files);
    EXPECT_TRUE(worker.settle());
    QDialog* const question = test::openDialog(window);
    ASSERT_TRUE(question);
    EXPECT_EQ(Walk().through(*question), "") << "question";
    store.window().dismissQuestion();

    const auto look = [](QDialog* dialog) {
        dialog->show();
        QApplication::processEvents();
        EXPECT_EQ(Walk().through(*dialog), "") << dialog->windowTitle().toStdString();
        delete dialog;
    };
    look(new AboutDialog(&window));
    look(new CloneDialog({}, nullptr));
    look(new CreateDialog(nullptr));
    look(new ShortcutsDialog(&window));
    look(new MessageDialog(u"Title"_s, u"What happened."_s, &window));
    showCommandPalette(*window.menuBar(), target, store);
    EXPECT_TRUE(worker.settle());
    QWidget* const palette = QApplication::activePopupWidget();
    ASSERT_TRUE(palette);
    EXPECT_EQ(Walk().through(*palette), "") << "palette";
    palette->close();
}

TEST_F(AccessibilityTest, PanesAreReachedByKeyAndHaveTheirRoles)
{
    const auto role = [this](const char* name) {
        auto* const widget = test::named(window, QString::fromLatin1(name));
        return widget ? QAccessible::queryAccessibleInterface(widget)->role() : QAccessible::NoRole;
    };
    EXPECT_EQ(role("Sidebar"), QAccessible::Tree);
    EXPECT_EQ(role("Changed Files"), QAccessible::List);
    EXPECT_EQ(role("Commit Body"), QAccessible::EditableText);
    EXPECT_EQ(role("Divider"), QAccessible::Splitter);
    store.window().select(SidebarItem::history());
    EXPECT_TRUE(worker.settle());
    QApplication::processEvents();
    EXPECT_EQ(role("History"), QAccessible::List);

    window.activateWindow();
    QApplication::processEvents();
    view->setFocus();
    ASSERT_TRUE(QApplication::focusWidget());
    EXPECT_EQ(QApplication::focusWidget()->accessibleName(), u"Sidebar"_s);
    store.window().goTo(SidebarItem::workingCopy());
    EXPECT_EQ(QApplication::focusWidget()->accessibleName(), u"Changed Files"_s)
        << "a key that names the view goes there";
    store.window().goTo(SidebarItem::history());
    EXPECT_EQ(QApplication::focusWidget()->accessibleName(), u"History"_s);
    view->setFocus();

    QStringList visited;
    for (int step = 0; step < 6; ++step) {
        visited << QApplication::focusWidget()->accessibleName();
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_F6);
    }
    EXPECT_EQ(visited.first(), u"Sidebar"_s);
    EXPECT_TRUE(visited.contains(u"History"_s)) << visited.join(u", "_s).toStdString();
    EXPECT_TRUE(visited.contains(u"Commit Files"_s)) << visited.join(u", "_s).toStdString();
    const QString last = QApplication::focusWidget()->accessibleName();
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_F6, Qt::ShiftModifier);
    EXPECT_EQ(QApplication::focusWidget()->accessibleName(), visited.last()) << "and back from " << last.toStdString();
}

} // namespace
} // namespace plovik
