// SPDX-License-Identifier: GPL-3.0-or-later
// Going to commits, back and forward, as one does it in a window.

#include "app/settings/Settings.h"
#include "app/store/RepositoryStore.h"
#include "app/ui/commands/MainMenu.h"
#include "app/ui/history/HistoryList.h"
#include "app/ui/window/RepositoryView.h"
#include "tests/app/GivenRunning.h"
#include "tests/app/NoTarget.h"
#include "tests/app/SettlingWorker.h"
#include "tests/app/ShownWidgets.h"
#include "tests/support/TestRepository.h"

#include <QCompleter>
#include <QLabel>
#include <QLineEdit>
#include <QMainWindow>
#include <QMenuBar>
#include <QPushButton>
#include <QtTest/QTest>

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace plovik {
namespace {

using test::entry;
using test::named;
using test::openDialog;

struct NavigationUi : testing::Test {
    NavigationUi()
    {
        std::string stream;
        for (int i = 0; i < 800; ++i) {
            const std::string line = "committer A <a@example.org> " + std::to_string(1'700'000'000 + i) + " +0000\n";
            stream += "commit refs/heads/main\n" + line + "data 1\nx\n";
        }
        repo.read({"fast-import", "--quiet"}, stream);
        repo.git({"branch", "old", "main~700"}).git({"tag", "-a", "-m", "note", "v1.0", "main~650"});
        window.setCentralWidget(view);
        mainMenu::build(*window.menuBar(), target, store);
        window.resize(1000, 700);
        window.show();
        store.snapshot().refresh(RefreshScope::full);
        EXPECT_TRUE(worker.settle());
    }
    ~NavigationUi() override
    {
        worker.settle();
        delete window.takeCentralWidget();
    }

    QAction* command(const QString& title) const
    {
        for (const QMenu* menu : window.menuBar()->findChildren<QMenu*>()) {
            if (QAction* const found = entry(*menu, title))
                return found;
        }
        return nullptr;
    }
    std::string hash(const char* revision) const { return repo.read({"rev-parse", revision}); }
    HistoryList* list() const { return view->findChild<HistoryList*>(); }
    bool showsSelected() const
    {
        const QModelIndexList selected = list()->selectionModel()->selectedIndexes();
        return selected.size() == 1 && list()->viewport()->rect().contains(list()->visualRect(selected.front()));
    }

    TestRepository repo;
    test::SettlingWorker worker;
    RepositoryStore store{repo.path(), worker};
    test::NoTarget target;
    QMainWindow window;
    RepositoryView* view = new RepositoryView(store);
};

TEST_F(NavigationUi, GoesToCommitsThatAreNamed)
{
    command(u"Go to Commit…"_s)->trigger();
    QDialog* sheet = openDialog(*view);
    ASSERT_TRUE(sheet);
    auto* name = named<QLineEdit>(*sheet, u"Commit or Ref"_s);
    auto* go = named<QPushButton>(*sheet, u"Go"_s);
    EXPECT_FALSE(go->isEnabled());
    name->setText(u"-f"_s);
    EXPECT_TRUE(named<QLabel>(*sheet, u"The name of a commit can't begin with “-”."_s));
    EXPECT_FALSE(go->isEnabled());

    for (const QString& wrong : {u"nothing"_s, u"main..HEAD"_s, u"^main"_s}) {
        name->setText(wrong);
        QTest::keyClick(name, Qt::Key_Return);
        ASSERT_TRUE(worker.settle());
        EXPECT_TRUE(sheet->isVisible()) << wrong.toStdString();
        EXPECT_TRUE(named<QLabel>(*sheet, u"“%1” is no commit, branch or tag of this repository."_s.arg(wrong)));
    }
    name->completer()->setCompletionPrefix(u"V1"_s);
    EXPECT_EQ(name->completer()->currentCompletion(), u"v1.0"_s);
    name->clear();
    QTest::keyClicks(name, u"v1.0-no"_s);
    QTest::keyClick(name, Qt::Key_Backspace);
    QTest::keyClick(name, Qt::Key_Backspace);
    QTest::keyClick(name, Qt::Key_Backspace);
    ASSERT_TRUE(name->completer()->popup()->isVisible());
    QTest::keyClick(name->completer()->popup(), Qt::Key_Return);
    ASSERT_TRUE(worker.settle());
    EXPECT_FALSE(openDialog(*view)) << "a whole name needs Return once";
    command(u"Go to Commit…"_s)->trigger();
    sheet = openDialog(*view);
    name = named<QLineEdit>(*sheet, u"Commit or Ref"_s);
    go = named<QPushButton>(*sheet, u"Go"_s);

    test::givenRunning(store, Verb::pull); // looking changes nothing
    name->setText(u" v1.0^{} "_s);
    go->click();
    ASSERT_TRUE(worker.settle());
    EXPECT_FALSE(openDialog(*view));
    EXPECT_EQ(store.window().selection.value(), SidebarItem::history());
    EXPECT_EQ(store.window().selectedCommit.value(), hash("main~650"));
    QApplication::processEvents();
    EXPECT_TRUE(showsSelected());
}

TEST_F(NavigationUi, ASheetThatWasEditedOrClosedIgnoresTheAnswer)
{
    store.window().showSheet(GoToCommitSheet{});
    auto* name = named<QLineEdit>(*openDialog(*view), u"Commit or Ref"_s);
    name->setText(u"main"_s);
    QTest::keyClick(name, Qt::Key_Return);
    name->setText(u"main~2"_s);
    ASSERT_TRUE(worker.settle());
    ASSERT_TRUE(openDialog(*view));
    QTest::keyClick(name, Qt::Key_Return);
    QTest::keyClick(name, Qt::Key_Escape);
    ASSERT_TRUE(worker.settle());
    EXPECT_EQ(store.window().selectedCommit.value(), std::nullopt);
}

TEST_F(NavigationUi, AShownCommitComesIntoSightThoughItIsSelectedAlready)
{
    // The list is made by this very step, from another view.
    store.history().showCommit(hash("main~400"));
    QApplication::processEvents();
    EXPECT_TRUE(showsSelected());
    list()->scrollToTop();
    EXPECT_FALSE(showsSelected());
    store.history().showCommit(hash("main~400"));
    EXPECT_TRUE(showsSelected());

    list()->scrollToBottom();
    store.window().select(SidebarItem::ref("refs/heads/old"));
    ASSERT_TRUE(worker.settle());
    QApplication::processEvents();
    EXPECT_EQ(store.window().selectedCommit.value(), hash("main~700"));
    EXPECT_TRUE(showsSelected());
    store.history().showCommit(std::string(40, '1'));
    ASSERT_TRUE(worker.settle());
    EXPECT_TRUE(named<QLabel>(*view, u"This repository has no commit 1111111."_s)->isVisible());
}

TEST_F(NavigationUi, MenuAndMouseGoBackAndForward)
{
    EXPECT_FALSE(command(u"Back"_s)->isEnabled());
    store.window().select(SidebarItem::history());
    list()->setFocus();
    EXPECT_EQ(store.window().selectedCommit.value(), hash("main")) << "chosen by nobody, so no step";
    QTest::mouseClick(list()->viewport(), Qt::LeftButton, {}, {300, 10 + 28});
    QTest::mouseClick(list()->viewport(), Qt::LeftButton, {}, {300, 10 + 3 * 28});
    // Held keys that move by pages are one step, too.
    for (int i = 0; i < 5; ++i)
        QTest::keyClick(list(), Qt::Key_PageDown);
    const auto end = store.window().selectedCommit.value();
    EXPECT_NE(end, hash("main~3"));

    QTest::mouseClick(list()->viewport(), Qt::BackButton, {}, {300, 10 + 28});
    EXPECT_EQ(store.window().selectedCommit.value(), hash("main~3"));
    command(u"Back"_s)->trigger();
    EXPECT_EQ(store.window().selectedCommit.value(), hash("main~1"));
    command(u"Back"_s)->trigger();
    EXPECT_EQ(store.window().selection.value(), SidebarItem::workingCopy());
    EXPECT_FALSE(command(u"Back"_s)->isEnabled());
    for (int i = 0; i < 3; ++i)
        QTest::mouseClick(view, Qt::ForwardButton);
    EXPECT_EQ(store.window().selectedCommit.value(), end);
    EXPECT_FALSE(command(u"Forward"_s)->isEnabled());
}

TEST_F(NavigationUi, SwitchesFollowTheSettings)
{
    QAction* sideBySide = command(u"Side by Side"_s);
    const bool before = sideBySide->isChecked();
    sideBySide->trigger();
    EXPECT_EQ(Settings::shared().value(settings::diffSideBySide), !before);
    Settings::shared().set(settings::diffSideBySide, before);
    EXPECT_EQ(sideBySide->isChecked(), before);
    EXPECT_NE(sideBySide->isCheckable(), command(u"Back"_s)->isCheckable());
}

} // namespace
} // namespace plovik
