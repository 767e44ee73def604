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
    for (const HistoryRow& row : store.history.value())
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
        store.refresh(RefreshScope::full);
        worker.finishAll();
    }

    void select(SidebarItem item)
    {
        store.selection = std::move(item);
        store.selectionChanged();
    }

    void search(const QString& text)
    {
        store.historySearch = text;
        store.historySearchChanged();
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
    EXPECT_EQ(store.history.value().size(), 500u);
    EXPECT_TRUE(store.hasMoreHistory.value());

    store.loadMoreHistory();
    store.loadMoreHistory();
    EXPECT_EQ(worker.waiting(), 1u);
    worker.finishAll();
    EXPECT_EQ(store.history.value().size(), 501u);
    EXPECT_FALSE(store.hasMoreHistory.value());
    store.loadMoreHistory();
    EXPECT_EQ(worker.waiting(), 0u);

    // A search begins again at one page.
    search(QStringLiteral("commit"));
    worker.advance(300ms);
    worker.finishAll();
    EXPECT_EQ(store.history.value().size(), 500u);
    EXPECT_TRUE(store.isHistoryFiltered.value());
}

TEST_F(StoreHistory, AnEqualPageTouchesNeitherListNorSelection)
{
    repo.write("a", "1").commit("one").write("a", "2").commit("two");
    load();
    store.selectedCommit = store.history.value().at(1).commit.hash;
    const HistoryRow* const rows = store.history.value().data();
    load();
    EXPECT_EQ(store.history.value().data(), rows);
    EXPECT_EQ(store.selectedCommit.value(), rows[1].commit.hash);

    // A commit that leaves the page leaves the selection; none takes its place.
    repo.git({"reset", "-q", "--hard", "HEAD~1"}).git({"reflog", "expire", "--expire=now", "--all"});
    store.selectedCommit = rows[0].commit.hash;
    load();
    EXPECT_EQ(store.selectedCommit.value(), std::nullopt);
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
    EXPECT_EQ(store.history.value().size(), 2u);
    EXPECT_FALSE(store.isHistoryFiltered.value());
}

TEST_F(StoreHistory, SearchesAuthorsAndPaths)
{
    repo.write("src/one.c", "1").commit("first").write("docs/two.md", "2").commit("second");
    load();
    store.historySearchField = gitkit::HistoryFilter::Field::path;
    search(QStringLiteral("ONE.C"));
    worker.advance(300ms);
    worker.finishAll();
    EXPECT_EQ(subjects(store), std::vector<std::string>{"first"});

    store.historySearchField = gitkit::HistoryFilter::Field::author;
    search(QStringLiteral("nobody of this name"));
    worker.advance(300ms);
    worker.finishAll();
    EXPECT_TRUE(store.history.value().empty());
    EXPECT_EQ(store.historyProblem.value(), QString()) << "finding nothing is no failure";
}

TEST_F(StoreHistory, AClosedWindowDropsItsPendingSearch)
{
    ManualWorker other;
    {
        RepositoryStore closing(repo.path(), other);
        closing.historySearch = QStringLiteral("x");
        closing.historySearchChanged();
    }
    other.advance(1s);
    EXPECT_EQ(other.posted(), 0);
}

TEST_F(StoreHistory, BeforeTheFirstCommitGitIsNotAsked)
{
    store.refresh(RefreshScope::full);
    worker.finishAll();
    EXPECT_EQ(worker.posted(), 4) << "status, refs, remotes, stashes and no log";
    EXPECT_TRUE(store.history.value().empty());
    EXPECT_EQ(store.historyProblem.value(), QString());
}

TEST_F(StoreHistory, ArrowsMoveTheSelectionWithinThePage)
{
    store.moveCommitSelection(1);
    EXPECT_EQ(store.selectedCommit.value(), std::nullopt);
    commitMany(repo, 3);
    load();
    const auto hash = [this](std::size_t row) { return store.history.value().at(row).commit.hash; };
    store.moveCommitSelection(1);
    EXPECT_EQ(store.selectedCommit.value(), hash(0)) << "without a selection the first row is next, whatever the step";
    store.moveCommitSelection(1);
    EXPECT_EQ(store.selectedCommit.value(), hash(1));
    store.moveCommitSelection(10);
    EXPECT_EQ(store.selectedCommit.value(), hash(2));
    store.moveCommitSelection(-10);
    EXPECT_EQ(store.selectedCommit.value(), hash(0));
}

} // namespace
} // namespace plovik
