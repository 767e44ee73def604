// SPDX-License-Identifier: GPL-3.0-or-later
#include "GitKit/repository/CommitGraphCache.h"
#include "GitKit/repository/Folders.h"
#include "GitKit/repository/RefListing.h"
#include "tests/support/TestRepository.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <array>
#include <fcntl.h>
#include <filesystem>
#include <sys/stat.h>
#include <thread>

namespace gitkit {
namespace {

namespace fs = std::filesystem;

CommitGraphCache::Repository placeOf(const TestRepository& repo)
{
    return {gitDirectories(repo.repository()).common, listRefs(repo.repository()).replacements};
}

/// A repository of some commits and a folder whose name is awkward in a list of folders.
struct CommitGraphCacheTest : testing::Test {
    TestRepository repo;
    TemporaryFolder cache;
    fs::path root = cache / "a:b \"c\" \\d/graphs";

    CommitGraphCacheTest()
    {
        for (const char* text : {"1", "2", "3"})
            repo.write("file", text).commit(text);
    }

    bool write(const TestRepository& of, std::uintmax_t mostBytes = CommitGraphCache::limitOfAll) const
    {
        return CommitGraphCache(root).write(of.repository(), placeOf(of), mostBytes);
    }
    bool write() const { return write(repo); }

    /// What a window that opens finds.
    std::optional<std::string> found(const TestRepository& of) const
    {
        CommitGraphCache graph(root);
        graph.open(placeOf(of));
        return graph.alternates();
    }
    std::optional<std::string> found() const { return found(repo); }

