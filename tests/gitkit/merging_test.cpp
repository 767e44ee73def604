// SPDX-License-Identifier: GPL-3.0-or-later
#include "GitKit/repository/Branches.h"
#include "GitKit/repository/GitRepository.h"
#include "GitKit/repository/Merging.h"
#include "GitKit/repository/PickPreviews.h"
#include "GitKit/repository/Picking.h"
#include "GitKit/runner/GitError.h"
#include "GitKit/runner/GitVersion.h"
#include "tests/support/TestRepository.h"
#include "tests/support/WholeState.h"

#include <gtest/gtest.h>

#include <filesystem>

namespace gitkit {
namespace {

using Outcome = MergePreview::Outcome;

struct MergeWays : testing::Test {
    /// topic has one commit, which changes `a` and adds `t`.
    MergeWays()
    {
        repo.write("a", "1\n").write("b", "1\n").commit("one").git({"checkout", "-q", "-b", "topic"});
        repo.write("a", "topic\n").write("t", "t").commit("on topic").git({"checkout", "-q", "main"});
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
    std::string parents() const { return repo.read({"log", "-1", "--format=%P"}); }

    TestRepository repo;
};

TEST_F(MergeWays, ForetellsWhatComesAndLeavesNothingBehind)
{
    const auto foretold = [this] { return mergePreview(repo.repository(), "refs/heads/topic"); };
    EXPECT_EQ(foretold(), (MergePreview{.commits = 1, .own = 0, .outcome = Outcome::clean, .conflicts = {}}));
    repo.write("b", "2\n").commit("ours").git({"config", "merge.ff", "only"});
    const std::string objects = repo.read({"count-objects", "-v"});
    const bool canTell = can(Ability::mergesInMemory);
    MergePreview found = foretold();
    EXPECT_EQ(found.own, 1);
    EXPECT_TRUE(found.alwaysFastForward);
    EXPECT_EQ(found.outcome, canTell ? Outcome::clean : Outcome::unknown);
    EXPECT_EQ(repo.read({"count-objects", "-v"}), objects);

    repo.write("a", "ours\n").commit("clash").git({"config", "rerere.enabled", "true"});
    found = foretold();
    EXPECT_TRUE(found.remembersResolutions);
    EXPECT_EQ(found.outcome, canTell ? Outcome::conflicts : Outcome::unknown);
    EXPECT_EQ(found.conflicts, canTell ? std::vector<std::string>{"a"} : std::vector<std::string>());
    // Contents that are somewhere else are not fetched for it.
    repo.git({"config", "remote.origin.promisor", "true"});
    EXPECT_EQ(foretold().outcome, Outcome::unknown);
    EXPECT_EQ(mergePreview(repo.repository(), repo.head()).commits, 0);
}

TEST_F(MergeWays, ForetellsARebaseCommitByCommit)
{
    const auto foretold = [this](const std::string& onto) { return rebasePreview(repo.repository(), onto); };
    const bool canTell = can(Ability::mergesInMemory);
    const Outcome clean = canTell ? Outcome::clean : Outcome::unknown;
    EXPECT_EQ(foretold("refs/heads/topic"), (RebasePreview{.commits = 0, .beneath = 1, .outcome = Outcome::clean}));
    repo.write("b", "2\n").commit("ours").write("b", "3\n").commit("ours, too");
    const std::string objects = repo.read({"count-objects", "-v"});
    EXPECT_EQ(foretold("refs/heads/topic"), (RebasePreview{.commits = 2, .beneath = 1, .outcome = clean}));
    EXPECT_EQ(repo.read({"count-objects", "-v"}), objects);
    EXPECT_EQ(foretold(repo.read({"rev-parse", "HEAD~1"})),
              (RebasePreview{.commits = 0, .beneath = 0, .outcome = Outcome::clean}));

    // What is there already is not replayed.
    repo.git({"cherry-pick", "topic"});
    EXPECT_EQ(foretold("refs/heads/topic"), (RebasePreview{.commits = 2, .beneath = 1, .outcome = clean}));
    repo.git({"reset", "-q", "--hard", "HEAD~1"});

    // The first two clash with topic, though what comes of all three does not.
    repo.write("a", "ours\n").commit("clash").write("a", "topic\n").commit("agrees").write("b", "4\n").commit("more");
    EXPECT_EQ(mergePreview(repo.repository(), "refs/heads/topic").outcome, clean);
    const RebasePreview found = foretold("refs/heads/topic");
    EXPECT_EQ(found.commits, 5);
    EXPECT_EQ(found.outcome, canTell ? Outcome::conflicts : Outcome::unknown);
    EXPECT_EQ(found.conflicts, canTell ? std::vector<std::string>{"a"} : std::vector<std::string>());
    for (int number = 0; number < 40; ++number)
        repo.git({"commit", "-q", "--allow-empty", "-m", "many"});
    EXPECT_EQ(foretold("refs/heads/topic"), (RebasePreview{.commits = 45, .beneath = 1, .outcome = Outcome::unknown}));
}

TEST_F(MergeWays, MovesABranchThatIsFreeAndCountsWhatFallsOff)
{
    const std::string main = repo.head();
    const std::string topic = repo.read({"rev-parse", "topic"});
    EXPECT_EQ(commitsOnlyOn(repo.repository(), "topic", {}, 10), 1);
    EXPECT_EQ(commitsOnlyOn(repo.repository(), "topic", topic, 10), 0);
    const auto move = [&](const std::string& from) {
        return [from, main](const GitRepository& door) { moveBranch(door, "topic", from, main); };
    };
    EXPECT_EQ(refusal(move(main)), ErrorKind::changedMeanwhile);
    repo.git({"checkout", "-q", "topic"});
    EXPECT_EQ(refusal(move(topic)), ErrorKind::checkedOutElsewhere);
    repo.git({"checkout", "-q", "main"});
    move(topic)(repo.repository());
    EXPECT_EQ(repo.read({"rev-parse", "topic"}), main);

    // A name that begins like others, a remote branch, a tag, and a detached HEAD, which holds nothing.
    repo.git({"branch", "topical-x", topic}).git({"branch", "topical", topic});
    repo.git({"checkout", "-q", "--detach", topic});
    EXPECT_EQ(commitsOnlyOn(repo.repository(), "topical", {}, 10), 0);
    repo.git({"branch", "-D", "topical-x"});
    EXPECT_EQ(commitsOnlyOn(repo.repository(), "topical", {}, 10), 1);
    for (const char* ref : {"refs/tags/t", "refs/remotes/origin/topical"}) {
        repo.git({"update-ref", ref, topic});
        EXPECT_EQ(commitsOnlyOn(repo.repository(), "topical", {}, 10), 0) << ref;
        repo.git({"update-ref", "-d", ref});
    }
}

TEST_F(MergeWays, ForetellsPicksRevertsAndStashesAndLeavesNothingBehind)
{
    if (!can(Ability::mergesInMemory))
        GTEST_SKIP() << "this git cannot tell";
    const std::string topic = repo.read({"rev-parse", "topic"});
    const std::string first = repo.head();
    repo.write("b", "2\n").commit("ours").write("a", "3\n").commit("clash");
    const std::string clash = repo.head();
    repo.write("a", "4\n").commit("later").write("a", "work\n").git({"stash", "push", "-q"});
    const std::string stash = repo.read({"rev-parse", "stash@{0}"});
    const std::string objects = repo.read({"count-objects", "-v"});
    const GitRepository door = repo.repository();
    const PickPreview conflict{.outcome = Outcome::conflicts, .conflicts = {"a"}};
    EXPECT_EQ(pickPreview(door, {{topic}}), conflict);
    EXPECT_EQ(revertPreview(door, {{repo.head()}}), (PickPreview{.outcome = Outcome::clean, .files = 1}));
    EXPECT_EQ(revertPreview(door, {{clash}}), conflict);
    EXPECT_EQ(revertPreview(door, {{clash, repo.head()}}), (PickPreview{.outcome = Outcome::clean, .files = 1}))
        << "the newest is taken back first";
    PickPreview several = conflict;
    several.stopsAt = "on topic";
    EXPECT_EQ(pickPreview(door, {{repo.read({"rev-parse", "HEAD~2"}), topic}}), several);
    EXPECT_EQ(pickPreview(door, {{first}}).outcome, Outcome::unknown) << "it has no parent";
    EXPECT_EQ(stashPreview(door, stash), (PickPreview{.outcome = Outcome::clean, .files = 1}));
    EXPECT_EQ(repo.read({"count-objects", "-v"}), objects);
    repo.write("a", "staged\n").git({"add", "a"});
    const std::string staged = repo.read({"count-objects", "-v"});
    EXPECT_EQ(stashPreview(door, stash), conflict);
    EXPECT_EQ(repo.read({"count-objects", "-v"}), staged);
    repo.git({"config", "remote.origin.promisor", "true"});
    EXPECT_EQ(pickPreview(door, {{topic}}).outcome, Outcome::unknown);
}

TEST_F(MergeWays, TakesEachWay)
{
    const std::string start = repo.head();
    const std::string topic = repo.read({"rev-parse", "topic"});
    const auto merged = [&](MergeKind kind) { mergeBy(repo.repository(), "refs/heads/topic", kind); };
    repo.git({"config", "merge.ff", "false"});
    merged(MergeKind::fastForwardOnly);
    EXPECT_EQ(repo.head(), topic);
    repo.git({"reset", "-q", "--hard", start});
    merged(MergeKind::squash);
    EXPECT_EQ(repo.head(), start);
    EXPECT_EQ(repo.read({"status", "--porcelain"}), "M  a\nA  t");
    EXPECT_NE(bytesAt(repo / ".git/SQUASH_MSG").find("on topic"), std::string::npos);
    repo.git({"reset", "-q", "--hard", start}).git({"config", "merge.ff", "true"});
    merged(MergeKind::mergeCommit);
    EXPECT_EQ(parents(), start + ' ' + topic);
    EXPECT_EQ(repo.read({"log", "-1", "--format=%s"}), "Merge branch 'topic'");
    repo.git({"reset", "-q", "--hard", start}).write("b", "2\n").commit("ours");
    EXPECT_EQ(refusal([&](const auto& door) { mergeBy(door, topic, MergeKind::fastForwardOnly); }),
              ErrorKind::notFastForward);
    repo.git({"tag", "topic", start}); // the branch is meant
    rebaseOnto(repo.repository(), "refs/heads/topic");
    EXPECT_EQ(parents(), topic);
}

TEST_F(MergeWays, AMergeIsPickedAndRevertedAsSeenFromAParent)
{
    repo.write("b", "2\n").commit("ours").git({"merge", "-q", "topic"});
    const std::string merge = repo.head();
    EXPECT_EQ(parentNames(repo.repository(), merge), (std::vector<std::string>{"main", "topic"}));
    revert(repo.repository(), {{merge}, 2});
    EXPECT_EQ(bytesAt(repo / "a") + bytesAt(repo / "b"), "topic\n1\n");
    repo.git({"reset", "-q", "--hard", merge});
    revert(repo.repository(), {{merge}, 1});
    EXPECT_EQ(bytesAt(repo / "a") + bytesAt(repo / "b"), "1\n2\n");
}

TEST_F(MergeWays, MovesOnOnlyBranchesThatAreFree)
{
    const std::string topic = repo.read({"rev-parse", "topic"});
    const auto forward = [](const std::string& branch) {
        return [branch](const GitRepository& door) { fastForward(door, branch); };
    };
    repo.git({"branch", "old"}).git({"branch", "own", "main"}).git({"branch", "alone"});
    for (const char* branch : {"old", "own", "main"})
        repo.git({"branch", "-q", "-u", "topic", branch});
    repo.git({"symbolic-ref", "refs/heads/alias", "refs/heads/old"}).git({"config", "branch.alias.remote", "."});
    repo.git({"config", "branch.alias.merge", "refs/heads/topic"});
    EXPECT_EQ(refusal(forward("alias")), ErrorKind::other);
    EXPECT_EQ(refusal(forward("main")), ErrorKind::checkedOutElsewhere);
    EXPECT_EQ(refusal(forward("alone")), ErrorKind::noUpstream);
    EXPECT_EQ(refusal(forward("gone")), ErrorKind::noSuchRef);
    const std::filesystem::path linked = repo.path().parent_path() / "linked";
    repo.git({"worktree", "add", "-q", linked.string(), "old"});
    EXPECT_EQ(refusal(forward("old")), ErrorKind::checkedOutElsewhere);
    repo.git({"worktree", "remove", linked.string()});
    forward("old")(repo.repository());
    EXPECT_EQ(repo.read({"rev-parse", "old"}), topic);
    EXPECT_FALSE(std::filesystem::exists(repo / ".git/FETCH_HEAD"));
    fastForward(repo.repository(), "alone", "refs/heads/topic");
    EXPECT_EQ(repo.read({"rev-parse", "alone"}), topic);
    repo.git({"checkout", "-q", "own"}).write("b", "2\n").commit("own").git({"checkout", "-q", "main"});
    EXPECT_EQ(refusal(forward("own")), ErrorKind::notFastForward);
}

} // namespace
} // namespace gitkit
