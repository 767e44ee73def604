// SPDX-License-Identifier: GPL-3.0-or-later
#include "GitKit/repository/Branches.h"
#include "GitKit/repository/GitRepository.h"
#include "GitKit/runner/GitError.h"
#include "tests/support/TestRepository.h"

#include <gtest/gtest.h>

namespace gitkit {
namespace {

struct BranchSettings : testing::Test {
    BranchSettings() { repo.write("a", "1").commit("one").git({"remote", "add", "origin", remote.path().string()}); }
    std::string setting(const char* name) const { return repo.read({"config", "--default", "none", "--get", name}); }

    TestRepository repo;
    TestRepository remote{{"--bare"}};
};

TEST_F(BranchSettings, ARenameTakesNoNameForAnOption)
{
    for (const char* name : {"-x", "HEAD", "a b"})
        EXPECT_THROW(renameBranch(repo.repository(), "main", name), GitError) << name;
    renameBranch(repo.repository(), "main", "other");
    EXPECT_EQ(repo.read({"branch", "--show-current"}), "other");
    repo.git({"branch", "taken"});
    try {
        renameBranch(repo.repository(), "other", "taken");
        FAIL();
    } catch (const GitError& error) {
        EXPECT_EQ(error.kind(), ErrorKind::alreadyExists);
    }
}

TEST_F(BranchSettings, AnUpstreamIsTheBranchThatIsMeant)
{
    repo.git({"update-ref", "refs/remotes/origin/x", "HEAD"}).git({"tag", "origin/x"}).git({"branch", "origin/x"});
    EXPECT_EQ(setUpstream(repo.repository(), "main", "refs/remotes/origin/x"), UpstreamKind::followed);
    EXPECT_EQ(setting("branch.main.merge"), "refs/heads/x");
    unsetUpstream(repo.repository(), "main");
    unsetUpstream(repo.repository(), "main"); // the second time is as good
    EXPECT_EQ(setting("branch.main.merge"), "none");

    // One that no fetch brings.
    repo.git({"config", "remote.origin.fetch", "+refs/heads/main:refs/remotes/origin/main"});
    EXPECT_EQ(setUpstream(repo.repository(), "main", "refs/remotes/origin/x"), UpstreamKind::unknown);
    EXPECT_EQ(setting("branch.main.merge") + ' ' + setting("branch.main.remote"), "refs/heads/x origin");
    EXPECT_THROW(setUpstream(repo.repository(), "gone", "refs/remotes/origin/x"), GitError);
    EXPECT_THROW(setUpstream(repo.repository(), "main", "--help"), GitError);
}

TEST(RemoteBranches, AreTakenApartAtTheLongestRemote)
{
    EXPECT_EQ(remoteBranchOf("a/b/c", {"a", "a/b"}), (RemoteBranch{"a/b", "c"}));
    EXPECT_EQ(remoteBranchOf("ab/c", {"a"}), RemoteBranch{});
}

} // namespace
} // namespace gitkit
