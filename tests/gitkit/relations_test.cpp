// SPDX-License-Identifier: GPL-3.0-or-later
// What stands around a commit.

#include "GitKit/repository/RefLog.h"
#include "GitKit/repository/Relations.h"
#include "tests/support/TestRepository.h"

#include <gtest/gtest.h>

namespace gitkit {
namespace {

TEST(Relations, TellChildrenContainingRefsAndTheNearestTags)
{
    TestRepository repo;
    repo.commit("one").git({"tag", "-a", "-m", "note", "v1"}).commit("two");
    const std::string two = repo.head();
    repo.git({"branch", "side"}).commit("three").git({"tag", "v2"}).commit("four").git({"tag", "v3"});
    repo.git({"checkout", "-q", "side"}).commit("beside").git({"update-ref", "refs/remotes/origin/side", "HEAD"});
    repo.git({"symbolic-ref", "refs/remotes/origin/HEAD", "refs/remotes/origin/side"});
    const GitRepository git = repo.repository();
    std::vector<std::string> subjects;
    for (const Commit& child : children(git, two))
        subjects.push_back(child.subject);
    EXPECT_EQ(subjects, (std::vector<std::string>{"beside", "three"}));
    EXPECT_TRUE(children(git, repo.head()).empty());
    EXPECT_EQ(refsContaining(git, two),
              (std::vector<std::string>{"refs/heads/main", "refs/heads/side", "refs/remotes/origin/side",
                                        "refs/tags/v2", "refs/tags/v3"}));
    EXPECT_EQ(nearestTagBefore(git, two), "v1");
    EXPECT_EQ(oldestTagContaining(git, two), "v2");
    EXPECT_EQ(oldestTagContaining(git, repo.head()), "");
    EXPECT_EQ(nearestTagBefore(git, repo.read({"rev-parse", "v1^{commit}"})), "v1");
}

TEST(RefLog, NamesTheBranchThatWasLeftAndNoHash)
{
    EXPECT_EQ(branchLeft("checkout: moving from a to b to main"), "a to b");
    EXPECT_EQ(branchLeft("checkout: moving from " + std::string(40, 'a') + " to main"), "");
    EXPECT_EQ(branchLeft("reset: moving to main"), "");
}

} // namespace
} // namespace gitkit
