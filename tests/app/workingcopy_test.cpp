// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/store/RepositoryStore.h"
#include "app/ui/workingcopy/ChangedFilesMenu.h"
#include "app/ui/workingcopy/WorkingCopyView.h"
#include "tests/app/SettlingWorker.h"
#include "tests/app/ShownWidgets.h"
#include "tests/support/TestRepository.h"

#include <QAbstractButton>
#include <QAccessible>
#include <QApplication>
#include <QClipboard>
#include <QLabel>
#include <QListView>
#include <QMenu>
#include <QTest>

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace plovik {
namespace {

class WorkingCopy : public testing::Test {
protected:
    WorkingCopy()
    {
        repo.write("a.txt", "1\n").write("lib/b.txt", "1\n").write("lib/c.txt", "1\n").write("moved.txt", "1\n2\n3\n");
        repo.commit("one");
        repo.write("a.txt", "2\n").write("lib/b.txt", "2\n").write("lib/c.txt", "2\n");
        repo.git({"mv", "moved.txt", "new name.txt"}).write("zeta.txt", "new\n");
        view.resize(1000, 700);
        view.show();
        view.activateWindow();
        refresh();
    }

    ~WorkingCopy() override { worker.settle(); }

    void refresh()
    {
        store.snapshot().refresh(RefreshScope::full);
        ASSERT_TRUE(worker.settle());
    }

    QListView& list() const { return *view.list(); }
    QModelIndex row(const QString& path) const
    {
        for (int number = 0; number < list().model()->rowCount(); ++number) {
            if (const QModelIndex index = list().model()->index(number, 0); index.data().toString() == path)
                return index;
        }
        return {};
    }
    Qt::CheckState shown(const QString& path) const
    {
        return row(path).data(Qt::CheckStateRole).value<Qt::CheckState>();
    }
    void clickCheckBox(const QString& path)
    {
        const QRect area = list().visualRect(row(path));
        QTest::mouseClick(list().viewport(), Qt::LeftButton, {}, QPoint(area.left() + 22, area.center().y()));
    }
    void select(const QStringList& paths)
    {
        list().selectionModel()->clearSelection();
        for (const QString& path : paths)
            list().selectionModel()->setCurrentIndex(row(path), QItemSelectionModel::Select);
    }
    QString staged() const { return QString::fromStdString(repo.read({"diff", "--cached", "--name-only"})); }
    QAbstractButton* button(const QString& name) const
    {
        for (auto* found : view.findChildren<QAbstractButton*>()) {
            if (found->accessibleName() == name)
                return found;
        }
        return nullptr;
    }
    bool says(const QString& text) const
    {
        const auto labels = view.findChildren<QLabel*>();
        return std::any_of(labels.begin(), labels.end(), [&](const QLabel* label) { return label->text() == text; });
    }
    QStringList menuOf(const QStringList& paths)
    {
        select(paths);
        const std::unique_ptr<QMenu> menu(
            makeChangedFilesMenu(store, store.staging().selectedFiles(), u"Open in Kate"_s, nullptr));
        QStringList titles;
        for (const QAction* action : menu->actions())
            titles.append(action->isSeparator() ? u"-"_s : action->text());
        return titles;
    }

    StoreServices services()
    {
        StoreServices made;
        made.openInEditor = [this](const StoreServices::Files& files, const StoreServices::Failed&) { opened = files; };
        return made;
    }

    TestRepository repo;
    StoreServices::Files opened;
    test::SettlingWorker worker;
    RepositoryStore store{repo.path(), worker, services()};
    WorkingCopyView view{store};
};

TEST_F(WorkingCopy, ACheckBoxStagesAtOnceAndLeavesTheSelection)
{
    select({u"zeta.txt"_s});
    clickCheckBox(u"a.txt"_s);
    EXPECT_EQ(shown(u"a.txt"_s), Qt::Checked); // before git has answered
    EXPECT_EQ(store.window().selectedPaths.value(), std::set<std::string>{"zeta.txt"});
    ASSERT_TRUE(worker.settle());
    EXPECT_EQ(staged(), u"a.txt\nnew name.txt"_s);

    // Of a selected row, it acts on the selection; every click of a double click counts.
    select({u"a.txt"_s, u"lib/b.txt"_s});
    clickCheckBox(u"lib/b.txt"_s);
    EXPECT_EQ(shown(u"lib/b.txt"_s), Qt::Checked);
    const QRect area = list().visualRect(row(u"lib/b.txt"_s));
    const QPoint box(area.left() + 22, area.center().y());
    QTest::mouseDClick(list().viewport(), Qt::LeftButton, {}, box);
    QTest::mouseRelease(list().viewport(), Qt::LeftButton, {}, box);
    EXPECT_EQ(shown(u"a.txt"_s), Qt::Unchecked);
    EXPECT_TRUE(opened.empty());
    ASSERT_TRUE(worker.settle());
    EXPECT_EQ(staged(), u"new name.txt"_s);
}

TEST_F(WorkingCopy, DoesWithKeysWhatTheMouseCan)
{
    list().setFocus();
    select({u"a.txt"_s, u"lib/b.txt"_s, u"zeta.txt"_s});
    QTest::keyClick(&list(), Qt::Key_Space);
    EXPECT_EQ(shown(u"zeta.txt"_s), Qt::Checked);
    ASSERT_TRUE(worker.settle());
    EXPECT_EQ(staged(), u"a.txt\nlib/b.txt\nnew name.txt\nzeta.txt"_s);
    EXPECT_TRUE(list().hasFocus());

    QTest::keyClick(&list(), Qt::Key_Return);
    EXPECT_EQ(opened, (std::vector{repo / "a.txt", repo / "lib/b.txt", repo / "zeta.txt"}));
    opened.clear();
    const QPoint onName = list().visualRect(row(u"lib/c.txt"_s)).center();
    QTest::mouseClick(list().viewport(), Qt::LeftButton, {}, onName);
    QTest::mouseDClick(list().viewport(), Qt::LeftButton, {}, onName);
    EXPECT_EQ(opened, std::vector{repo / "lib/c.txt"});
    QTest::keyClick(&list(), Qt::Key_Delete);
    ASSERT_TRUE(worker.settle());
    ASSERT_TRUE(store.window().confirmation.value());
    EXPECT_EQ(store.window().confirmation.value()->title, u"Discard changes in “lib/c.txt”?"_s);

    QTest::keyClick(&list(), Qt::Key_A, Qt::ControlModifier);
    EXPECT_EQ(store.window().selectedPaths.value().size(), 5U);
    QTest::keyClick(&list(), Qt::Key_Z);
    EXPECT_EQ(store.window().selectedPaths.value(), std::set<std::string>{"zeta.txt"});
    list().keyboardSearch(u"C."_s); // goes on with the z, which no name does
    EXPECT_EQ(list().currentIndex(), row(u"zeta.txt"_s));
}

TEST_F(WorkingCopy, FindsAFileByItsNameAndByItsPath)
{
    list().keyboardSearch(u"b"_s);
    EXPECT_EQ(list().currentIndex(), row(u"lib/b.txt"_s));
    list().keyboardSearch(u"x"_s);
    EXPECT_EQ(list().currentIndex(), row(u"lib/b.txt"_s));
    const int interval = QApplication::keyboardInputInterval();
    QApplication::setKeyboardInputInterval(0);
    ASSERT_TRUE(QTest::qWaitFor([clock = QDeadlineTimer(2)] { return clock.hasExpired(); }));
    list().keyboardSearch(u"LIB/C"_s);
    EXPECT_EQ(list().currentIndex(), row(u"lib/c.txt"_s));
    QApplication::setKeyboardInputInterval(interval);
}

TEST_F(WorkingCopy, TellsItsNamesAndStatesToAssistiveTechnology)
{
    repo.git({"add", "a.txt"}).write("a.txt", "3\n");
    refresh();
    QAccessibleInterface* accessible = QAccessible::queryAccessibleInterface(&list());
    ASSERT_NE(accessible, nullptr);
    EXPECT_EQ(accessible->text(QAccessible::Name), u"Changed Files"_s);
    ASSERT_EQ(accessible->childCount(), 5);
    const auto child = [&](const QString& path) { return accessible->child(row(path).row()); };
    EXPECT_EQ(child(u"new name.txt"_s)->text(QAccessible::Name), u"new name.txt"_s);
    EXPECT_TRUE(child(u"new name.txt"_s)->state().checked);
    EXPECT_FALSE(child(u"zeta.txt"_s)->state().checked);
    EXPECT_EQ(shown(u"a.txt"_s), Qt::PartiallyChecked);
    EXPECT_EQ(row(u"a.txt"_s).data(Qt::AccessibleDescriptionRole).toString(), u"Modified, partially staged"_s);
    EXPECT_EQ(row(u"new name.txt"_s).data(Qt::ToolTipRole).toString(), u"moved.txt → new name.txt\nRenamed, staged"_s);
}

TEST_F(WorkingCopy, OffersWhatFitsTheFiles)
{
    const QStringList rest{u"Stash…"_s,
                           u"Ignore"_s,
                           u"-"_s,
                           u"Open in Kate"_s,
                           u"Reveal in File Browser"_s,
                           u"Open in Difftool"_s,
                           u"Show Blame"_s,
                           u"Show File History"_s,
                           u"Copy Path"_s};
    EXPECT_EQ(menuOf({u"zeta.txt"_s}), QStringList({u"Stage"_s, u"Delete File…"_s}) + rest);
    EXPECT_EQ(menuOf({u"new name.txt"_s}), QStringList({u"Unstage"_s, u"Discard Changes…"_s}) + rest);
    EXPECT_EQ(menuOf({u"a.txt"_s, u"new name.txt"_s}),
              QStringList({u"Stage"_s, u"Unstage"_s, u"Discard Changes…"_s}) + rest);

    const std::unique_ptr<QMenu> menu(
        makeChangedFilesMenu(store, store.staging().selectedFiles(), u"Open in Kate"_s, nullptr));
    menu->actions().back()->trigger();
    EXPECT_EQ(QGuiApplication::clipboard()->text(), u"a.txt\nnew name.txt"_s);
}

TEST_F(WorkingCopy, AsksNothingThatItWouldRefuseThen)
{
    int status = 0;
    repo.git({"init", "-q", "part"});
    runPlainGit(repo / "part", {"commit", "-q", "--allow-empty", "-m", "one"}, status);
    repo.git({"add", "part"}).git({"commit", "-q", "-m", "part", "part"});
    runPlainGit(repo / "part", {"commit", "-q", "--allow-empty", "-m", "two"}, status);
    refresh();
    const QString reason = u"“part” is a submodule: its changes are discarded in its own window."_s;
    select({u"part"_s});
    const std::unique_ptr<QMenu> menu(makeChangedFilesMenu(store, store.staging().selectedFiles(), {}, nullptr));
    const QAction* const discard = test::entry(*menu, u"Discard Changes…"_s);
    ASSERT_TRUE(discard);
    EXPECT_FALSE(discard->isEnabled());
    EXPECT_EQ(discard->toolTip(), reason);
    QTest::keyClick(&list(), Qt::Key_Delete);
    EXPECT_FALSE(store.window().confirmation.value());
    EXPECT_EQ(store.window().notice.value(), reason);
}

TEST_F(WorkingCopy, StagesAndUnstagesAllWhileThereIsSomethingTo)
{
    EXPECT_TRUE(says(u"1 of 5 staged"_s));
    QAbstractButton* stageAll = button(u"Stage All"_s);
    QAbstractButton* unstageAll = button(u"Unstage All"_s);
    stageAll->click();
    EXPECT_TRUE(says(u"5 of 5 staged"_s));
    EXPECT_FALSE(stageAll->isEnabled());
    ASSERT_TRUE(worker.settle());
    EXPECT_EQ(store.snapshot().status.value().stagedCount(), 5);
    unstageAll->click();
    EXPECT_FALSE(unstageAll->isEnabled());
    ASSERT_TRUE(worker.settle());
    EXPECT_EQ(staged(), QString());
    EXPECT_EQ(store.snapshot().status.value().stagedCount(), 0);
    EXPECT_TRUE(stageAll->isEnabled());
}

TEST_F(WorkingCopy, StaysNearARowThatIsGone)
{
    select({u"lib/b.txt"_s});
    repo.git({"commit", "-q", "-m", "b", "lib/b.txt"});
    refresh();
    EXPECT_EQ(list().currentIndex(), row(u"lib/c.txt"_s));
    EXPECT_TRUE(store.window().selectedPaths.value().empty());
    // The keyboard goes on from there.
    QTest::keyClick(&list(), Qt::Key_Space);
    EXPECT_EQ(shown(u"lib/c.txt"_s), Qt::Checked);
}

} // namespace
} // namespace plovik
