// SPDX-License-Identifier: GPL-3.0-or-later
// Comparing states in a window.

#include "app/store/RepositoryStore.h"
#include "app/ui/commit/CommitFilesList.h"
#include "app/ui/compare/CommitsApartList.h"
#include "app/ui/compare/ComparisonView.h"
#include "app/ui/diff/DiffSectionView.h"
#include "app/ui/diff/DiffView.h"
#include "app/ui/history/HistoryList.h"
#include "app/ui/window/RepositoryView.h"
#include "tests/app/SettlingWorker.h"
#include "tests/app/ShownWidgets.h"
#include "tests/support/TestRepository.h"

#include <QAbstractButton>
#include <QCheckBox>
#include <QLabel>
#include <QMenu>
#include <QTabBar>
#include <QtTest/QTest>

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace plovik {
namespace {

using test::entry;
using test::named;

struct ComparisonTest : testing::Test {
    ComparisonTest()
    {
        repo.write("a", "1\n").commit("base").git({"checkout", "-q", "-b", "side"});
        repo.write("of side", "1\n").commit("on side").git({"checkout", "-q", "main"});
        repo.write("a", "2\n").commit("on main");
        view.resize(1100, 700);
        view.show();
        store.snapshot().refresh(RefreshScope::full);
        store.window().select(SidebarItem::history());
        EXPECT_TRUE(worker.settle());
    }
    ~ComparisonTest() override { worker.settle(); }

    HistoryList& list() const { return *view.findChild<HistoryList*>(); }
    ComparisonView& comparison() const { return *view.findChild<ComparisonView*>(); }
    std::string files()
    {
        EXPECT_TRUE(worker.settle());
        std::string found;
        for (const gitkit::CommitFile& file : comparison().findChild<CommitFilesList*>()->files())
            found += std::string(1, file.status) + file.path + ' ';
        return found;
    }
    void press(const QString& name) { named<QAbstractButton>(comparison(), name)->click(); }

    TestRepository repo;
    test::SettlingWorker worker;
    RepositoryStore store{repo.path(), worker};
    RepositoryView view{store};
};

TEST_F(ComparisonTest, TwoRowsAreSelectedAndComparedBothWaysAndEscapeGoesBack)
{
    list().setCurrentIndex(list().model()->index(0, 0));
    QTest::keyClick(&list(), Qt::Key_Down, Qt::ShiftModifier);
    EXPECT_EQ(list().selectionModel()->selectedIndexes().size(), 2);
    EXPECT_EQ(store.window().selectedCommit.value(), repo.read({"rev-parse", "side"})) << "the one reached last";
    repo.git({"commit", "-q", "--allow-empty", "-m", "newer"});
    store.snapshot().refresh(RefreshScope::full);
    ASSERT_TRUE(worker.settle());
    EXPECT_EQ(list().selectionModel()->selectedIndexes().size(), 2) << "also on the page that follows";

    entry(*list().makeContextMenu(), u"Compare Both"_s)->trigger();
    EXPECT_EQ(files(), "Ma Dof side ");
    EXPECT_TRUE(comparison().isVisible());
    EXPECT_TRUE(comparison().isAncestorOf(view.focusWidget()));
    press(u"Swap"_s);
    EXPECT_EQ(files(), "Ma Aof side ");
    press(u"Since They Parted"_s);
    EXPECT_EQ(files(), "Aof side ");
    QTest::keyClick(comparison().findChild<CommitFilesList*>(), Qt::Key_Escape);
    EXPECT_FALSE(store.window().compared.value());
    EXPECT_FALSE(comparison().isVisible());
    EXPECT_TRUE(list().isVisible());
}

TEST_F(ComparisonTest, CommitsHaveTheirSideAndLeadToTheHistory)
{
    const auto hash = [&](const char* name) { return repo.read({"rev-parse", name}); };
    store.window().compare({.from = {hash("main"), "main"}, .to = {hash("side"), "side"}});
    ASSERT_TRUE(worker.settle());
    comparison().findChild<QTabBar*>()->setCurrentIndex(1);
    ASSERT_TRUE(worker.settle());
    auto* const commits = comparison().findChild<CommitsApartList*>();
    QStringList rows;
    for (int row = 0; row < commits->model()->rowCount(); ++row)
        rows += commits->model()->index(row, 0).data(Qt::AccessibleTextRole).toString().section(u',', 0, 1);
    EXPECT_EQ(rows, (QStringList{u"on main, only in main"_s, u"on side, only in side"_s}));
    commits->setCurrentIndex(commits->model()->index(1, 0));
    QTest::keyClick(commits, Qt::Key_Return);
    ASSERT_TRUE(worker.settle());
    EXPECT_FALSE(store.window().compared.value());
    EXPECT_EQ(store.window().selectedCommit.value(), hash("side"));
}

TEST_F(ComparisonTest, TheWorkingCopyIsFollowedAndAFileIsTakenFromTheOtherState)
{
    repo.write("a", "3\n");
    entry(*list().makeContextMenu(), u"Compare"_s)->menu()->actions().at(1)->trigger();
    EXPECT_EQ(files(), "Ma ");
    repo.write("a", "4\n");
    store.snapshot().refresh(RefreshScope::status);
    EXPECT_EQ(files(), "Ma ");
    const auto& sections = comparison().findChild<DiffView*>()->sections();
    ASSERT_FALSE(sections.empty());
    EXPECT_TRUE(sections.front()->controller().diff().plainText().contains(u"4"_s));
    entry(*comparison().makeContextMenu(), u"Take into the Working Copy"_s)->trigger();
    EXPECT_EQ(files(), "");
    EXPECT_TRUE(named<QLabel>(view, u"No Files Differ"_s));
    EXPECT_EQ(repo.read({"status", "--porcelain"}), "");
    store.undo().undo();
    EXPECT_EQ(files(), "Ma ");
    EXPECT_EQ(repo.read({"hash-object", "a"}), repo.read({"hash-object", "--stdin"}, "4\n"));
}

} // namespace
} // namespace plovik
