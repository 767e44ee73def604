// SPDX-License-Identifier: GPL-3.0-or-later
// Comparing states, and taking files from them.

#include "GitKit/repository/Comparing.h"
#include "GitKit/repository/FileVersions.h"
#include "GitKit/repository/TreeChanges.h"
#include "GitKit/runner/GitError.h"
#include "tests/support/TestRepository.h"

#include <gtest/gtest.h>

#include <chrono>
#include <filesystem>

using namespace std::chrono_literals;

namespace gitkit {
namespace {

TEST(Comparing, TakesTheWorkingTreeForEitherSide)
{
    TestRepository repo;
    repo.write("a", "1\n").write("gone", "1\n").write("staged", "1\n").write("same", "1\n").commit("one");
    repo.write("a", "2\n").remove("gone").write("staged", "2\n").git({"add", "staged"}).write("unknown", "1\n");
    // Only its time has changed.
    std::filesystem::last_write_time(repo / "same", std::filesystem::file_time_type::clock::now() - 1h);
    const GitRepository git = repo.repository();
    const auto list = [&](const TreePair& trees) {
        std::string found;
        for (const CommitFile& file : changedFiles(git, trees, Renames::paired))
            found += std::string(1, file.status) + file.path + ' ';
        return found;
    };
    EXPECT_EQ(list({repo.head(), {}}), "Ma Dgone Mstaged ");
    EXPECT_EQ(list({{}, repo.head()}), "Ma Agone Mstaged ");
    EXPECT_EQ(changeCounts(git, {{}, repo.head()}, Renames::paired).size(), 3U);
    const auto texts = [&](const TreePair& trees) {
        std::string all;
        for (const DiffLine& line :
             git.treeDiff(trees, CommitFile{.path = "a", .originalPath = {}, .source = {}}).lines)
            all += line.kind == DiffLine::Kind::addition ? "+" + line.text : "";
        return all;
    };
    EXPECT_EQ(texts({repo.head(), {}}), "+2");
    EXPECT_EQ(texts({{}, repo.head()}), "+1");
}

TEST(Comparing, TellsTheSidesOfCommitsAndWhereTheyParted)
{
    TestRepository repo;
    repo.write("a", "1\n").commit("base").git({"checkout", "-q", "-b", "side"}).write("b", "1\n").commit("shared");
    repo.write("c", "1\n").commit("of side").git({"checkout", "-q", "main"}).write("d", "1\n").commit("of main");
    repo.git({"cherry-pick", "side~"});
    const GitRepository git = repo.repository();
    const auto hash = [&](const char* name) { return repo.read({"rev-parse", name}); };
    std::string marks;
    for (const CommitApart& apart : commitsApart(git, hash("main"), hash("side"), 99))
        marks += "<>="[static_cast<int>(apart.side)] + apart.commit.subject + '|';
    EXPECT_EQ(marks, "=shared|<of main|>of side|=shared|");
    EXPECT_EQ(commitsApart(git, hash("main"), hash("side"), 1).size(), 1U);
    EXPECT_EQ(mergeBases(git, hash("main"), hash("side")), std::vector{hash("main~2")});
    const std::string main = hash("main");
    repo.git({"merge", "-q", "--no-edit", "side"})
        .git({"checkout", "-q", "side"})
        .git({"merge", "-q", "--no-edit", main});
    EXPECT_EQ(mergeBases(git, hash("main"), hash("side")).size(), 2U) << "merged in both directions";
    repo.git({"checkout", "-q", "--orphan", "other"}).commit("unrelated");
    EXPECT_TRUE(mergeBases(git, hash("main"), hash("other")).empty());
}

TEST(Comparing, AMergeIsComparedWithAllItsParents)
{
    TestRepository repo;
    repo.write("a", "1\n").write("b", "1\n").commit("base");
    repo.git({"checkout", "-q", "-b", "side"}).write("a", "side\n").write("b", "2\n").commit("side");
    repo.git({"checkout", "-q", "main"}).write("a", "main\n").commit("main");
    int status = 0;
    runPlainGit(repo.path(), {"merge", "side"}, status);
    repo.write("a", "both\n").commit("merge");
    const std::vector<CommitFile> files = mergedFiles(repo.repository(), repo.head());
    ASSERT_EQ(files.size(), 1U);
    EXPECT_EQ(files.front().path, "a");
    const ParsedDiff diff = mergeDiff(repo.repository(), repo.head(), files.front(), {});
    EXPECT_FALSE(diff.lines.empty());
}

TEST(FileVersions, AreTakenIntoTheWorkingTreeAndNothingIsDeletedForThem)
{
    TestRepository repo;
    repo.git({"config", "core.autocrlf", "true"})
        .write("*x[1]", "1\r\n")
        .write("f", "1\r\n")
        .write("d/f", "1")
        .commit("one");
    const std::string old = repo.head();
    repo.git({"rm", "-q", "f", "d/f", "*x[[]1]"})
        .write("f/in", "kept")
        .write("d", "kept")
        .write("other", "1")
        .commit("two");
    repo.write("other", "staged").git({"add", "other"});
    const GitRepository git = repo.repository();
    EXPECT_EQ(fileBytes(git, {old, "*x[1]"}), "1\r\n") << "as it stands in a working tree";
    takeFile(git, {old, "*x[1]"});
    EXPECT_EQ(readFile(repo / "*x[1]"), "1\r\n");
    EXPECT_EQ(repo.read({"diff", "--cached", "--name-only"}), "other") << "the index is left alone";
    EXPECT_THROW(takeFile(git, {old, "f"}), GitError) << "a folder is there";
    EXPECT_THROW(takeFile(git, {old, "d/f"}), GitError) << "a file is where its folder was";
    EXPECT_EQ(readFile(repo / "f/in"), "kept");
    EXPECT_EQ(readFile(repo / "d"), "kept");
    EXPECT_THROW(takeFile(git, {old, "nowhere"}), GitError);
}

} // namespace
} // namespace gitkit
