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

void importCommit(const TestRepository& repo, const std::string& subject, const std::string& branch, int date)
{
    repo.read({"fast-import", "--quiet"}, "commit refs/heads/" + branch + "\ncommitter A <a@example.org> " +
                                              std::to_string(date) + " +0000\ndata " + std::to_string(subject.size()) +
                                              "\n" + subject + "\nfrom refs/heads/" + branch + "^0\n");
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

    /// How many walks of the history were begun.
    int logs() const
    {
        return static_cast<int>(
            std::ranges::count_if(store.changes().commandLog().commands(), [](const CommandLog::Command& command) {
                return std::ranges::count(command.arguments, "log") > 0;
            }));
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

TEST_F(StoreHistory, RowsAreShownAsTheyComeAndOnlyReadAgainWhenARefHasMoved)
{
    commitMany(repo, 1200);
    store.snapshot().refresh(RefreshScope::full);
    worker.finish();
    EXPECT_EQ(store.history().history.value().size(), 60U);
    EXPECT_FALSE(store.history().hasMoreHistory.value()) << "they are coming";
    worker.finishAll();
    ASSERT_EQ(store.history().history.value().size(), 500U);
    EXPECT_EQ(store.history().history.value().front().commit.refs.size(), 1U) << "joined from the refs";

    load(); // the refs were read after the first walk had begun
    EXPECT_EQ(logs(), 2);
    load();
    repo.write("new", "file");
    load();
    EXPECT_EQ(logs(), 2);

    store.history().readToEnd();
    worker.finishAll();
    ASSERT_EQ(store.history().history.value().size(), 1200U);
    EXPECT_EQ(store.window().selectedCommit.value(), store.history().history.value().back().commit.hash);

    // What follows a new commit is the old list.
    const HistoryRows before = store.history().history.value();
    importCommit(repo, "new", "main", 1'800'000'000);
    repo.git({"branch", "side", "main~100"});
    load();
    const HistoryRows& after = store.history().history.value();
    ASSERT_EQ(after.size(), 1201U);
    EXPECT_EQ(after.blocks().back(), before.blocks().back());
    EXPECT_EQ(after[100].commit.refs.size(), 1U);
    RepositoryStore another(repo.path(), worker);
    another.snapshot().refresh(RefreshScope::full);
    another.history().readToEnd();
    worker.finishAll();
    EXPECT_TRUE(after == another.history().history.value());

    // A branch that begins elsewhere cannot be joined, and one that is reset neither.
    repo.git({"branch", "past", "main~900"}).git({"update-ref", "refs/heads/main", "main~3"});
    importCommit(repo, "on an old commit", "past", 1'800'000'001);
    load();
    another.snapshot().refresh(RefreshScope::full);
    worker.finishAll();
    EXPECT_EQ(after.size(), 1199U);
    EXPECT_TRUE(after == another.history().history.value());
}

TEST_F(StoreHistory, VeryManyTagsComeAfterTheFirstRows)
{
    commitMany(repo, 5);
    repo.git({"checkout", "-q", "-B", "away", "main~1"}).write("a", "1").commit("only tagged");
    std::string tags;
    for (int tag = 0; tag < 2500; ++tag)
        tags += "create refs/tags/a-tag-with-some-name-" + std::to_string(tag) + " HEAD\n";
    repo.read({"update-ref", "--stdin"}, tags);
    repo.git({"checkout", "-q", "main"}).git({"branch", "-D", "away"}).git({"pack-refs", "--all"});
    store.snapshot().refresh(RefreshScope::full);
    worker.finish();
    EXPECT_EQ(store.history().history.value().size(), 5U);
    worker.finishAll();
    EXPECT_EQ(store.history().history.value().size(), 6U);
    const auto tagged =
        store.history().history.value().rowOf(repo.read({"rev-parse", "refs/tags/a-tag-with-some-name-0"}));
    ASSERT_TRUE(tagged);
    EXPECT_EQ(store.history().history.value()[*tagged].commit.refs.size(), 2500U);
}

TEST_F(StoreHistory, AWaitingGitIsEndedAndItsHistoryGoneOnWith)
{
    commitMany(repo, 1700);
    load();
    EXPECT_EQ(store.history().history.value().size(), 500U);
    worker.advance(31s);
    store.history().loadMoreHistory();
    worker.finishAll();
    EXPECT_EQ(store.history().history.value().size(), 1000U);
    EXPECT_EQ(logs(), 2);
    store.history().loadMoreHistory();
    worker.finishAll();
    EXPECT_EQ(logs(), 2) << "the second one waited";
    EXPECT_EQ(subjects(store)[1499], "commit 200");

    // Refs that have moved while no git waited are noticed.
    worker.advance(31s);
    repo.git({"update-ref", "refs/heads/main", "main~700"});
    store.history().loadMoreHistory();
    worker.finishAll();
    EXPECT_EQ(subjects(store).size(), 1000U);
    EXPECT_EQ(subjects(store)[0], "commit 999");
}

TEST_F(StoreHistory, ASearchShowsWhatItFindsAndCanBeStopped)
{
    commitMany(repo, 900);
    load();
    search(QStringLiteral("commit"));
    EXPECT_TRUE(store.history().isOutdated.value());
    worker.advance(300ms);
    worker.finish();
    EXPECT_FALSE(store.history().isOutdated.value());
    EXPECT_TRUE(store.history().isSearching.value());
    EXPECT_EQ(store.history().history.value().size(), 60U);
    store.history().stopReading();
    worker.finishAll();
    EXPECT_FALSE(store.history().isSearching.value());
    EXPECT_EQ(store.history().historyProblem.value(), QString());
    const std::size_t found = store.history().history.value().size();
    EXPECT_LE(found, 120U);
    EXPECT_TRUE(store.history().hasMoreHistory.value());
    store.history().loadMoreHistory();
    worker.finishAll();
    EXPECT_EQ(store.history().history.value().size(), found + 500);
    EXPECT_EQ(subjects(store)[found + 499], "commit " + std::to_string(400 - found));
}

TEST_F(StoreHistory, WrongDatesAreSortedByGit)
{
    commitMany(repo, 600);
    repo.git({"branch", "old"});
    importCommit(repo, "old", "old", 1000);
    load();
    store.history().readToEnd();
    worker.finishAll();
    EXPECT_EQ(store.history().history.value().size(), 601U);
    EXPECT_EQ(store.history().history.value().front().commit.subject, "old") << "above its parent";
}

TEST(HistoryRowsTest, PackAndUnpackAnyRow)
{
    std::vector<HistoryRow> rows;
    for (int number = 0; number < 300; ++number) {
        HistoryRow row;
        row.commit.hash =
            std::string(number % 2 ? 40 : 64, static_cast<char>('a' + number % 6)) + std::to_string(1000 + number);
        row.commit.parents.assign(static_cast<std::size_t>(number % 4), number % 5 ? std::string(40, 'f') : "no hash");
        row.commit.date = gitkit::Date(std::chrono::seconds(number % 3 ? -number : 1'700'000'000LL * number));
        row.commit.authorName = "Ä";
        row.commit.authorEmail = std::string(static_cast<std::size_t>(number), '@');
        row.commit.subject = number % 7 ? "" : "ö\n\x01";
        row.graph = {number, {number, 0, 7}, {1, 2, 3, 200}, {3, 1}};
        if (number == 250)
            row.commit.refs = {{gitkit::RefLabel::Kind::tag, "v1", false}};
        rows.push_back(row);
    }
    const HistoryRows packed(rows);
    ASSERT_EQ(packed.size(), rows.size());
    for (std::size_t number = 0; number < rows.size(); ++number) {
        ASSERT_TRUE(packed[number] == rows[number]) << number;
        ASSERT_EQ(packed.rowOf(rows[number].commit.hash), number);
    }
    EXPECT_FALSE(packed.contains("a"));

    // The same rows in other blocks, and with a row of their own put first.
    HistoryRows pieces;
    pieces.append(std::make_shared<const HistoryBlock>(std::span(rows).first(100)));
    EXPECT_TRUE(packed.beginsWith(pieces));
    EXPECT_FALSE(pieces.beginsWith(packed));
    pieces.putFirst(rows[150]);
    pieces.append(std::make_shared<const HistoryBlock>(std::span(rows).subspan(100)));
    EXPECT_EQ(pieces.size(), rows.size());
    EXPECT_EQ(pieces.rowOf(rows[150].commit.hash), 0U);
    EXPECT_EQ(pieces.hashAt(151), rows[151].commit.hash);
    EXPECT_FALSE(packed.beginsWith(pieces));
}

TEST_F(StoreHistory, AnEqualPageTouchesNeitherListNorSelection)
{
    repo.write("a", "1").commit("one").write("a", "2").commit("two");
    load();
    store.window().selectCommit(store.history().history.value().at(1).commit.hash);
    const HistoryRows rows = store.history().history.value();
    load();
    EXPECT_EQ(store.history().history.value().blocks(), rows.blocks());
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

TEST_F(StoreHistory, ASearchThatCannotBeMadeSaysWhyAndKeepsTheRows)
{
    using Field = gitkit::HistoryFilter::Field;
    repo.write("a", "1").commit("apple").write("a", "2").commit("pear");
    load();
    search(QStringLiteral("apple"));
    worker.advance(300ms);
    worker.finishAll();
    search(QStringLiteral("soon"), Field::date);
    worker.advance(300ms);
    EXPECT_EQ(worker.waiting(), 0u) << "git is not asked";
    EXPECT_TRUE(store.history().searchProblem.value().startsWith(QStringLiteral("“soon” is no date.")));
    EXPECT_FALSE(store.history().isSearching.value());
    load();
    EXPECT_EQ(subjects(store), std::vector<std::string>{"apple"});

    search(QStringLiteral("("), Field::lines);
    worker.advance(300ms);
    worker.finishAll();
    EXPECT_TRUE(store.history().searchProblem.value().contains(QStringLiteral("invalid regex")));
    search(QStringLiteral("2"), Field::lines);
    EXPECT_EQ(store.history().searchProblem.value(), QString());
    worker.advance(300ms);
    worker.finishAll();
    EXPECT_EQ(subjects(store), std::vector<std::string>{"pear"});
}

TEST_F(StoreHistory, ASearchInTheGraphMarksItsMatchesAndStepsThroughThem)
{
    using Direction = HistoryMatches::Direction;
    commitMany(repo, 2000);
    load();
    store.history().setSearchesInGraph(true);
    search(QStringLiteral("commit 1"));
    EXPECT_TRUE(store.matches().isSearching.value());
    worker.advance(300ms);
    worker.finishAll();
    EXPECT_EQ(store.history().history.value().size(), 500U) << "all rows stay";
    EXPECT_FALSE(store.history().isHistoryFiltered.value());
    EXPECT_TRUE(store.matches().contains(store.history().history.value().hashAt(0)));
    EXPECT_TRUE(store.matches().hasMore()) << "only as far as the rows that are loaded";

    search(QStringLiteral("commit 150"));
    worker.advance(300ms);
    worker.finishAll();
    std::vector<std::string> seen;
    const auto step = [&](Direction direction) {
        store.matches().step(direction);
        worker.finishAll();
        const auto commit = store.history().history.value().commit(store.window().selectedCommit.value().value());
        seen.push_back(commit ? commit->subject : "none");
    };
    store.window().selectCommit(store.history().history.value().hashAt(0));
    for (int i = 0; i < 3; ++i)
        step(Direction::next);
    step(Direction::previous);
    store.window().selectCommit(repo.read({"rev-parse", "main~495"})); // commit 1504
    step(Direction::next);
    EXPECT_EQ(seen,
              (std::vector<std::string>{"commit 1509", "commit 1508", "commit 1507", "commit 1508", "commit 1503"}))
        << "also beyond the rows that were loaded";
    store.window().selectCommit(repo.read({"rev-parse", "main~499"})); // commit 1500
    step(Direction::next);
    EXPECT_EQ(seen.back(), "commit 150");

    store.matches().stop();
    search({});
    worker.advance(300ms);
    worker.finishAll();
    EXPECT_EQ(store.matches().count(), 0U);
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

TEST_F(StoreHistory, BeforeTheFirstCommitGitIsAskedOnceAndFailsAtNothing)
{
    load();
    load();
    EXPECT_EQ(logs(), 1);
    for (const CommandLog::Command& command : store.changes().commandLog().commands()) {
        if (std::ranges::count(command.arguments, "log") > 0)
            EXPECT_EQ(command.end->status, 0);
    }
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
