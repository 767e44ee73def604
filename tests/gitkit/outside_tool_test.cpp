// SPDX-License-Identifier: GPL-3.0-or-later
#include "GitKit/repository/OutsideTool.h"

#include "GitKit/repository/GitRepository.h"
#include "GitKit/runner/GitError.h"
#include "tests/support/TestRepository.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>

namespace gitkit {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;

TEST(OutsideTool, IsTheUsersAndNeverTheRepositorys)
{
    TestRepository repo;
    const auto command = [&repo](OutsideTool tool) { return outsideToolCommand(repo.repository(), tool, "-a [b]"); };
    const auto refusal = [&command](OutsideTool tool) {
        try {
            command(tool);
        } catch (const GitError& error) {
            return error.message();
        }
        return std::string();
    };
    EXPECT_THAT(refusal(OutsideTool::unstaged), HasSubstr("git config --global diff.tool NAME"));
    // The repository may choose among the tools that git knows, but not what they run.
    repo.git({"config", "diff.tool", "meld"});
    EXPECT_THAT(command(OutsideTool::unstaged), ElementsAre("difftool", "--no-prompt", "--gui", "--", "-a [b]"));
    EXPECT_THAT(command(OutsideTool::staged),
                ElementsAre("difftool", "--no-prompt", "--gui", "--cached", "--", "-a [b]"));
    EXPECT_THAT(refusal(OutsideTool::conflict), HasSubstr("merge.tool"));
    repo.git({"config", "merge.tool", "mine"}).git({"config", "mergetool.mine.cmd", "rm -rf /"});
    EXPECT_THAT(refusal(OutsideTool::conflict), HasSubstr("rm -rf /"));
    EXPECT_EQ(command(OutsideTool::unstaged).front(), "difftool");
    repo.git({"config", "difftool.meld.path", "./meld"});
    EXPECT_THAT(refusal(OutsideTool::unstaged), HasSubstr("./meld"));
    repo.git({"config", "--unset", "difftool.meld.path"}).git({"config", "diff.guitool", "nvimdiff2"});
    EXPECT_THAT(refusal(OutsideTool::staged), HasSubstr("runs in a terminal"));
}

} // namespace
} // namespace gitkit
