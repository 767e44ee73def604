// SPDX-License-Identifier: GPL-3.0-or-later
#include "GitKit/CommitGraph.h"
#include "GitKit/parsers/LogParser.h"
#include "GitKit/repository/Commits.h"
#include "GitKit/repository/GitRepository.h"
#include "GitKit/repository/HistoryStream.h"
#include "GitKit/runner/GitError.h"
#include "tests/support/ProcessesIn.h"
#include "tests/support/TemporaryFolder.h"
#include "tests/support/TestRepository.h"

#include <gtest/gtest.h>

#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <random>
#include <thread>

namespace gitkit {
namespace {

using namespace std::chrono_literals;

/// Makes commits whose dates are `skew` seconds off at most, with merges and many branches.
void makeGraph(const TestRepository& repo, std::mt19937& random, int count, int skew)
{
    const auto below = [&random](int limit) { return static_cast<int>(random() % static_cast<unsigned>(limit)); };
    std::string stream;
    for (int mark = 1; mark <= count; ++mark) {
        const int date = 1'700'000'000 + mark * 3 / 2 + (skew > 0 ? below(2 * skew) - skew : 0);
        const std::string branch = "refs/heads/b" + std::to_string(below(9));
        const std::string subject = "commit " + std::to_string(mark);
        stream += "commit " + branch + "\nmark :" + std::to_string(mark) + "\nauthor " + (below(3) ? "Ada" : "Ben") +
                  " <a@example.org> " + std::to_string(date) + " +0000\ncommitter C <c@example.org> " +
                  std::to_string(date) + " +0000\ndata " + std::to_string(subject.size()) + "\n" + subject + "\n";
        const int parent = mark - 1 - below(std::min(mark, 12));
        if (parent > 0)
            stream += "from :" + std::to_string(parent) + "\n";
        if (const int other = mark - 1 - below(std::min(mark, 40));
            parent > 0 && other > 0 && other != parent && !below(3))
            stream += "merge :" + std::to_string(other) + "\n";
        stream += "\n";
    }
    // Git comes to this one last, long after its parent.
    if (skew > 1000)
        stream += "commit refs/heads/old\ncommitter C <c@example.org> 1000000000 +0000\ndata 3\nold\nfrom :" +
                  std::to_string(count) + "\n\n";
    repo.read({"fast-import", "--quiet", "--force"}, stream);
}

/// Reads a stream in pieces of a random size, and again as the sorted one if its dates are wrong.
std::vector<Commit> streamed(const GitRepository& repo, HistoryWalk walk, std::mt19937& random, bool& wasWrong)
{
    HistoryStream stream(repo, walk);
    std::vector<Commit> all;
    while (!stream.hasEnded() && !stream.isWrong()) {
        for (Commit& commit : stream.next(1 + random() % 90))
            all.push_back(std::move(commit));
    }
    wasWrong = stream.isWrong();
    if (!wasWrong)
        return all;
    walk.isSortedByGit = true;
    bool isWrongAgain = false;
    return streamed(repo, walk, random, isWrongAgain);
}

std::vector<Commit> withoutLabels(std::vector<Commit> commits)
{
    for (Commit& commit : commits)
        commit.refs.clear();
    return commits;
}

TEST(HistoryStream, IsInDateOrderWhateverTheClocks)
{
    const char* const given = std::getenv("PLOVIK_SEED");
    const unsigned seed = given ? static_cast<unsigned>(std::atol(given)) : std::random_device{}();
    SCOPED_TRACE("PLOVIK_SEED=" + std::to_string(seed));
    std::mt19937 random(seed);
    int wrong = 0;
    for (const int skew : {0, 2, 60, 400, 100'000}) {
        TestRepository repo;
        makeGraph(repo, random, 700, skew);
        const GitRepository git(repo.path());
        for (const HistoryScope& scope : {HistoryScope::all(), HistoryScope::of("refs/heads/b1")}) {
            bool wasWrong = false;
            const std::vector<Commit> expected = withoutLabels(git.log(scope, 10'000, {}));
            const std::vector<Commit> found = streamed(git, {.scope = scope}, random, wasWrong);
            wrong += wasWrong ? 1 : 0;
            ASSERT_EQ(found.size(), expected.size());
            for (std::size_t row = 0; row < found.size(); ++row)
                ASSERT_EQ(found[row].subject, expected[row].subject) << "row " << row << ", skew " << skew;
            const int row = static_cast<int>(random() % expected.size());
            EXPECT_EQ(position(git, scope, expected[static_cast<std::size_t>(row)].hash), row);
        }
        const HistoryFilter byAda{HistoryFilter::Field::author, "ada"};
        bool wasWrong = false;
        auto found = streamed(git, {.scope = HistoryScope::all(), .filter = byAda}, random, wasWrong);
        auto expected = withoutLabels(git.log(HistoryScope::all(), 10'000, byAda));
        if (skew == 0)
            EXPECT_EQ(found, expected);
        std::ranges::sort(found, {}, &Commit::hash);
        std::ranges::sort(expected, {}, &Commit::hash);
        EXPECT_EQ(found, expected);
    }
    EXPECT_GT(wrong, 0) << "no graph was beyond the window, so nothing was read twice";
}

TEST(HistoryStream, IsThatOfTheLogInShallowReplacedAndOtherRepositories)
{
    std::mt19937 random(7);
    TestRepository origin;
    makeGraph(origin, random, 300, 60);
    const auto expectSame = [&random](const std::filesystem::path& path) {
        const GitRepository git(path);
        bool wasWrong = false;
        EXPECT_EQ(streamed(git, {.scope = HistoryScope::all()}, random, wasWrong),
                  withoutLabels(git.log(HistoryScope::all(), 10'000, {})));
    };
    const TemporaryFolder folder;
    const auto clone = [&](const std::string& name, const std::vector<std::string>& options) {
        std::vector<std::string> arguments{"clone", "-q", "--no-checkout"};
        arguments.insert(arguments.end(), options.begin(), options.end());
        arguments.insert(arguments.end(), {"file://" + origin.path().string(), (folder / name).string()});
        origin.git(arguments);
        return folder / name;
    };
    expectSame(clone("shallow", {"--depth=5", "--no-single-branch", "--branch=b1"}));
    expectSame(clone("partial", {"--filter=blob:none", "--branch=b1"}));
    origin.git({"replace", "--graft", "b1~3", "b2"}).git({"pack-refs", "--all"});
    expectSame(origin.path());

    origin.git({"init", "-q", "--object-format=sha256", (folder / "sha256").string()});
    const GitRepository sha256(folder / "sha256");
    sha256.runner().bytes({"commit", "-q", "--allow-empty", "-m", "one"});
    sha256.runner().bytes({"commit", "-q", "--allow-empty", "-m", "two"});
    expectSame(folder / "sha256");
}

TEST(HistoryStream, GoesWithoutAHeadThatIsNotBornAndTellsOfDamage)
{
    TestRepository repo;
    const GitRepository git(repo.path());
    EXPECT_TRUE(HistoryStream(git, {HistoryScope::all()}).next(5).empty());

    repo.write("a", "1").commit("one").git({"checkout", "-q", "--orphan", "other"});
    EXPECT_EQ(HistoryStream(git, {HistoryScope::all()}).next(5).size(), 1U);
    EXPECT_THROW(HistoryStream(git, {HistoryScope::of("refs/heads/gone")}).next(5), GitError);

    repo.write(".git/refs/heads/damaged", std::string(40, '1') + "\n");
    EXPECT_THROW(HistoryStream(git, {HistoryScope::all()}).next(5), GitError);
}

TEST(HistoryStream, WaitsWithoutReadingAheadAndEndsItsGit)
{
    TestRepository repo;
    std::mt19937 random(1);
    makeGraph(repo, random, 6000, 0); // more than a pipe holds
    std::stop_source stop;
    const GitRepository git(repo.path(), {.stop = stop.get_token()});
    {
        HistoryStream stream(git, {HistoryScope::all()});
        EXPECT_EQ(stream.next(60).size(), 60U);
        EXPECT_EQ(processesIn(repo.path()), 1) << "git waits";
        // What git waits with survives a new packing of the repository.
        repo.git({"repack", "-a", "-d", "-f", "-q"});
        EXPECT_EQ(stream.next(2000).size(), 2000U);
    }
    // It is killed at once; the kernel takes a moment.
    EXPECT_TRUE(haveAllEndedIn(repo.path(), 5s));

    HistoryStream stream(git, {HistoryScope::all()});
    EXPECT_EQ(stream.next(100, HistoryStream::Clock::now()).size(), 0U) << "the time is over";
    stream.next(60);
    stop.request_stop();
    EXPECT_THROW(
        {
            while (!stream.hasEnded())
                stream.next(100);
        },
        RunStopped);
}

TEST(LogParser, TakesWholeRecordsFromWhateverHasArrived)
{
    std::string all;
    for (const char* field : {"h1", "p1 p2", "Ada", "a@b", "5", "6", "one", "h2", "", "Ben", "b@c", "7", "8", "two"})
        all += std::string(field) + '\0';
    for (std::size_t cut = 0; cut <= all.size(); ++cut) {
        std::vector<LogParser::Streamed> found;
        std::string bytes;
        for (const std::string& piece : {all.substr(0, cut), all.substr(cut)}) {
            bytes += piece;
            std::string_view rest = bytes;
            while (auto read = LogParser::take(rest))
                found.push_back(*std::move(read));
            bytes.erase(0, bytes.size() - rest.size());
        }
        EXPECT_EQ(bytes, "");
        ASSERT_EQ(found.size(), 2U);
        EXPECT_EQ(found[0].commit.parents, (std::vector<std::string>{"p1", "p2"}));
        EXPECT_EQ(found[1].commit.subject, "two");
        EXPECT_EQ(found[1].committed, Date(8s));
    }
}

} // namespace
} // namespace gitkit
