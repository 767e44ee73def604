// SPDX-License-Identifier: GPL-3.0-or-later
#include "GitKit/repository/Folders.h"
#include "GitKit/repository/Worktrees.h"
#include "GitKit/runner/GitError.h"
#include "tests/support/TestRepository.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>
#include <string_view>
#include <vector>

namespace gitkit {
namespace {

namespace fs = std::filesystem;
using std::string_view_literals::operator""sv;

void put(const fs::path& file, std::string_view bytes)
{
    fs::create_directories(file.parent_path());
    std::ofstream(file, std::ios::binary) << bytes;
}

std::string bytesIn(const fs::path& file)
{
    std::ostringstream bytes;
    bytes << std::ifstream(file, std::ios::binary).rdbuf();
    return bytes.str();
}

/// A repository with a second working tree, which ignores *.env and build.
struct Worktrees : testing::Test {
    Worktrees()
    {
        repo.write("a", "1\n").write(".gitignore", "*.env\nbuild\n").commit("one").git({"branch", "topic"});
        addWorktree(door, {.folder = folder, .branch = "topic"});
    }

    Worktree tree(const fs::path& place) const
    {
        for (const Worktree& each : worktrees(door).trees) {
            if (each.folder == place)
                return each;
        }
        return {};
    }
    Worktree tree() const { return tree(folder); }
    std::string refusal(const WorktreeRemoval& how = {}) const
    {
        try {
            removeWorktree(door, tree(), how);
        } catch (const GitError& error) {
            return error.message();
        }
        return {};
    }
    std::string gitIn(const fs::path& place, const std::vector<std::string>& arguments) const
    {
        int status = 0;
        return runPlainGit(place, arguments, status);
    }

