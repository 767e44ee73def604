// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/store/RepositoryStore.h"
#include "app/ui/merge/MergeColumns.h"
#include "app/ui/merge/MergeEditor.h"
#include "app/ui/merge/MergePane.h"
#include "app/ui/merge/MergeView.h"
#include "app/ui/workingcopy/WorkingDetail.h"
#include "tests/app/SettlingWorker.h"
#include "tests/app/ShownWidgets.h"
#include "tests/support/TestRepository.h"
#include "tests/support/WholeState.h"

#include <QTest>

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace plovik {
namespace {

struct MergePaneTest : testing::Test {
    MergePaneTest()
    {
        repo.write("a", "top\n1\nend\n").write("b", "1\n").commit("base").git({"checkout", "-q", "-b", "topic"});
        repo.write("a", "top\nright\nend\n").write("b", "right\n").commit("theirs").git({"checkout", "-q", "main"});
        repo.write("a", "top\nleft\nend\n").write("b", "left\n").commit("ours");
        int status = 0;
        runPlainGit(repo.path(), {"merge", "topic"}, status);
        detail.resize(900, 600);
        detail.show();
        load();
        select("a");
        EXPECT_TRUE(test::waitUntil([this] { return isMerge() && view().undecidedCount() == 1; }));
    }
    ~MergePaneTest() override { settle(); }

    void settle()
    {
        for (int round = 0; round < 3; ++round) { // one reading leads to the next
            EXPECT_TRUE(worker.settle());
            QCoreApplication::processEvents();
        }
    }
    void load()
    {
        store.snapshot().refresh(RefreshScope::full);
        settle();
    }
    void select(const std::string& path)
    {
        store.window().selectPaths({path});
        settle();
    }
    MergeView& view() { return *detail.merge()->view(); }
    bool isMerge() const { return detail.currentWidget() == detail.merge(); }
    void choose(gitkit::MergeChoice choice)
    {
        view().editor()->choose(*view().columns()->current(), choice);
        Q_EMIT view().resultSettled();
        settle();
    }
    std::string file(const char* name) const { return bytesAt(repo / name); }
    std::string unmerged() { return repo.read({"diff", "--name-only", "--diff-filter=U"}); }

    TestRepository repo;
    test::SettlingWorker worker;
    RepositoryStore store{repo.path(), worker};
    WorkingDetail detail{store};
};

TEST_F(MergePaneTest, KeepsWhatIsDecidedInTheFileAndStagesItAtTheEnd)
{
    ASSERT_TRUE(isMerge());
    EXPECT_EQ(view().undecidedCount(), 1);
    view().editor()->moveCursor(QTextCursor::Start);
    QTest::keyClicks(view().editor(), u"new"_s);
    QTest::keyClick(view().editor(), Qt::Key_Return);
    Q_EMIT view().resultSettled();
    settle();
    EXPECT_EQ(file("a").substr(0, 20), "new\ntop\n<<<<<<< main");
    EXPECT_EQ(unmerged(), "a\nb");
    load(); // the file has changed, but it was changed here
    EXPECT_EQ(view().undecidedCount(), 1);
    EXPECT_TRUE(view().editor()->canUndo());

    choose(gitkit::MergeChoice::right);
    EXPECT_EQ(file("a"), "new\ntop\nright\nend\n");
    Q_EMIT view().resolveRequested();
    settle();
    EXPECT_EQ(unmerged(), "b");
    EXPECT_EQ(repo.read({"show", ":a"}), "new\ntop\nright\nend");
    load();
    EXPECT_FALSE(isMerge()) << "what is staged is a change like others";
}

TEST_F(MergePaneTest, GoesOnWhereAnotherWindowHasStopped)
{
    choose(gitkit::MergeChoice::leftThenRight);
    WorkingDetail second(store);
    second.resize(900, 600);
    second.show();
    load();
    EXPECT_EQ(second.merge()->view()->undecidedCount(), 0);
    EXPECT_EQ(second.merge()->view()->bytes({}), "top\nleft\nright\nend\n");
}

TEST_F(MergePaneTest, WritesNothingOverWhatWasWrittenElsewhere)
{
    view().editor()->moveCursor(QTextCursor::Start);
    QTest::keyClicks(view().editor(), u"mine "_s);
    repo.write("a", "top\nelsewhere\nend\n");
    Q_EMIT view().resultSettled();
    settle();
    load();
    EXPECT_EQ(file("a"), "top\nelsewhere\nend\n");
    EXPECT_EQ(view().bytes({}), "top\nelsewhere\nend\n");
    view().editor()->undo();
    EXPECT_EQ(view().editor()->toPlainText().left(9), u"mine top\n"_s) << "what was written here is not lost";
    Q_EMIT view().resultSettled();
    settle();
    EXPECT_EQ(file("a").substr(0, 9), "mine top\n");
}

TEST_F(MergePaneTest, AsksBeforeMarkersAreStagedAndKeepsTheFileThatIsLeft)
{
    Q_EMIT view().resolveRequested();
    settle();
    ASSERT_TRUE(store.window().confirmation.value());
    store.window().dismissQuestion();
    EXPECT_EQ(unmerged(), "a\nb");
    view().editor()->choose(*view().columns()->current(), gitkit::MergeChoice::left);
    select("b"); // before the moment is over
    EXPECT_EQ(file("a"), "top\nleft\nend\n");
    EXPECT_EQ(view().path(), "b");
    EXPECT_EQ(view().undecidedCount(), 1);
}

TEST_F(MergePaneTest, ResolvesNoOtherFileThanTheOneThatWasMeant)
{
    view().editor()->choose(*view().columns()->current(), gitkit::MergeChoice::left);
    Q_EMIT view().resultSettled();
    Q_EMIT view().resolveRequested(); // waits until the file is written
    select("b");
    EXPECT_NE(repo.read({"ls-files", "-u", "b"}), "");
    EXPECT_EQ(file("a"), "top\nleft\nend\n");
    EXPECT_EQ(view().path(), "b");
}

TEST_F(MergePaneTest, StartsOverAndBringsBackWhatWasWritten)
{
    choose(gitkit::MergeChoice::none);
    Q_EMIT view().startOverRequested();
    settle();
    load();
    EXPECT_EQ(view().undecidedCount(), 1);
    EXPECT_NE(file("a").find("<<<<<<<"), std::string::npos);
    store.undo().undo();
    settle();
    load();
    EXPECT_EQ(file("a"), "top\nend\n");
    EXPECT_EQ(view().undecidedCount(), 0);
}

} // namespace
} // namespace plovik
