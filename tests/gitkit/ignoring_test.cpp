// SPDX-License-Identifier: GPL-3.0-or-later
#include "GitKit/repository/Ignoring.h"

#include "GitKit/repository/GitRepository.h"
#include "GitKit/runner/GitError.h"
#include "tests/support/TestRepository.h"
#include "tests/support/WholeState.h"

#include <gtest/gtest.h>

#include <filesystem>

namespace gitkit {
namespace {

namespace fs = std::filesystem;

IgnoreRequest requestFor(const std::vector<std::string>& files, IgnorePlace place = IgnorePlace::repository)
{
    IgnoreRequest request{.patterns = {}, .files = files, .place = place};
    for (const std::string& file : files)
        request.patterns.push_back(ignorePatternOf(file).value());
    return request;
}

TEST(Ignoring, EachPatternHitsItsFileAndNoOther)
{
    const std::vector<std::string> names{
        "a b ",  "a  ",    "#a",      "!a",     "a*b", "axb", "a?b",  "[a]",          "a",   "a\\",
        "a\\ b", "a\tb\t", "d/b*/c ", "d/bx/c", "**",  "-a",  "a[b",  "\xe4.t",       "a\r", "\"a\"",
        "a.b.c", ".a",     "a b/ c",  "ab/c",   " a",  "{a}", "a\rb", "\xef\xbb\xbf", "~"};
    for (const std::string& name : names) {
        SCOPED_TRACE(name);
        if (name == "a\r") {
            EXPECT_FALSE(ignorePatternOf(name)) << "git would read it as a part of the line's end";
            continue;
        }
        TestRepository repo;
        EXPECT_TRUE(ignore(repo.repository(), requestFor({name})).empty());
        std::string input;
        for (const std::string& other : names)
            input += other + '\0';
        EXPECT_EQ(repo.read({"check-ignore", "-z", "--no-index", "--stdin"}, input), name + '\0');
    }
    EXPECT_FALSE(ignorePatternOf("a\nb"));
    EXPECT_EQ(ignorePatternOfEnding("dir.d/a.tar.gz"), "*.gz");
    EXPECT_EQ(ignorePatternOfEnding("a.[x] "), "*.\\[x]\\ ");
    for (const char* name : {"dir.d/a", ".env", "a.", "a.x\r", "a.b\nc"})
        EXPECT_FALSE(ignorePatternOfEnding(name)) << name;
}

TEST(Ignoring, AddsToTheListWhatIsMissingWithItsOwnLineEnds)
{
    EXPECT_EQ(withPatterns("", {"/a"}), "/a\n");
    EXPECT_EQ(withPatterns("*.o", {"/a", "/b"}), "*.o\n/a\n/b\n") << "a line end was missing";
    EXPECT_EQ(withPatterns("*.o\r\n*.a", {"/a"}), "*.o\r\n*.a\r\n/a\r\n");
    EXPECT_EQ(withPatterns("/a\r\n/b\r\n", {"/b", "/a"}), "/a\r\n/b\r\n");
    EXPECT_EQ(withPatterns("/a\n!/a\n", {"/a"}), "/a\n!/a\n/a\n") << "an exception comes after it";
}

TEST(Ignoring, ALinkedListIsNotWrittenAndStaysAsItIs)
{
    TestRepository repo;
    repo.write("rules", "x\n").write("a", "");
    fs::create_symlink("rules", repo / ".gitignore");
    EXPECT_THROW(ignore(repo.repository(), requestFor({"a"})), GitError);
    EXPECT_EQ(bytesAt(repo / "rules"), "x\n");
    fs::remove(repo / ".gitignore");
    fs::create_directory(repo / ".gitignore");
    EXPECT_THROW(ignore(repo.repository(), requestFor({"a"})), GitError);
}

TEST(Ignoring, TheOwnListIsThatOfAllWorkingTrees)
{
    TestRepository repo;
    repo.write("a", "1").commit("one");
    fs::remove_all(repo / ".git/info");
    TemporaryFolder folder;
    const fs::path tree = folder.path() / "tree";
    repo.git({"worktree", "add", "-q", tree.string()});
    EXPECT_TRUE(ignore(GitRepository(tree), requestFor({"b"}, IgnorePlace::own)).empty());
    EXPECT_EQ(bytesAt(repo / ".git/info/exclude"), "/b\n");
    EXPECT_FALSE(fs::exists(tree / ".gitignore"));
}

TEST(Ignoring, TellsTheExceptionThatKeepsAFileFromBeingIgnored)
{
    TestRepository repo;
    repo.write("dir/.gitignore", "x\n!*.log\n").write("dir/a.log", "");
    const auto left = ignore(repo.repository(), {.patterns = {"*.log"}, .files = {"dir/a.log"}});
    EXPECT_EQ(left, (std::vector<NotIgnored>{{"dir/a.log", "dir/.gitignore", "2", "!*.log"}}));
}

TEST(Ignoring, StopsTrackingOnlyWhatIsMeantAndLeavesItOnDisk)
{
    TestRepository repo;
    repo.write("a", "1").write("b*", "1").write("bx", "1").commit("one");
    repo.write("b*", "staged").git({"add", "-A"}).write("b*", "changed").write("new", "");
    IgnoreRequest request = requestFor({"a", "b*", "new"});
    EXPECT_TRUE(ignore(repo.repository(), request).empty()) << "tracked files are not expected to be ignored";
    EXPECT_EQ(repo.read({"ls-files"}), "a\nb*\nbx");
    request.stopsTracking = true;
    EXPECT_TRUE(ignore(repo.repository(), request).empty());
    EXPECT_EQ(repo.read({"ls-files"}), "bx");
    EXPECT_EQ(bytesAt(repo / "b*"), "changed");
    EXPECT_EQ(bytesAt(repo / ".gitignore"), "/a\n/b\\*\n/new\n");
}

TEST(Ignoring, AListIsPutBackWhereTheIndexIsLocked)
{
    TestRepository repo;
    repo.write("a", "1").commit("one").write(".git/index.lock", "");
    IgnoreRequest request = requestFor({"a"});
    request.stopsTracking = true;
    EXPECT_THROW(ignore(repo.repository(), request), GitError);
    EXPECT_FALSE(fs::exists(repo / ".gitignore"));
}

} // namespace
} // namespace gitkit
