// SPDX-License-Identifier: GPL-3.0-or-later
// Pushes while somebody else pushes, too.

#include "GitKit/repository/GitRepository.h"
#include "GitKit/repository/Pushing.h"
#include "GitKit/repository/RewrittenBranches.h"
#include "GitKit/runner/GitError.h"
#include "tests/support/TestRepository.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace gitkit {
namespace {

using Names = std::vector<std::string>;

struct Pushing : testing::Test {
    /// Two clones of one repository whose main has one commit.
    Pushing()
    {
        repo.write("a", "1").commit("one").git({"remote", "add", "origin", remote.path().string()});
        repo.git({"push", "-q", "-u", "origin", "main"});
        bob.git({"remote", "add", "origin", remote.path().string()}).git({"fetch", "-q"});
        bob.git({"checkout", "-q", "-B", "main", "origin/main"});
    }
    std::string there(const char* ref = "refs/heads/main") const
    {
        return remote.read({"for-each-ref", "--format=%(objectname)", ref});
    }
    template <typename Run>
    ErrorKind refusal(Run run)
    {
        try {
            run(repo.repository());
        } catch (const GitError& error) {
            return error.kind();
        }
        ADD_FAILURE() << "it was done";
        return ErrorKind::other;
    }
    RemoteBranch main{"origin", "main"};
    TestRepository repo;
    TestRepository bob;
    TestRepository remote{{"--bare"}};
};

TEST_F(Pushing, TellsWhatGoesAndWhatComes)
{
    repo.git({"tag", "old"}).write("a", "2").commit("same change").write("c", "1").commit("ours");
    repo.git({"tag", "-a", "-m", "note", "v2"}).git({"tag", "light", "HEAD~1"});
    PushPreview found = pushPreview(repo.repository(), {"main", main});
    EXPECT_EQ(found.sent, 2);
    EXPECT_EQ(found.missed, 0);
    EXPECT_TRUE(found.isUpstream);
    EXPECT_EQ(found.tags, (Names{"light", "v2"}));
    EXPECT_EQ(pushPreview(repo.repository(), {"main", {"origin", "new"}}).sent, 2) << "the rest is there already";
    EXPECT_FALSE(pushPreview(repo.repository(), {"main", {"origin", "new"}}).isUpstream);

    bob.write("a", "2").commit("same change").write("b", "b").commit("bobs work").git({"push", "-q"});
    EXPECT_EQ(pushPreview(repo.repository(), {"main", main}).missed, 0) << "nothing of it is known";
    const std::string seen = lookAtRemote(repo.repository(), main);
    EXPECT_EQ(seen, there());
    found = pushPreview(repo.repository(), {"main", main, seen});
    EXPECT_EQ(found.missed, 2);
    EXPECT_EQ(found.foreign.at(0), (ForeignCommit{seen, "Ada", "bobs work"}));
    using enum RangeDiffRow::Kind;
    ASSERT_EQ(found.comparison.size(), 3U);
    EXPECT_EQ(found.comparison[0].kind, same);
    EXPECT_EQ(found.comparison[1], (RangeDiffRow{gone, seen, "", "bobs work"}));
    EXPECT_EQ(found.comparison[2], (RangeDiffRow{come, "", repo.head(), "ours"}));
    EXPECT_EQ(lookAtRemote(repo.repository(), {"origin", "ain"}), "") << "the end of a name is another branch";

    // Where the remote's rules give its branches another name here.
    repo.git({"config", "remote.origin.fetch", "+refs/heads/*:refs/elsewhere/*"}).git({"fetch", "-q"});
    EXPECT_EQ(pushPreview(repo.repository(), {"main", main}).there, seen);
}

TEST_F(Pushing, ReplacesOnlyWhatWasSeen)
{
    const std::string seen = there();
    bob.write("b", "b").commit("bobs work").git({"push", "-q"});
    repo.write("a", "2").git({"commit", "-q", "--amend", "-am", "rewritten"}).git({"fetch", "-q"});
    const std::string bobs = there();
    const auto push = [&](const std::string& expected) {
        return [this, expected](const GitRepository& door) {
            pushBranch(door, {.branch = "main", .to = main, .there = expected, .replaces = true});
        };
    };
    EXPECT_EQ(refusal(push(seen)), ErrorKind::notFastForward) << "a fetch in the background makes no difference";
    EXPECT_EQ(there(), bobs);
    push(bobs)(repo.repository());
    EXPECT_EQ(there(), repo.head());
}

TEST_F(Pushing, TellsItsOwnOldVersionsFromTheWorkOfOthers)
{
    repo.git({"checkout", "-q", "-b", "mid"}).write("b", "1").commit("two").git({"push", "-q", "-u", "origin", "mid"});
    repo.git({"branch", "ahead"}).git({"push", "-q", "-u", "origin", "ahead"}).git({"branch", "own", "mid"});
    repo.git({"checkout", "-q", "-B", "main"}).write("c", "1").commit("three");
    repo.git({"push", "-q", "-u", "origin", "main"});
    const std::string old = repo.head();
    repo.git({"checkout", "-q", "mid"}).git({"commit", "-q", "--amend", "-m", "two again"});
    repo.git({"rebase", "-q", "--onto", "mid", "HEAD@{1}", "main"}).git({"branch", "-f", "own", "mid"});
    const Names all{"refs/heads/main", "refs/heads/mid", "refs/heads/ahead", "refs/heads/own"};

    const RewrittenBranch mid{"mid", {"origin", "mid"}, there("refs/heads/mid"), 1};
    std::vector<RewrittenBranch> found = rewrittenBranches(repo.repository(), all);
    EXPECT_EQ(found, (std::vector{RewrittenBranch{"main", main, old, 2}, mid}));
    EXPECT_EQ(topmost(repo.repository(), found)->branch, "main");
    std::ranges::reverse(found);
    repo.git({"checkout", "-q", "--detach"});
    EXPECT_EQ(topmost(repo.repository(), found)->branch, "main") << "it stands on the other one";
    const PushPreview preview = pushPreview(repo.repository(), {"main", main});
    EXPECT_EQ(preview.strangers, 0);
    EXPECT_EQ(preview.along, (std::vector{mid}));

    // Both go or none.
    bob.git({"fetch", "-q"}).git({"checkout", "-q", "mid"}).write("x", "1").commit("bobs").git({"push", "-q"});
    const std::string bobs = there("refs/heads/mid");
    const Push push{.branch = "main", .to = main, .there = old, .replaces = true, .along = preview.along};
    EXPECT_EQ(refusal([&](const GitRepository& door) { pushBranch(door, push); }), ErrorKind::notFastForward);
    EXPECT_EQ(there(), old);
    EXPECT_EQ(lookAtRemote(repo.repository(), mid.to), bobs);
    EXPECT_TRUE(pushPreview(repo.repository(), {"main", main}).along.empty()) << "that would take what bob has made";
    EXPECT_EQ(strangersIn(repo.repository(), "refs/heads/mid", bobs), 1);
    remote.git({"update-ref", "refs/heads/mid", mid.there});
    pushBranch(repo.repository(), push);
    EXPECT_EQ(there(), repo.head());
    EXPECT_EQ(there("refs/heads/mid"), repo.read({"rev-parse", "mid"}));

    // And both go back, or none.
    std::vector<LostThere> lost{{main, old, repo.head()}, {mid.to, mid.there, bobs}};
    EXPECT_EQ(refusal([&](const GitRepository& door) { pushBack(door, lost); }), ErrorKind::changedMeanwhile);
    EXPECT_EQ(there(), repo.head());
    lost[1].left = there("refs/heads/mid");
    pushBack(repo.repository(), lost);
    EXPECT_EQ(there() + there("refs/heads/mid"), old + mid.there);
}

TEST_F(Pushing, AFirstPushMakesABranchAndReplacesNone)
{
    bob.git({"push", "-q", "origin", "main:new"});
    repo.write("a", "2").commit("two").git({"tag", "dup"}).git({"branch", "dup"});
    EXPECT_EQ(
        refusal([&](const GitRepository& door) { pushBranch(door, {.branch = "main", .to = {"origin", "new"}}); }),
        ErrorKind::notFastForward);
    pushBranch(repo.repository(), {.branch = "dup", .to = {"origin", "dup"}, .setsUpstream = true});
    EXPECT_EQ(there("refs/heads/dup"), repo.head());
    EXPECT_EQ(there("refs/tags/dup"), "");
    EXPECT_EQ(repo.read({"config", "branch.dup.merge"}), "refs/heads/dup");
    repo.git({"config", "remote.origin.mirror", "true"});
    EXPECT_EQ(refusal([&](const GitRepository& door) { pushBranch(door, {.branch = "main", .to = {"origin", "x"}}); }),
              ErrorKind::other);
}

TEST_F(Pushing, TagsGoAlongOrNothingGoes)
{
    repo.git({"config", "push.followTags", "true"});
    repo.write("a", "2").commit("two").git({"tag", "v2"}).git({"tag", "-a", "-m", "n", "other"});
    const Push push{.branch = "main", .to = main, .there = there(), .tags = {"v2"}};
    bob.write("b", "b").commit("bobs work").git({"push", "-q"});
    EXPECT_EQ(refusal([&](const GitRepository& door) { pushBranch(door, push); }), ErrorKind::notFastForward);
    EXPECT_EQ(there("refs/tags"), "");
    repo.git({"pull", "-q", "--rebase"}).git({"tag", "-f", "v2"});
    pushBranch(repo.repository(), push);
    EXPECT_EQ(remote.read({"for-each-ref", "--format=%(refname)", "refs/tags"}), "refs/tags/v2");
}

TEST_F(Pushing, DeletesOnlyWhatWasSeen)
{
    repo.git({"push", "-q", "origin", "main:topic"}).git({"tag", "-a", "-m", "n", "v1"});
    const std::string seen = there();
    const std::string tag = repo.read({"rev-parse", "v1"});
    pushTag(repo.repository(), "origin", "v1");
    EXPECT_EQ(there("refs/tags/v1"), tag);
    bob.write("b", "b").commit("bobs work").git({"push", "-q", "origin", "main:topic"});
    const auto deletion = [&](const std::string& ref, const std::string& expected) {
        return [ref, expected](const GitRepository& door) { deleteOnRemote(door, "origin", ref, expected); };
    };
    EXPECT_EQ(refusal(deletion("refs/heads/topic", seen)), ErrorKind::changedMeanwhile);
    EXPECT_EQ(refusal(deletion("refs/tags/v1", seen)), ErrorKind::changedMeanwhile);
    deletion("refs/heads/topic", there("refs/heads/topic"))(repo.repository());
    deletion("refs/tags/v1", tag)(repo.repository());
    EXPECT_EQ(there("refs/heads/topic") + there("refs/tags"), "");
    EXPECT_EQ(refusal(deletion("refs/tags/v1", tag)), ErrorKind::changedMeanwhile) << "it is gone already";
}

TEST(RangeDiffs, AreReadAsGitPrintsThem)
{
    using enum RangeDiffRow::Kind;
    const std::string one(40, 'a');
    const std::string two(40, 'b');
    const std::string none(40, '-');
    EXPECT_EQ(
        parseRangeDiff(" 1:  " + one + " ! 12:  " + two + " a  subject\n-:  " + none + " >  2:  " + one + " b\nodd\n"),
        (std::vector<RangeDiffRow>{{changed, one, two, "a  subject"}, {come, "", one, "b"}}));
}

} // namespace
} // namespace gitkit