    TestRepository repo;
    TemporaryFolder beside;
    GitRepository door = repo.repository();
    fs::path folder = beside / "line\nfeed";
};

TEST(WorktreeList, IsReadWithAndWithoutSafeLineEnds)
{
    constexpr auto safe = "worktree /a\0HEAD 11\0branch refs/heads/main\0\0worktree /b\nx\0HEAD 22\0detached\0locked "
                          "on a \"stick\"\nof mine\0prunable gone\0\0"sv;
    const WorktreeList list = parseWorktrees(safe, '\0');
    ASSERT_EQ(list.trees.size(), 2U);
    EXPECT_EQ(list.trees[0], (Worktree{.folder = "/a", .head = "11", .branch = "refs/heads/main", .isMain = true}));
    EXPECT_EQ(list.trees[1],
              (Worktree{.folder = "/b\nx", .head = "22", .isMissing = true, .lock = "on a \"stick\"\nof mine"}));

    constexpr auto lines = "worktree /a\nbare\n\nworktree /b\nx\nHEAD 22\ndetached\n\n"
                           "worktree /c\nHEAD 33\nlocked \"one\\ntwo\"\n\n"sv;
    const WorktreeList unsafe = parseWorktrees(lines, '\n');
    EXPECT_EQ(unsafe.unreadable, 1) << "a path with a line feed names another folder";
    ASSERT_EQ(unsafe.trees.size(), 2U);
    EXPECT_TRUE(unsafe.trees[0].isBare);
    EXPECT_EQ(unsafe.trees[1], (Worktree{.folder = "/c", .head = "33", .lock = "one\ntwo"}));
}

TEST_F(Worktrees, AreListedFromEachOfThem)
{
    EXPECT_FALSE(mayHaveWorktrees(TestRepository().path()));
    EXPECT_TRUE(mayHaveWorktrees(repo.path()));
    EXPECT_TRUE(mayHaveWorktrees(folder));
    lockWorktree(door, folder, "for \"later\"");
    const std::vector<Worktree> here = worktrees(door).trees;
    ASSERT_EQ(here.size(), 2U);
    EXPECT_TRUE(here[0].isMain && here[0].isHere);
    EXPECT_EQ(here[1],
              (Worktree{.folder = folder, .head = repo.head(), .branch = "refs/heads/topic", .lock = "for \"later\""}));
    EXPECT_TRUE(worktrees(GitRepository(folder)).trees[1].isHere);
    unlockWorktree(door, folder);
    EXPECT_FALSE(tree().lock);
}

TEST_F(Worktrees, AreMadeOnTheBranchThatWasMeant)
{
    const std::string first = repo.head();
    repo.write("a", "2\n").commit("two").git({"tag", "twin", "HEAD"}).git({"branch", "twin", first});
    addWorktree(door, {.folder = beside / "twin", .branch = "twin"});
    EXPECT_EQ(tree(beside / "twin").branch, "refs/heads/twin");
    EXPECT_EQ(bytesIn(beside / "twin" / "a"), "1\n") << "the tag of the same name is not the branch";

    repo.git({"config", "branch.autoSetupMerge", "always"});
    addWorktree(door, {.folder = beside / "new", .branch = "new", .isNewBranch = true, .start = "refs/heads/topic"});
    EXPECT_EQ(tree(beside / "new").head, first);
    EXPECT_EQ(gitIn(repo.path(), {"config", "--get-regexp", "^branch\\.new"}), "") << "it tracks nothing";
    EXPECT_THROW(addWorktree(door, {.folder = beside / "x", .branch = "--detach", .isNewBranch = true}), GitError);
    EXPECT_THROW(addWorktree(door, {.folder = beside / "x", .branch = "--detach"}), GitError);
    put(beside / "full" / "mine", "1");
    EXPECT_THROW(addWorktree(door, {.folder = beside / "full", .branch = "other", .isNewBranch = true}), GitError);
    EXPECT_EQ(repo.read({"branch", "--list", "other"}), "");
}

TEST_F(Worktrees, RemovingOneKeepsItsIgnoredFiles)
{
    put(folder / "my.env", "secret");
    put(folder / "build" / "deep" / "out", "1234");
    EXPECT_EQ(worktreeLosses(door, tree()),
              (WorktreeLosses{.ignored = {{.path = "build/", .bytes = 4}, {.path = "my.env", .bytes = 6}}}));
    const RemovedWorktree removed = removeWorktree(door, tree(), {});
    EXPECT_EQ(removed.count, 2U);
    EXPECT_EQ(removed.saved.parent_path(), gitDirectories(door).common / "plovik" / "saved");
    EXPECT_EQ(bytesIn(removed.saved / "my.env"), "secret");
    EXPECT_EQ(bytesIn(removed.saved / "build" / "deep" / "out"), "1234");
    EXPECT_FALSE(fs::exists(folder));
    EXPECT_EQ(tree(), Worktree()) << "git knows it no more";

    addWorktree(door, {.folder = folder, .branch = "topic"});
    EXPECT_EQ(removeWorktree(door, tree(), {}), RemovedWorktree()) << "nothing was in it";
}

TEST_F(Worktrees, RemovingOneWithChangesOrALockMustBeMeant)
{
    put(folder / "a", "staged\n");
    gitIn(folder, {"add", "a"});
    put(folder / "a", "changed\n");
    put(folder / "notes" / "n", "untracked");
    const WorktreeLosses losses = worktreeLosses(door, tree());
    EXPECT_EQ(losses.changed, std::vector<std::string>{"a"});
    ASSERT_EQ(losses.untracked.size(), 1U);
    EXPECT_EQ(losses.untracked[0], (SizedPath{.path = "notes/", .bytes = 9}));
    EXPECT_NE(refusal().find("not committed"), std::string::npos);
    lockWorktree(door, folder, "");
    EXPECT_NE(refusal({.evenChanged = true}).find("is locked"), std::string::npos);
    EXPECT_EQ(bytesIn(folder / "notes" / "n"), "untracked");

    const RemovedWorktree removed = removeWorktree(door, tree(), {.evenChanged = true, .evenLocked = true});
    EXPECT_EQ(bytesIn(removed.saved / "a"), "changed\n");
    EXPECT_EQ(bytesIn(removed.saved / ".staged" / "a"), "staged\n");
    EXPECT_EQ(bytesIn(removed.saved / "notes" / "n"), "untracked");
    EXPECT_FALSE(fs::exists(folder));
}

TEST_F(Worktrees, AFailedRemovalLeavesEverythingInItsPlace)
{
    put(folder / "my.env", "secret");
    put(folder / "a", "changed\n");
    const fs::path own = gitDirectories(GitRepository(folder)).own;
    put(own / "plovik" / "kept" / "1" / "f", "discarded");
    // Git finds the folder's link broken, but only when it is to remove it.
    const std::string link = bytesIn(own / "gitdir");
    put(own / "gitdir", (beside / "elsewhere" / ".git\n").string());
    Worktree known = tree();
    known.folder = folder;
    EXPECT_THROW(removeWorktree(door, known, {.evenChanged = true}), GitError);
    put(own / "gitdir", link);
    EXPECT_EQ(bytesIn(folder / "my.env"), "secret");
    EXPECT_EQ(bytesIn(folder / "a"), "changed\n");
    EXPECT_EQ(bytesIn(own / "plovik" / "kept" / "1" / "f"), "discarded");
    EXPECT_EQ(gitIn(folder, {"status", "--porcelain"}), " M a\n");

    const RemovedWorktree removed = removeWorktree(door, tree(), {.evenChanged = true});
    EXPECT_EQ(bytesIn(removed.saved / ".discarded" / "1" / "f"), "discarded");
}

TEST_F(Worktrees, RemovingOneNeverTakesCommitsUnsaidOrRepositoriesInside)
{
    gitIn(folder, {"checkout", "-q", "--detach"});
    gitIn(folder, {"commit", "-q", "--allow-empty", "-m", "stray"});
    EXPECT_EQ(worktreeLosses(door, tree()).strayCommits, 1);
    TestRepository inner;
    inner.write("i", "1").commit("inner");
    gitIn(folder, {"-c", "protocol.file.allow=always", "submodule", "add", "-q", inner.path().string(), "sub"});
    gitIn(folder, {"commit", "-q", "-m", "with a submodule"});
    EXPECT_TRUE(worktreeLosses(door, tree()).hasSubmodules);
    EXPECT_NE(refusal({.evenChanged = true, .evenLocked = true}).find("submodules"), std::string::npos);
    EXPECT_EQ(bytesIn(folder / "sub" / "i"), "1");

    fs::path outer = beside / "outer";
    addWorktree(door, {.folder = outer, .branch = "outer", .isNewBranch = true});
    addWorktree(door, {.folder = outer / "build" / "in", .branch = "in", .isNewBranch = true});
    EXPECT_THROW(removeWorktree(door, tree(outer), {.evenChanged = true}), GitError);
    EXPECT_EQ(bytesIn(outer / "build" / "in" / "a"), "1\n");
    Worktree main = worktrees(door).trees[0];
    EXPECT_THROW(removeWorktree(door, main, {.evenChanged = true, .evenLocked = true}), GitError);
}

TEST_F(Worktrees, OnlyAMissingOneIsForgotten)
{
    EXPECT_THROW(forgetWorktree(door, folder), GitError);
    EXPECT_TRUE(fs::exists(folder / "a"));
    addWorktree(door, {.folder = beside / "other", .branch = "other", .isNewBranch = true});
    fs::remove_all(beside / "other");
    fs::rename(folder, beside / "moved");
    EXPECT_TRUE(tree().isMissing);
    forgetWorktree(door, folder);
    EXPECT_EQ(tree(), Worktree());
    EXPECT_TRUE(tree(beside / "other").isMissing) << "that one alone";
}

} // namespace
} // namespace gitkit
