// SPDX-License-Identifier: GPL-3.0-or-later
#include "tests/store/ManualWorker.h"
#include "tests/support/TestRepository.h"

#include "app/store/RepositoryStore.h"

#include <gtest/gtest.h>

namespace plovik {
namespace {

using namespace std::chrono_literals;

std::vector<std::string> subjects(const RepositoryStore& store)
{
    std::vector<std::string> list;
    for (const HistoryRow& row : store.history().history.value())
        list.push_back(row.commit.subject);
    return list;
}

/// Commits that differ only in their subjects, far faster than one git a commit.
void commitMany(const TestRepository& repo, int count)
{
    std::string stream;
    for (int i = 0; i < count; ++i) {
        const std::string subject = "commit " + std::to_string(i);
        stream += "commit refs/heads/main\ncommitter A <a@example.org> " + std::to_string(1'700'000'000 + i) +
                  " +0000\ndata " + std::to_string(subject.size()) + "\n" + subject + "\n";
    }
    repo.read({"fast-import", "--quiet"}, stream);
}

struct StoreHistory : testing::Test {
    TestRepository repo;
    ManualWorker worker;
    RepositoryStore store{repo.path(), worker};

    void load()
    {
        store.snapshot().refresh(RefreshScope::full);
        worker.finishAll();
    }

    void select(SidebarItem item) { store.window().select(std::move(item)); }

    void search(const QString& text, gitkit::HistoryFilter::Field field = gitkit::HistoryFilter::Field::message)
    {
        store.history().search(text, field);
    }
};

TEST_F(StoreHistory, ASlowLoadOfOneScopeCannotOverwriteAnother)
{
    repo.write("a", "1").commit("base").git({"branch", "slow"}).git({"branch", "quick"});
    repo.git({"checkout", "-q", "slow"}).write("a", "2").commit("on slow");
    repo.git({"checkout", "-q", "quick"}).write("a", "3").commit("on quick");
    load();

    select(SidebarItem::ref("refs/heads/slow"));
    select(SidebarItem::ref("refs/heads/quick"));
    ASSERT_EQ(worker.waiting(), 2u);
    worker.finish(1);
    EXPECT_EQ(subjects(store), (std::vector<std::string>{"on quick", "base"}));
    worker.finish(0);
    EXPECT_EQ(subjects(store), (std::vector<std::string>{"on quick", "base"}));
}

TEST_F(StoreHistory, LookingAtTheWorkingCopyKeepsTheLoadedPage)
{
    repo.write("a", "1").commit("one").git({"branch", "side"});
    load();
    select(SidebarItem::ref("refs/heads/side"));
    worker.finishAll();
    select(SidebarItem::workingCopy());
    select(SidebarItem::ref("refs/heads/side"));
    EXPECT_EQ(worker.waiting(), 0u);
}

TEST_F(StoreHistory, PagesGrowByFiveHundredAndTheEndAsksOnce)
{
    commitMany(repo, 501);
    load();
    EXPECT_EQ(store.history().history.value().size(), 500u);
    EXPECT_TRUE(store.history().hasMoreHistory.value());

    store.history().loadMoreHistory();
    store.history().loadMoreHistory();
    EXPECT_EQ(worker.waiting(), 1u);
    worker.finishAll();
    EXPECT_EQ(store.history().history.value().size(), 501u);
    EXPECT_FALSE(store.history().hasMoreHistory.value());
    store.history().loadMoreHistory();
    EXPECT_EQ(worker.waiting(), 0u);

    // A search begins again at one page.
    search(QStringLiteral("commit"));
    worker.advance(300ms);
    worker.finishAll();
    EXPECT_EQ(store.history().history.value().size(), 500u);
    EXPECT_TRUE(store.history().isHistoryFiltered.value());
}

TEST_F(StoreHistory, AnEqualPageTouchesNeitherListNorSelection)
{
    repo.write("a", "1").commit("one").write("a", "2").commit("two");
    load();
    store.window().selectCommit(store.history().history.value().at(1).commit.hash);
    const HistoryRow* const rows = store.history().history.value().data();
    load();
    EXPECT_EQ(store.history().history.value().data(), rows);
    EXPECT_EQ(store.window().selectedCommit.value(), rows[1].commit.hash);

    // A commit that leaves the page leaves the selection; none takes its place.
    repo.git({"reset", "-q", "--hard", "HEAD~1"}).git({"reflog", "expire", "--expire=now", "--all"});
    store.window().selectCommit(rows[0].commit.hash);
    load();
    EXPECT_EQ(store.window().selectedCommit.value(), std::nullopt);
}

TEST_F(StoreHistory, TypingSearchesOnceWhenItPauses)
{
    repo.write("a", "1").commit("alpha").write("a", "2").commit("beta");
    load();
    search(QStringLiteral("a"));
    worker.advance(200ms);
    search(QStringLiteral("al"));
    worker.advance(200ms);
    search(QStringLiteral("alp"));
    worker.advance(299ms);
    EXPECT_EQ(worker.waiting(), 0u);
    worker.advance(1ms);
    EXPECT_EQ(worker.waiting(), 1u);
    worker.finishAll();
    EXPECT_EQ(subjects(store), std::vector<std::string>{"alpha"});

    search(QStringLiteral(" \t "));
    worker.advance(300ms);
    worker.finishAll();
    EXPECT_EQ(store.history().history.value().size(), 2u);
    EXPECT_FALSE(store.history().isHistoryFiltered.value());
}

TEST_F(StoreHistory, SaysWhileThePageShowsAnotherSearch)
{
    repo.write("a", "1").commit("apple").write("a", "2").commit("pear");
    load();
    search(QStringLiteral("apple"));
    EXPECT_TRUE(store.history().isSearching.value());
    worker.advance(300ms);
    EXPECT_TRUE(store.history().isSearching.value());
    search(QStringLiteral("pear"));
    worker.finishAll();
    EXPECT_TRUE(store.history().isSearching.value()) << "that was the answer to the search before";
    worker.advance(300ms);
    worker.finishAll();
    EXPECT_FALSE(store.history().isSearching.value());
    EXPECT_EQ(subjects(store), std::vector<std::string>{"pear"});
}

TEST_F(StoreHistory, ASearchFindsACommitByItsHash)
{
    repo.write("a", "1").commit("apple").write("a", "2").commit("pear");
    const std::string hash = repo.read({"rev-parse", "HEAD~1"});
    load();
    const auto found = [&](const std::string& text) {
        search(QString::fromStdString(text));
        worker.advance(300ms);
        worker.finishAll();
        return subjects(store);
    };
    EXPECT_EQ(found(hash), std::vector<std::string>{"apple"});
    EXPECT_EQ(found(QString::fromStdString(hash.substr(0, 7)).toUpper().toStdString()),
              std::vector<std::string>{"apple"});
    EXPECT_TRUE(found("0000000").empty());
    EXPECT_EQ(found("apple"), std::vector<std::string>{"apple"});
}

TEST_F(StoreHistory, EndingASearchKeepsTheSelectedCommitAndItsPlace)
{
    commitMany(repo, 1200);
    load();
    search(QStringLiteral("commit 100"));
    worker.advance(300ms);
    worker.finishAll();
    const std::string hash = repo.read({"rev-parse", "main~1099"}); // on the third page
    store.window().selectCommit(hash);
    const qint64 reveals = store.history().commitReveals.value();
    search(QString());
    worker.advance(300ms);
    worker.finishAll();
    EXPECT_FALSE(store.history().isHistoryFiltered.value());
    EXPECT_EQ(store.window().selectedCommit.value(), hash);
    EXPECT_GT(store.history().commitReveals.value(), reveals);
    EXPECT_TRUE(store.history().isOnPage(SidebarItem::history(), hash));
}

TEST_F(StoreHistory, SearchesAuthorsAndPaths)
{
    repo.write("src/one.c", "1").commit("first").write("docs/two.md", "2").commit("second");
    load();
    search(QStringLiteral("ONE.C"), gitkit::HistoryFilter::Field::path);
    worker.advance(300ms);
    worker.finishAll();
    EXPECT_EQ(subjects(store), std::vector<std::string>{"first"});

    search(QStringLiteral("nobody of this name"), gitkit::HistoryFilter::Field::author);
    worker.advance(300ms);
    worker.finishAll();
    EXPECT_TRUE(store.history().history.value().empty());
    EXPECT_EQ(store.history().historyProblem.value(), QString()) << "finding nothing is no failure";
}

TEST_F(StoreHistory, AClosedWindowDropsItsPendingSearch)
{
    ManualWorker other;
    {
        RepositoryStore closing(repo.path(), other);
        closing.history().search(QStringLiteral("x"), gitkit::HistoryFilter::Field::message);
    }
    other.advance(1s);
    EXPECT_EQ(other.posted(), 0);
}

TEST_F(StoreHistory, BeforeTheFirstCommitGitIsNotAsked)
{
    store.snapshot().refresh(RefreshScope::full);
    worker.finishAll();
    for (const CommandLog::Command& command : store.changes().commandLog().commands())
        EXPECT_EQ(std::ranges::count(command.arguments, "log"), 0);
    EXPECT_TRUE(store.history().history.value().empty());
    EXPECT_EQ(store.history().historyProblem.value(), QString());
}

TEST_F(StoreHistory, ABranchWithoutCommitsHidesNoHistoryAndNeitherDoesABrokenIndex)
{
    repo.commit("one").commit("two").git({"branch", "other"}).git({"checkout", "-q", "--orphan", "fresh"});
    load();
    select(SidebarItem::history());
    worker.finishAll();
    EXPECT_EQ(store.history().history.value().size(), 2U);
    select(SidebarItem::ref("refs/heads/other"));
    worker.finishAll();
    EXPECT_EQ(store.history().history.value().size(), 2U);

    repo.write(".git/index", "garbage");
    RepositoryStore another(repo.path(), worker);
    another.window().select(SidebarItem::history());
    another.snapshot().refresh(RefreshScope::full);
    worker.finishAll();
    EXPECT_FALSE(another.snapshot().readProblem.value().isEmpty());
    EXPECT_EQ(another.history().history.value().size(), 2U);
}

TEST_F(StoreHistory, ArrowsMoveTheSelectionWithinThePage)
{
    store.history().moveCommitSelection(1);
    EXPECT_EQ(store.window().selectedCommit.value(), std::nullopt);
    commitMany(repo, 3);
    load();
    const auto hash = [this](std::size_t row) { return store.history().history.value().at(row).commit.hash; };
    store.history().moveCommitSelection(1);
    EXPECT_EQ(store.window().selectedCommit.value(), hash(0))
        << "without a selection the first row is next, whatever the step";
    store.history().moveCommitSelection(1);
    EXPECT_EQ(store.window().selectedCommit.value(), hash(1));
    store.history().moveCommitSelection(10);
    EXPECT_EQ(store.window().selectedCommit.value(), hash(2));
    store.history().moveCommitSelection(-10);
    EXPECT_EQ(store.window().selectedCommit.value(), hash(0));
}

} // namespace
} // namespace plovik
