// SPDX-License-Identifier: GPL-3.0-or-later
#include "GitKit/repository/GitRepository.h"
#include "GitKit/repository/OwnCommand.h"
#include "GitKit/runner/GitError.h"
#include "tests/support/TestRepository.h"

#include <gtest/gtest.h>

#include <filesystem>

namespace gitkit {
namespace {

struct OwnCommands : testing::Test {
    TestRepository repo;

    /// Returns what a line has for its files, each in brackets.
    std::string told(const std::string& line, const std::vector<std::string>& files)
    {
        runOwnCommand(repo.repository(),
                      {.line = "show() { for one; do printf '[%s]' \"$one\"; done; }; show " + line + " > told",
                       .commit = "abc",
                       .branch = {},
                       .files = files});
        return readFile(repo / "told");
    }
};

TEST_F(OwnCommands, ANameIsNeverReadAsAPartOfTheLineInWhateverQuotesItStands)
{
    repo.write("a", "1").commit("one");
    const std::vector<std::string> odd{"it's", "a  b",         "\"", "$(touch made)", "`touch made`", "x\ny", "*",
                                       "-rf",  "; touch made", "\\", "${HOME}",       "{commit}",     "\xe4"};
    for (const std::string& name : odd) {
        EXPECT_EQ(told("{file} \"{file}\" '{file}' x{file}y", {name}),
                  "[" + name + "][" + name + "][" + name + "][x" + name + "y]");
        EXPECT_EQ(told("'say '{file}\" {files}\" {commit}", {name, name}),
                  "[say " + name + " " + name + "][" + name + "][abc]");
    }
    EXPECT_EQ(told("\"a \\\" {file}\" \\' {file}", {"b c"}), "[a \" b c]['][b c]");
    // Even where the quotes around it are not those that were seen, it is no more than words.
    told("\"$(echo \"{file}\")\"", {"$(touch made)"});
    EXPECT_FALSE(std::filesystem::exists(repo / "made"));
}

TEST_F(OwnCommands, RunAtTheTopAndTakeNamesLiterallyAndFailAsTheirLineDoes)
{
    repo.write("*", "1").write("b", "1").commit("one").git({"tag", "main"}).write("*", "2").write("b", "2");
    runOwnCommand(repo.repository(), {.line = "git add -- {files}", .commit = {}, .branch = {}, .files = {"*"}});
    EXPECT_EQ(repo.read({"diff", "--cached", "--name-only"}), "*");
    runOwnCommand(repo.repository(),
                  {.line = "printf %s {branch} > told", .commit = {}, .branch = "refs/heads/main", .files = {}});
    EXPECT_EQ(readFile(repo / "told"), "heads/main"); // the tag has the same name
    EXPECT_TRUE(lacksWhatItNames({.line = "x {branch}", .commit = "c", .branch = {}, .files = {}}));
    EXPECT_FALSE(lacksWhatItNames({.line = "x {commit}", .commit = "c", .branch = {}, .files = {}}));
    try {
        runOwnCommand(repo.repository(),
                      {.line = "echo said; echo why >&2; exit 7", .commit = {}, .branch = {}, .files = {}});
        FAIL();
    } catch (const GitError& error) {
        EXPECT_EQ(error.status(), 7);
        EXPECT_STREQ(error.what(), "why");
    }
}

} // namespace
} // namespace gitkit