    fs::path folder() const
    {
        for (const auto& entry : fs::directory_iterator(root))
            return entry.path();
        return {};
    }
    /// The file with the commits, or the one that names it.
    fs::path file(std::string_view ending) const
    {
        for (const auto& entry : fs::directory_iterator(folder() / "info/commit-graphs")) {
            if (entry.path().native().ends_with(ending))
                return entry.path();
        }
        return {};
    }
};

/// Whether git looks at the changed paths of a graph when it searches the history of a path.
bool usesGraph(const TestRepository& repo, const std::string& alternates)
{
    const TemporaryFolder traces;
    const std::string trace = (traces / "trace").string();
    int status = 0;
    runPlainGit(repo.path(), {"rev-list", "HEAD", "--", "file"}, status, {},
                {"GIT_ALTERNATE_OBJECT_DIRECTORIES=" + alternates, "GIT_TRACE2_PERF=" + trace});
    return status == 0 && readFile(trace).find("bloom") != std::string::npos;
}

TEST_F(CommitGraphCacheTest, IsSeenWhereverItLiesAndLeavesTheRepositoryAlone)
{
    EXPECT_EQ(found(), std::nullopt);
    ASSERT_TRUE(write());
    const auto alternates = found();
    ASSERT_TRUE(alternates);
    EXPECT_TRUE(usesGraph(repo, *alternates));
    EXPECT_FALSE(usesGraph(repo, ""));
    EXPECT_FALSE(fs::exists(repo / ".git/objects/info/commit-graphs"));

    repo.write("file", "4").commit("4").git({"worktree", "add", "-q", (cache / "tree").string()});
    EXPECT_TRUE(write()) << "and can be added to";
    const GitRepository tree(cache / "tree");
    CommitGraphCache graph(root);
    graph.open({gitDirectories(tree).common, {}});
    EXPECT_EQ(graph.alternates(), alternates) << "working trees share it";
}

TEST_F(CommitGraphCacheTest, IsSeenByReadsThatWalkAlone)
{
    const auto graph = std::make_shared<CommitGraphCache>(root);
    ASSERT_TRUE(graph->write(repo.repository(), placeOf(repo)));
    CommitGraphGuard guard(nullptr, graph);
    for (const char* command : {"status", "commit", "fetch", "show-ref"})
        EXPECT_TRUE(guard.before(command, {}).environment.empty()) << command;
    const auto environment = guard.before("log", {}).environment;
    ASSERT_EQ(environment.size(), 1U);
    EXPECT_EQ(environment[0].second, graph->alternates());
    EXPECT_EQ(guard.before("log", {}).settings.size(), 2U) << "what a lazy fetch would write must not build upon it";
    RunContext context;
    context.environment = {{"GIT_ALTERNATE_OBJECT_DIRECTORIES", "/own"}};
    EXPECT_EQ(guard.before("log", context).environment.at(0).second, "/own:" + *graph->alternates());
}

TEST_F(CommitGraphCacheTest, IsNotWrittenWhereGitWouldNotReadIt)
{
    repo.git({"config", "core.commitGraph", "false"});
    EXPECT_FALSE(write());
    repo.git({"config", "--unset", "core.commitGraph"}).git({"replace", "--graft", "HEAD"});
    EXPECT_FALSE(write());
    repo.git({"replace", "-d", "HEAD"});
    for (const char* cut : {".git/info/grafts", ".git/shallow"}) {
        writeFile(repo / cut, repo.head() + "\n");
        EXPECT_FALSE(write()) << cut;
        fs::remove(repo / cut);
    }
    repo.git({"commit-graph", "write", "--reachable"});
    EXPECT_FALSE(write()) << "the repository has one";
    fs::remove(repo / ".git/objects/info/commit-graph");
    EXPECT_TRUE(write());
}

TEST_F(CommitGraphCacheTest, IsDroppedWhenItsFilesAreNotThoseThatWereWritten)
{
    const auto damage = [](const fs::path& path, std::size_t place) {
        std::string bytes = readFile(path);
        bytes[place % bytes.size()] ^= 1;
        fs::permissions(path, fs::perms::owner_write, fs::perm_options::add);
        writeFile(path, bytes);
    };
    const std::vector<std::function<void()>> faults{
        [&] { damage(file(".graph"), 9); },
        [&] { damage(file(".graph"), 1200); },
        [&] { damage(file("-chain"), 3); },
        [&] { damage(folder() / "seal", 30); },
        [&] { fs::resize_file(file(".graph"), 300); },
        [&] { fs::remove(file(".graph")); },
        [&] { fs::remove(folder() / "seal"); },
        [&] { writeFile(folder() / "info/commit-graphs/more", "x"); },
    };
    for (std::size_t fault = 0; fault < faults.size(); ++fault) {
        ASSERT_TRUE(write());
        CommitGraphCache inUse(root);
        inUse.open(placeOf(repo));
        ASSERT_TRUE(inUse.alternates());
        faults[fault]();
        if (fault != 3 && fault != 6) {
            EXPECT_EQ(inUse.alternates(), std::nullopt) << fault;
        }
        EXPECT_EQ(found(), std::nullopt) << fault;
        EXPECT_EQ(folder(), fs::path()) << fault << " is still there";
    }
}

TEST_F(CommitGraphCacheTest, IsNotReadFromAFolderThatOthersCouldFill)
{
    const std::vector<std::function<void()>> faults{
        [&] { ::chmod(folder().c_str(), 0777); },
        [&] { ::chmod((folder() / "info").c_str(), 0775); },
        [&] { ::chmod(root.parent_path().c_str(), 0777); },
        [&] { writeFile(folder() / "pack/pack-1.idx", "x"); },
        [&] { writeFile(folder() / "info/alternates", "/elsewhere\n"); },
        [&] {
            const fs::path moved = cache / "moved";
            const fs::path place = folder();
            fs::rename(place, moved);
            fs::create_directory_symlink(moved, place);
        },
    };
    for (std::size_t fault = 0; fault < faults.size(); ++fault) {
        ASSERT_TRUE(write()) << fault;
        faults[fault]();
        EXPECT_EQ(found(), std::nullopt) << fault;
        EXPECT_FALSE(write()) << fault;
        ::chmod(root.parent_path().c_str(), 0755);
        fs::remove_all(root);
    }
    if (::geteuid() == 0) {
        ASSERT_TRUE(write());
        ASSERT_EQ(::chown(folder().c_str(), 1, 1), 0);
        EXPECT_EQ(found(), std::nullopt);
    }
    writeFile(cache / "file", "no folder");
    EXPECT_FALSE(CommitGraphCache(cache / "file/graphs").write(repo.repository(), placeOf(repo)));
}

TEST_F(CommitGraphCacheTest, AnswersStayRightAfterCommitsWereRemoved)
{
    const std::string lost = repo.head();
    ASSERT_TRUE(write());
    repo.git({"reset", "-q", "--hard", "HEAD~1"}).git({"reflog", "expire", "--expire=now", "--all"});
    repo.git({"-c", "gc.writeCommitGraph=false", "gc", "-q", "--prune=now"});
    RunContext context;
    context.environment = {{"GIT_ALTERNATE_OBJECT_DIRECTORIES", *found()}};
    const GitRepository reading = repo.repository().in(context);
    EXPECT_EQ(reading.log({}, 9, {}).size(), 2U);
    EXPECT_THROW(reading.log(HistoryScope::of(lost), 9, {}), std::exception);
    EXPECT_TRUE(write()) << "and it can still be added to";
}

TEST_F(CommitGraphCacheTest, SeveralWritersLeaveASoundOne)
{
    std::vector<std::thread> writers;
    for (int count = 0; count < 4; ++count)
        writers.emplace_back([&] { write(); });
    for (std::thread& writer : writers)
        writer.join();
    ASSERT_TRUE(found());
    EXPECT_TRUE(usesGraph(repo, *found()));
    writeFile(folder() / "info/commit-graphs/commit-graph-chain.lock", "left by a git that was killed");
    writeFile(folder() / "info/commit-graphs/tmp_graph_x", "likewise");
    repo.commit("4");
    EXPECT_TRUE(write());
    EXPECT_TRUE(found());
    EXPECT_FALSE(fs::exists(folder() / "info/commit-graphs/tmp_graph_x"));
}

TEST_F(CommitGraphCacheTest, RemovesTheLeastUsedAndAllWhenAsked)
{
    TestRepository second({"--object-format=sha256"});
    second.commit("one");
    ASSERT_TRUE(write());
    const fs::path first = folder();
    const std::array<timespec, 2> longAgo{timespec{1000000, 0}, timespec{1000000, 0}};
    ASSERT_EQ(::utimensat(AT_FDCWD, (first / "used").c_str(), longAgo.data(), 0), 0);
    const std::uintmax_t bytes = commitGraphBytes(root);
    EXPECT_GT(bytes, 1000U);
    EXPECT_TRUE(write(second, bytes));
    EXPECT_EQ(found(), std::nullopt);
    EXPECT_TRUE(found(second));
    removeCommitGraphs(root);
    EXPECT_EQ(commitGraphBytes(root), 0U);
    EXPECT_EQ(found(second), std::nullopt);
}

} // namespace
} // namespace gitkit
