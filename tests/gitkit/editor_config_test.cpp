// SPDX-License-Identifier: GPL-3.0-or-later
#include "GitKit/EditorConfig.h"
#include "tests/support/TestRepository.h"

#include <gtest/gtest.h>

#include <chrono>

namespace gitkit {
namespace {

TEST(EditorConfig, MatchesItsGlobs)
{
    const auto matches = [](std::string_view glob, std::string_view path) { return editorGlobMatches(glob, path); };
    for (const auto& [glob, path] : std::vector<std::pair<std::string, std::string>>{{"*", "a"},
                                                                                     {"*", "a/b.c"},
                                                                                     {"*.c", "a/b.c"},
                                                                                     {"Makefile", "x/Makefile"},
                                                                                     {"a/*.c", "a/b.c"},
                                                                                     {"/a/*.c", "a/b.c"},
                                                                                     {"a/**", "a/b/c.d"},
                                                                                     {"a/**/c", "a/c"},
                                                                                     {"a/**/c", "a/b/b/c"},
                                                                                     {"**/c", "c"},
                                                                                     {"**.c", "x/b.c"},
                                                                                     {"?.c", "b.c"},
                                                                                     {"?.c", "\xC3\xA9.c"},
                                                                                     {"[abc].c", "x/b.c"},
                                                                                     {"[a-c].c", "b.c"},
                                                                                     {"[!x].c", "b.c"},
                                                                                     {"*.{c,h}", "b.h"},
                                                                                     {"{a,b{c,d}}.h", "bd.h"},
                                                                                     {"{a,}.h", ".h"},
                                                                                     {"v{1..12}", "v7"},
                                                                                     {"{one}", "{one}"},
                                                                                     {"a\\*", "a*"},
                                                                                     {"{a,b", "{a,b"},
                                                                                     {"[ab", "[ab"},
                                                                                     {"src/{a,b/c}.h", "src/b/c.h"}})
        EXPECT_TRUE(matches(glob, path)) << glob << " " << path;
    for (const auto& [glob, path] : std::vector<std::pair<std::string, std::string>>{{"*.c", "b.cc"},
                                                                                     {"a/*.c", "a/b/c.c"},
                                                                                     {"a/*.c", "x/a/b.c"},
                                                                                     {"/b.c", "a/b.c"},
                                                                                     {"?.c", "bb.c"},
                                                                                     {"[!b].c", "b.c"},
                                                                                     {"*.{c,h}", "b.d"},
                                                                                     {"v{1..12}", "v13"},
                                                                                     {"v{1..12}", "vx"},
                                                                                     {"{one}", "one"},
                                                                                     {"a\\*", "ab"},
                                                                                     {"", "a"}})
        EXPECT_FALSE(matches(glob, path)) << glob << " " << path;
}

TEST(EditorConfig, TakesNoTimeForGlobsThatBranchAndBranch)
{
    std::string glob;
    for (int i = 0; i < 120; ++i)
        glob += "{a,*a}*";
    const auto start = std::chrono::steady_clock::now();
    EXPECT_FALSE(editorGlobMatches(glob + "b", std::string(2000, 'a')));
    EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(10)); // tried one by one, it never ends
}

TEST(EditorConfig, TheNearestFileTellsTheTabWidthUpToTheRoot)
{
    TestRepository repo;
    repo.write(".editorconfig",
               "\xEF\xBB\xBFindent_size = 7\n; [*]\n[*]\r\nindent_size = 2\nTab_Width=4\n"
               "[*.py]\ntab_width = unset\nindent_size=3\n[*.mk]\ntab_width=wide\nindent_size=tab\n[big]\n"
               "tab_width=4000\n");
    repo.write("sub/.editorconfig", "[*.c]\nindent_size = 6\n[/deep/*.h]\ntab_width = 5\n");
    repo.write("sub/own/.editorconfig", "ROOT = TRUE\n[*.x]\ntab_width = 1\n");
    repo.commit("one");
    const auto width = [&](const std::string& path) { return editorTabWidth(repo.path(), path); };
    EXPECT_EQ(width("a.c"), 4);
    EXPECT_EQ(width("a.py"), 3) << "unset, so the size of an indent counts";
    EXPECT_EQ(width("sub/gone/a.mk"), std::nullopt);
    EXPECT_EQ(width("big"), 32);
    EXPECT_EQ(width("sub/a.c"), 4) << "the tab width of the folder above goes before the indent of the nearer one";
    EXPECT_EQ(width("sub/deep/a.h"), 5);
    EXPECT_EQ(width("sub/own/a.c"), std::nullopt) << "nothing above a root is read";
    EXPECT_EQ(width("sub/own/a.x"), 1);

    // Diffs and blames carry it.
    repo.write("sub/deep/a.h", "\tone\n");
    for (const FileChange& file : repo.repository().status().files)
        EXPECT_EQ(repo.repository().workingDiff(file, {}).front().diff.tabWidth, 5);
}

} // namespace
} // namespace gitkit
