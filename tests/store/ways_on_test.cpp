// SPDX-License-Identifier: GPL-3.0-or-later
// What the window offers where git refuses.

#include "tests/store/UndoWindow.h"
#include "tests/support/WholeState.h"

#include "GitKit/repository/GitRepository.h"
#include "GitKit/repository/StashedAway.h"
#include "GitKit/runner/GitError.h"
#include "GitKit/runner/RunContext.h"
#include "app/store/RepositoryStore.h"
#include "app/store/actions/Merges.h"
#include "app/store/actions/Operation.h"
#include "app/store/actions/Picks.h"
#include "app/store/actions/Pushes.h"
#include "app/store/actions/Refs.h"
#include "app/store/actions/Remotes.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <filesystem>
#include <functional>
#include <stop_token>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace plovik {
namespace {

using gitkit::StashedAway;

/// Ten lines; those that are given are replaced.
std::string lines(std::vector<std::pair<int, const char*>> changed)
{
    std::string text;
    for (int number = 1; number <= 10; ++number) {
        const auto found = std::ranges::find(changed, number, &std::pair<int, const char*>::first);
        text += found == changed.end() ? "line " + std::to_string(number) + "\n" : std::string(found->second) + "\n";
    }
    return text;
}

struct OfferWindow : UndoWindow {
    /// main and topic have one commit each above a common one; topic changes the first line of `a`, and `c`. The remote's
    /// main has what topic has.
    OfferWindow()
    {
        repo.write("a", lines({})).write("b", "1\n").write("c", "1\n").commit("base");
        repo.git({"checkout", "-q", "-b", "topic"}).write("a", lines({{1, "topic"}})).write("c", "topic\n");
        repo.commit("on topic").git({"remote", "add", "origin", remote.path().string()});
        repo.git({"push", "-q", "origin", "topic:main"}).git({"checkout", "-q", "main"});
        repo.git({"fetch", "-q"}).git({"branch", "-q", "-u", "origin/main"});
    }
    std::string asked() const
    {
        const auto question = store.window().confirmation.value();
        return question ? question->title.toStdString() + '|' + question->detail.toStdString() : std::string();
    }
    void confirm()
    {
        worker.finishAll();
        ASSERT_TRUE(store.window().confirmation.value()) << error();
        store.window().confirm(store.window().confirmation.value()->id);
        worker.finishAll();
    }
    /// Answers the question whether to skip a commit, and returns what it said.
    std::string skipped()
    {
        const auto question = store.window().confirmation.value();
        EXPECT_TRUE(question) << error();
        if (!question)
            return {};
        EXPECT_EQ(question->actionTitle.toStdString(), "Skip");
        store.window().confirm(question->id);
        worker.finishAll();
        return question->message.toStdString();
    }
    std::string stashes() const { return repo.read({"stash", "list", "--format=%gs"}); }
};

struct WaysOn : testing::Test, OfferWindow {};

const std::vector<std::pair<const char*, std::function<void(UndoWindow&)>>> actionsInTheWay{
    {"checkout of topic", [](auto& t) { actions::checkout(t.store.actors(), t.ref("topic")); }},
    {"checkout of new",
     [](auto& t) {
         actions::createBranch(t.store.actors(), "new", "refs/heads/topic", gitkit::AfterCreating::checkOut);
     }},
    {"merge of topic", [](auto& t) { actions::merge(t.store.actors(), t.ref("topic")); }},
    {"rebase onto topic", [](auto& t) { actions::rebaseOnto(t.store.actors(), t.ref("topic")); }},
    {"cherry-pick of", [](auto& t) { actions::cherryPick(t.store.actors(), t.ref("topic").hash); }},
    {"revert of", [](auto& t) { actions::revert(t.store.actors(), t.repo.read({"rev-parse", "HEAD"})); }},
    {"pull", [](auto& t) { actions::pull(t.store.actors()); }},
    {"pull with rebase", [](auto& t) { actions::pull(t.store.actors()); }},
};

TEST(WaysOnStories, ChangesInTheWayAreStashedAndComeBackInOneStep)
{
    for (const auto& [name, act] : actionsInTheWay) {
        SCOPED_TRACE(name);
        OfferWindow t;
        const bool reverts = std::string_view(name) == "revert of";
        if (reverts)
            t.repo.write("a", lines({{1, "topic"}})).write("c", "topic\n").commit("to revert");
        t.repo.git({"config", "pull.rebase", std::string_view(name) == "pull with rebase" ? "true" : "false"});
        const char* const first = reverts ? "topic" : "line 1";
        t.repo.write("a", lines({{1, first}, {5, "staged"}})).git({"add", "a"});
        t.repo.write("a", lines({{1, first}, {5, "staged"}, {10, "changed"}})).write("b", "other\n");
        t.load();
        const std::string before = wholeState(t.repo);
        act(t);
        t.worker.finishAll();
        EXPECT_EQ(t.asked(), "1 changed file is in the way|a") << t.error();
        t.confirm();
        EXPECT_EQ(t.error(), "");
        EXPECT_EQ(t.notice(), "");
        EXPECT_EQ(t.stashes(), "");
        const char* const now = reverts ? "line 1" : "topic";
        EXPECT_EQ(t.repo.read({"show", ":a"}) + '\n', lines({{1, now}, {5, "staged"}}));
        EXPECT_EQ(bytesAt(t.repo / "a"), lines({{1, now}, {5, "staged"}, {10, "changed"}}));
        EXPECT_EQ(bytesAt(t.repo / "b"), "other\n");
        EXPECT_EQ(bytesAt(t.repo / "c"), reverts ? "1\n" : "topic\n");
        const std::string after = wholeState(t.repo);
        t.undo();
        t.answer(); // what came is on the remote
        EXPECT_EQ(wholeState(t.repo), before) << t.error() << t.notice();
        t.redo();
        t.answer();
        EXPECT_EQ(wholeState(t.repo), after) << t.error() << t.notice();
    }
}

TEST_F(WaysOn, ChangesThatDoNotFitStayInTheStash)
{
    repo.write("a", lines({{1, "mine"}})).write("b", "as before, and staged then\n");
    load();
    const std::string before = wholeState(repo);
    actions::checkout(store.actors(), ref("topic"));
    confirm();
    const std::string after = wholeState(repo);
    EXPECT_EQ(error(), "");
    EXPECT_EQ(notice(), "Your changes are in conflict with what came. They are also safe in the stash “Before checkout "
                        "of topic”.");
    EXPECT_EQ(stashes(), "On main: Before checkout of topic");
    EXPECT_EQ(store.snapshot().conflictCount(), 1U);
    EXPECT_EQ(store.snapshot().status.value().branch, "topic");
    undo();
    EXPECT_EQ(wholeState(repo), before) << error() << notice();
    redo();
    EXPECT_EQ(wholeState(repo), after) << error() << notice();
    undo();
    EXPECT_EQ(wholeState(repo), before) << error() << notice();
}

TEST_F(WaysOn, ChangesStayInTheStashWhileTheActionIsInConflict)
{
    repo.write("c", "ours\n").commit("ours").write("a", lines({{10, "mine"}}));
    load();
    const std::string before = wholeState(repo);
    actions::merge(store.actors(), ref("topic"));
    confirm();
    EXPECT_EQ(error(), "");
    EXPECT_EQ(notice(), "Your changes are in the stash “Before merge of topic”.");
    EXPECT_EQ(stashes(), "On main: Before merge of topic");
    EXPECT_EQ(store.snapshot().conflictCount(), 1U);
    store.window().dismissError();
    undo();
    EXPECT_EQ(wholeState(repo), before) << error() << notice();
}

TEST_F(WaysOn, StashedChangesComeBackAfterAFailureAndAreKeptAfterAStop)
{
    repo.write("a", lines({{5, "staged"}})).git({"add", "a"}).write("a", lines({{5, "staged"}, {10, "mine"}}));
    const std::string before = repo.read({"diff"}) + repo.read({"diff", "--cached"});
    const gitkit::GitRepository door = repo.repository();
    std::atomic<StashedAway> fate{StashedAway::nothing};
    const auto refused = [](const auto&) { throw gitkit::GitError("checkout", 1, "no"); };
    EXPECT_THROW(gitkit::runBetweenStashes(door, "m", refused, fate), gitkit::GitError);
    EXPECT_EQ(fate, StashedAway::nothing);
    EXPECT_EQ(repo.read({"diff"}) + repo.read({"diff", "--cached"}), before);
    EXPECT_EQ(stashes(), "");

    std::stop_source stop;
    const auto stopped = [&stop](const gitkit::GitRepository& its) {
        stop.request_stop();
        its.git({"status"});
    };
    EXPECT_THROW(gitkit::runBetweenStashes(door.in({.stop = stop.get_token()}), "m", stopped, fate),
                 gitkit::RunStopped);
    EXPECT_EQ(fate, StashedAway::kept);
    EXPECT_EQ(stashes(), "On main: m");
    repo.git({"stash", "pop", "-q", "--index"});
    EXPECT_EQ(repo.read({"diff"}) + repo.read({"diff", "--cached"}), before);
}

TEST_F(WaysOn, AStashWhoseStagedPartIsLostIsKept)
{
    repo.write("b", "staged\n").git({"add", "b"}).write("b", "1\n");
    std::atomic<StashedAway> fate{StashedAway::nothing};
    const auto changes = [this](const auto&) { repo.write("b", "else\n").commit("else"); };
    gitkit::runBetweenStashes(repo.repository(), "m", changes, fate);
    EXPECT_EQ(fate, StashedAway::unstaged);
    EXPECT_EQ(stashes(), "On main: m");
    EXPECT_EQ(repo.read({"show", "stash@{0}^2:b"}), "staged");
}

TEST_F(WaysOn, AnUntrackedFileInTheWayOfAPullIsNamed)
{
    repo.write("untracked", "u").write("b", "changed\n");
    repo.git({"checkout", "-q", "topic"}).write("untracked", "theirs").git({"add", "untracked"});
    repo.git({"commit", "-q", "-m", "t"}).git({"push", "-q", "origin", "topic:main"}).git({"checkout", "-q", "main"});
    repo.write("untracked", "u");
    load();
    actions::pull(store.actors());
    worker.finishAll();
    EXPECT_EQ(asked(), "1 file is in the way|untracked");
    confirm();
    EXPECT_EQ(error(), "");
    EXPECT_EQ(bytesAt(repo / "untracked") + bytesAt(repo / "b"), "theirschanged\n");
}

TEST_F(WaysOn, ADivergedPullMergesOrRebasesAndRemembersHow)
{
    repo.write("b", "2\n").commit("ours").write("b", "3\n").commit("ours too");
    load();
    const std::string before = repo.head();
    const auto ask = [&] {
        actions::pull(store.actors());
        worker.finishAll();
        return asked();
    };
    EXPECT_EQ(ask(), "main and origin/main have diverged|2 commits only here\n1 commit only on origin/main");
    confirm();
    EXPECT_EQ(repo.read({"log", "-1", "--format=%P"}), before + ' ' + ref("topic").hash);
    EXPECT_EQ(repo.read({"config", "--get", "--default", "none", "pull.rebase"}), "none");

    // Changes that are in the way of what was chosen can be stashed, too.
    repo.git({"reset", "-q", "--hard", before}).write("a", lines({{10, "mine"}})).git({"config", "pull.ff", "only"});
    load();
    ask();
    EXPECT_FALSE(store.window().confirmation.value()->option) << "it would have no effect";
    store.window().choose(store.window().confirmation.value()->id, 0);
    confirm();
    EXPECT_EQ(error(), "");
    EXPECT_EQ(repo.read({"rev-parse", "HEAD~2"}), ref("topic").hash);
    EXPECT_EQ(bytesAt(repo / "a"), lines({{1, "topic"}, {10, "mine"}}));

    repo.git({"reset", "-q", "--hard", before}).git({"config", "--unset", "pull.ff"});
    load();
    ask();
    store.window().setOption(store.window().confirmation.value()->id, true);
    store.window().choose(store.window().confirmation.value()->id, 0);
    worker.finishAll();
    EXPECT_EQ(repo.read({"config", "--local", "pull.rebase"}), "true");
    EXPECT_EQ(repo.read({"rev-parse", "HEAD~2"}), ref("topic").hash);
}

TEST_F(WaysOn, ARejectedPushNamesWhatIsThereAndGoesOn)
{
    repo.write("b", "2\n").commit("ours").git({"update-ref", "refs/remotes/origin/main", "HEAD~1"});
    const std::string ours = repo.head();
    load();
    const std::string theirs = ref("topic").hash;
    const auto push = [&] {
        store.undo().dismissSaid();
        actions::push(store.actors());
        worker.finishAll();
        EXPECT_EQ(asked(), "origin/main has 1 commit you do not have|“on topic” by Ada") << error();
        EXPECT_EQ(said(), "") << "nothing was done";
    };
    push();
    confirm();
    EXPECT_EQ(asked(), "main and origin/main have diverged|1 commit only here\n1 commit only on origin/main");
    store.window().dismissQuestion();

    push();
    store.window().choose(store.window().confirmation.value()->id, 0);
    worker.finishAll();
    EXPECT_EQ(error(), "");
    EXPECT_EQ(remote.read({"log", "--format=%s", "-2", "main"}), "ours\non topic");

    // Replacing begins with the sheet, and with what the remote has said.
    remote.git({"update-ref", "refs/heads/main", theirs});
    repo.git({"reset", "-q", "--hard", ours}).git({"reflog", "expire", "--expire=now", "--all"});
    load();
    push();
    store.window().choose(store.window().confirmation.value()->id, 1);
    EXPECT_EQ(store.window().sheet.value(), SheetKind(PushSheet{"main", {"origin", "main"}, theirs, true}));

    // Where the branch has had what is there, that is only what it was before.
    store.window().closeSheet();
    repo.git({"reset", "-q", "--hard", theirs}).git({"reset", "-q", "--hard", ours});
    load();
    actions::push(store.actors());
    worker.finishAll();
    EXPECT_EQ(error() + asked(), "");
    EXPECT_EQ(store.window().sheet.value(), SheetKind(PushSheet{"main", {"origin", "main"}, theirs, true}));

    // A pull would bring nothing of the remote that is pushed to.
    store.window().closeSheet();
    repo.git({"reflog", "expire", "--expire=now", "--all"});
    repo.git({"remote", "add", "other", remote.path().string()}).git({"config", "remote.pushDefault", "other"});
    load();
    actions::push(store.actors());
    worker.finishAll();
    ASSERT_TRUE(store.window().confirmation.value()) << error();
    EXPECT_EQ(store.window().confirmation.value()->actionTitle.toStdString(), "Replace…");
    EXPECT_TRUE(store.window().confirmation.value()->choices.empty());
}

TEST_F(WaysOn, BranchesThatMovedAlongArePushedTogetherAndComeBackTogether)
{
    repo.git({"checkout", "-q", "-b", "low"}).write("b", "2\n").commit("low");
    repo.git({"checkout", "-q", "-b", "high"}).write("c", "2\n").commit("high");
    repo.git({"push", "-q", "-u", "origin", "low", "high"});
    const std::string low = repo.read({"rev-parse", "low"});
    const std::string high = repo.head();
    load();
    store.undo().showTimeline();
    store.rewriting().watch();
    worker.finishAll();
    store.rewriting().reword(low, QStringLiteral("low again"));
    worker.finishAll();
    store.rewriting().apply();
    worker.finishAll();
    EXPECT_EQ(error(), "");
    ASSERT_TRUE(store.undo().said.value());
    EXPECT_EQ(store.undo().said.value()->rewritten, (std::vector<std::string>{"refs/heads/high", "refs/heads/low"}));

    const gitkit::Push push{.branch = "high",
                            .to = {"origin", "high"},
                            .there = high,
                            .replaces = true,
                            .along = {{"low", {"origin", "low"}, low, 1}}};
    remote.git({"update-ref", "refs/heads/low", "main"});
    actions::pushBranch(store.actors(), push);
    worker.finishAll();
    EXPECT_EQ(error(), "");
    EXPECT_EQ(notice(), "origin/low has moved meanwhile. Nothing was pushed.");
    EXPECT_EQ(store.window().sheet.value(), SheetKind(PushSheet{"high", {"origin", "high"}, high, true}));
    store.window().closeSheet();
    remote.git({"update-ref", "refs/heads/low", low});
    repo.git({"fetch", "-q"});
    actions::pushBranch(store.actors(), push);
    worker.finishAll();
    EXPECT_EQ(error(), "");
    EXPECT_EQ(remote.read({"rev-parse", "low", "high"}), repo.read({"rev-parse", "low", "high"}));

    const auto lost = actions::lostByPush(store.snapshot(), store.undo().timeline.value()->front().step);
    ASSERT_EQ(lost.size(), 2U);
    actions::confirmPushBack(store.actors(), lost);
    EXPECT_EQ(asked(), "Push “high”, “low” back to origin?|");
    confirm();
    EXPECT_EQ(remote.read({"rev-parse", "low", "high"}), low + '\n' + high) << error();
}

TEST_F(WaysOn, APushBesideAnotherOneIsShownAnewAndNeverForced)
{
    repo.git({"checkout", "-q", "-b", "mine"}).write("b", "2\n").commit("ours");
    load();
    const std::string theirs = ref("topic").hash;
    remote.git({"update-ref", "refs/heads/mine", theirs});
    actions::push(store.actors());
    worker.finishAll();
    EXPECT_EQ(asked(), "origin/mine has 1 commit you do not have|“on topic” by Ada") << error();
    confirm();
    EXPECT_EQ(repo.read({"config", "branch.mine.merge"}), "refs/heads/mine");
    EXPECT_EQ(asked(), "mine and origin/mine have diverged|1 commit only here\n1 commit only on origin/mine")
        << error();
    store.window().dismissQuestion();

    // It moves between the sheet and the push.
    const std::string seen = repo.read({"rev-parse", "main"});
    actions::pushBranch(store.actors(), {.branch = "mine", .to = {"origin", "mine"}, .there = seen, .replaces = true});
    worker.finishAll();
    EXPECT_EQ(notice(), "origin/mine has moved meanwhile. Nothing was pushed.");
    EXPECT_EQ(store.window().sheet.value(), SheetKind(PushSheet{"mine", {"origin", "mine"}, theirs, false}));
    EXPECT_EQ(remote.read({"rev-parse", "mine"}), theirs);

    // What the remote has is here already: the push goes on with that.
    repo.git({"merge", "-q", "topic"}).git({"update-ref", "-d", "refs/remotes/origin/mine"});
    store.window().closeSheet();
    actions::pushBranch(store.actors(), {.branch = "mine", .to = {"origin", "mine"}});
    worker.finishAll();
    EXPECT_EQ(error() + asked(), "");
    EXPECT_EQ(remote.read({"rev-parse", "mine"}), repo.head());
}

TEST_F(WaysOn, ABranchThatIsNotCheckedOutIsPulled)
{
    repo.git({"branch", "old"}).git({"branch", "-q", "-u", "origin/main", "old"});
    repo.git({"update-ref", "refs/remotes/origin/main", "old"});
    load();
    const std::string before = wholeState(repo);
    actions::fastForward(store.actors(), "old");
    worker.finishAll();
    EXPECT_EQ(wholeState(repo), before) << "nothing is known yet";
    actions::pullOther(store.actors(), "old");
    worker.finishAll();
    EXPECT_EQ(error(), "");
    EXPECT_EQ(ref("old").hash, ref("topic").hash);
    EXPECT_EQ(store.snapshot().status.value().branch, "main");
    undo();
    EXPECT_NE(ref("old").hash, ref("topic").hash);
    repo.git({"checkout", "-q", "old"}).write("b", "2\n").commit("own").git({"checkout", "-q", "main"});
    load();
    actions::pullOther(store.actors(), "old");
    worker.finishAll();
    EXPECT_EQ(error(), "“old” and “origin/main” have diverged. Check it out to merge.");
}

TEST_F(WaysOn, CommitsThatWouldChangeNothingAreSkippedAndAMergeIsAskedAbout)
{
    repo.git({"checkout", "-q", "topic"}).write("d", "1").commit("more").git({"checkout", "-q", "main"});
    repo.write("a", lines({{1, "topic"}})).write("c", "topic\n").commit("the same");
    load();
    gitkit::Commit first;
    first.hash = repo.read({"rev-parse", "topic~1"});
    gitkit::Commit second;
    second.hash = ref("topic").hash;
    actions::cherryPick(store.actors(), std::vector{second, first});
    worker.finishAll();
    EXPECT_EQ(error(), "");
    ASSERT_TRUE(store.snapshot().inProgress.value());
    EXPECT_EQ(skipped(), "One of the commits would change nothing here. It can be skipped.");
    EXPECT_FALSE(store.snapshot().inProgress.value());
    EXPECT_EQ(repo.read({"log", "-1", "--format=%s"}), "more") << error();

    gitkit::Commit merge;
    merge.subject = "Merge";
    merge.parents = {"1", "2"};
    EXPECT_EQ(actions::cannotPick({merge}).toStdString(), "");
    EXPECT_NE(actions::cannotPick({merge, first}).toStdString(), "");
    load();
    actions::merge(store.actors(), ref("topic"));
    worker.finishAll();
    merge.hash = repo.head();
    actions::revert(store.actors(), std::vector{merge});
    worker.finishAll();
    ASSERT_TRUE(store.window().confirmation.value()) << error();
    EXPECT_EQ(store.window().confirmation.value()->actionTitle.toStdString(), "As Seen from main");
    EXPECT_EQ(store.window().confirmation.value()->choices.at(0).title.toStdString(), "As Seen from topic");
}

TEST_F(WaysOn, ASquashLeavesItsMessageAndTellsWhatToDo)
{
    load();
    actions::merge(store.actors(), ref("topic"), gitkit::MergeKind::squash);
    worker.finishAll();
    EXPECT_EQ(said(), "Squashed topic. Commit to finish.");
    EXPECT_EQ(store.draft().commitSubject.value(), QStringLiteral("Squashed commit of the following:"));
    EXPECT_EQ(store.snapshot().status.value().stagedCount(), 2);
    undo();
    EXPECT_EQ(store.draft().commitSubject.value(), QString());
    repo.git({"merge", "-q", "topic"});
    load();
    actions::merge(store.actors(), ref("topic"), gitkit::MergeKind::squash);
    worker.finishAll();
    EXPECT_EQ(notice(), "Already up to date.");
}

TEST_F(WaysOn, ALockIsExplainedAndMovedAwayOnceNobodyNeedsIt)
{
    repo.write("b", "2\n").write(".git/index.lock", "");
    load();
    const auto commits = [&] {
        actions::merge(store.actors(), ref("topic"));
        worker.finishAll();
    };
    commits();
    EXPECT_TRUE(error().starts_with("The lock “index.lock” is held. It is less than a minute old.")) << error();
    ASSERT_EQ(store.window().ways().size(), 1U);
    std::filesystem::last_write_time(repo / ".git/index.lock",
                                     std::filesystem::file_time_type::clock::now() - std::chrono::minutes(5));
    store.window().takeWay(0);
    worker.finishAll();
    EXPECT_TRUE(error().starts_with("The lock “index.lock” is held. It is 5 minutes old, and no program works"))
        << error();
    ASSERT_EQ(store.window().ways().size(), 2U);
    store.window().takeWay(1);
    worker.finishAll();
    EXPECT_EQ(error(), "");
    EXPECT_EQ(repo.head(), ref("topic").hash);
}

TEST_F(WaysOn, ARemoteThatIsGoneIsTriedAgain)
{
    repo.git({"config", "remote.origin.url", "http://127.0.0.1:1/x"});
    load();
    actions::fetch(store.actors());
    worker.finishAll();
    EXPECT_TRUE(error().starts_with("The remote cannot be reached.\n\n")) << error();
    ASSERT_EQ(store.window().ways().size(), 1U);
    repo.git({"config", "remote.origin.url", remote.path().string()});
    store.window().takeWay(0);
    worker.finishAll();
    EXPECT_EQ(error(), "");
}

TEST_F(WaysOn, APushToOneOfSeveralRemotesAsksWhere)
{
    repo.git({"remote", "add", "another", remote.path().string()}).git({"checkout", "-q", "-b", "new"});
    load();
    actions::push(store.actors());
    worker.finishAll();
    EXPECT_EQ(store.window().sheet.value(), SheetKind(PushSheet{"new", {"origin", "new"}}));
}

TEST_F(WaysOn, ABranchIsDeletedHereAndThereOrNotAtAll)
{
    repo.git({"push", "-q", "origin", "topic:extra"}).git({"push", "-q", "-u", "origin", "topic"});
    repo.git({"merge", "-q", "topic"});
    load();
    const auto deletes = [&] {
        actions::confirmDelete(store.actors(), ref("topic"));
        worker.finishAll();
        ASSERT_EQ(store.window().confirmation.value()->choices.size(), 1U);
        EXPECT_EQ(store.window().confirmation.value()->choices[0].title.toStdString(), "Delete Here and on origin");
        store.window().choose(store.window().confirmation.value()->id, 0);
        worker.finishAll();
    };
    remote.git({"update-ref", "refs/heads/topic", "topic~1"});
    deletes();
    EXPECT_NE(error().find("is not on “origin” any more as it was seen here"), std::string::npos) << error();
    EXPECT_NO_THROW(ref("topic"));
    repo.git({"fetch", "-q"});
    load();
    deletes();
    EXPECT_EQ(repo.read({"branch", "--list", "topic"}) + remote.read({"branch", "--list", "topic"}), "");
    undo();
    EXPECT_NO_THROW(ref("topic")) << "here it comes back";

    actions::confirmDeleteOnRemote(store.actors(), store.snapshot().remoteBranches.value().at(0), "origin");
    confirm();
    EXPECT_EQ(remote.read({"branch"}), "* main") << error();
    EXPECT_EQ(undoTitle(), "");
}

TEST_F(WaysOn, ABranchOfAnotherWorkingTreeLeadsToItsWindow)
{
    const std::filesystem::path linked = trash / "Linked 'trée\xff";
    repo.git({"branch", "-q", "-u", "origin/main", "topic"}).git({"branch", "-q", "-f", "topic", "main"});
    repo.git({"worktree", "add", "-q", linked.string(), "topic"});
    load();
    const std::vector<std::function<void()>> refused{
        [&] { actions::checkout(store.actors(), ref("topic")); },
        [&] { actions::fastForward(store.actors(), "topic"); },
        [&] {
            actions::confirmDelete(store.actors(), ref("topic"));
            worker.finishAll();
            store.window().confirm(store.window().confirmation.value()->id);
        },
    };
    for (const auto& act : refused) {
        act();
        worker.finishAll();
        const auto question = store.window().confirmation.value();
        ASSERT_TRUE(question) << store.window().errorMessage.value().value_or(QString()).toStdString();
        EXPECT_EQ(question->actionTitle.toStdString(), "Open That Window");
        store.window().confirm(question->id);
    }
    EXPECT_EQ(opened, std::vector(3, linked));
    EXPECT_FALSE(store.window().errorMessage.value());

    // The one that is checked out here is no way, nor is a folder that is gone.
    std::filesystem::remove_all(linked);
    for (const char* const branch : {"main", "topic"}) {
        store.window().dismissError();
        actions::confirmDelete(store.actors(), ref(branch));
        worker.finishAll();
        store.window().confirm(store.window().confirmation.value()->id);
        worker.finishAll();
        EXPECT_TRUE(store.window().errorMessage.value()) << branch;
        EXPECT_FALSE(store.window().confirmation.value()) << branch;
    }
}

TEST_F(WaysOn, AllTagsThatTheRemoteLacksArePushedAfterTheyWereNamed)
{
    repo.git({"tag", "light"}).git({"tag", "-a", "-m", "words", "annotated", "topic"}).git({"tag", "there"});
    repo.git({"push", "-q", "origin", "there"}).git({"tag", "moved", "topic"}).git({"push", "-q", "origin", "moved"});
    repo.git({"tag", "-f", "moved", "main"}).git({"branch", "light", "topic"});
    load();
    EXPECT_EQ(actions::usualRemote(store.snapshot()), "origin");
    actions::confirmPushTags(store.actors(), "origin");
    worker.finishAll();
    EXPECT_EQ(asked(), "Push 2 tags to origin?|annotated\nlight") << error();
    EXPECT_NE(store.window().confirmation.value()->message.indexOf(QStringLiteral("1 tag of the same name stays")), -1);
    confirm();
    EXPECT_EQ(error(), "");
    EXPECT_EQ(remote.read({"tag", "--list"}), "annotated\nlight\nmoved\nthere");
    EXPECT_EQ(remote.read({"cat-file", "-t", "annotated"}), "tag");
    EXPECT_EQ(remote.read({"rev-parse", "moved"}), ref("topic").hash);
    EXPECT_EQ(remote.read({"branch", "--list", "light"}), "");
    actions::confirmPushTags(store.actors(), "origin");
    worker.finishAll();
    EXPECT_FALSE(store.window().confirmation.value());
    EXPECT_EQ(notice(), "origin has all tags. 1 tag of the same name stays there, which is another one than here.");

    // More than a command line is given at once.
    std::string refs;
    for (int number = 0; number < 1200; ++number)
        refs += "create refs/tags/many" + std::to_string(number) + ' ' + repo.head() + '\n';
    repo.git({"update-ref", "--stdin"}, refs);
    actions::confirmPushTags(store.actors(), "origin");
    confirm();
    EXPECT_EQ(remote.read({"tag", "--list", "many1199"}), "many1199") << error();
}

TEST_F(WaysOn, WhatAPushHasReplacedOrDeletedIsPushedBack)
{
    repo.git({"push", "-q", "-u", "origin", "topic"});
    load();
    using Lost = std::vector<gitkit::LostThere>;
    const std::string topic = ref("topic").hash;
    const auto lost = [&] {
        return actions::lostByPush(store.snapshot(), store.undo().timeline.value()->front().step);
    };
    store.undo().showTimeline();
    worker.finishAll();

    actions::confirmDeleteOnRemote(store.actors(), store.snapshot().remoteBranches.value().at(1), "origin");
    confirm();
    EXPECT_EQ(remote.read({"branch", "--list", "topic"}), "") << error();
    const Lost deleted = lost();
    ASSERT_EQ(deleted, (Lost{{{"origin", "topic"}, topic, ""}}));
    actions::confirmPushBack(store.actors(), deleted);
    EXPECT_EQ(asked(), "Push “topic” back to origin?|");
    confirm();
    EXPECT_EQ(remote.read({"rev-parse", "topic"}), topic) << error();
    EXPECT_TRUE(lost().empty());
    remote.git({"update-ref", "refs/heads/topic", "main~1"});
    actions::confirmPushBack(store.actors(), deleted);
    confirm();
    EXPECT_NE(error().find("is not as it was left any more"), std::string::npos) << "somebody has made it again";
    EXPECT_NE(remote.read({"rev-parse", "topic"}), topic);
    store.window().dismissError();
    remote.git({"update-ref", "refs/heads/topic", topic});

    repo.git({"branch", "-q", "-f", "topic", "main"});
    load();
    actions::pushBranch(store.actors(),
                        {.branch = "topic", .to = {"origin", "topic"}, .there = topic, .replaces = true});
    worker.finishAll();
    EXPECT_EQ(remote.read({"rev-parse", "topic"}), repo.head()) << error();
    const Lost replaced = lost();
    ASSERT_EQ(replaced, (Lost{{{"origin", "topic"}, topic, repo.head()}}));
    actions::confirmPushBack(store.actors(), replaced);
    confirm();
    EXPECT_EQ(remote.read({"rev-parse", "topic"}), topic) << error();
    EXPECT_EQ(undoTitle(), "") << "others may have it";

    // An ordinary push has lost nothing.
    repo.git({"push", "-q", "origin", "HEAD:refs/heads/fresh"}).write("b", "more\n").commit("more");
    load();
    actions::pushBranch(store.actors(),
                        {.branch = "main", .to = {"origin", "fresh"}, .there = repo.read({"rev-parse", "HEAD~1"})});
    worker.finishAll();
    EXPECT_EQ(error(), "");
    EXPECT_EQ(remote.read({"rev-parse", "fresh"}), repo.head());
    EXPECT_TRUE(lost().empty());
}

TEST_F(WaysOn, AHookThatRefusesRunsAgainOrIsPassedOver)
{
    repo.write(".git/hooks/pre-commit", "#!/bin/sh\necho run >> .git/runs; echo no; exit 1\n").write("b", "2\n");
    std::filesystem::permissions(repo / ".git/hooks/pre-commit", std::filesystem::perms::owner_all);
    repo.git({"add", "b"});
    load();
    store.draft().setSubject(QStringLiteral("with words"));
    store.draft().commit();
    worker.finishAll();
    EXPECT_EQ(error(), "no");
    EXPECT_TRUE(store.window().failure.value().command);
    ASSERT_EQ(store.window().ways().size(), 2U);
    store.window().takeWay(1);
    EXPECT_EQ(error(), "");
    worker.finishAll();
    EXPECT_EQ(bytesAt(repo / ".git/runs"), "run\nrun\n");
    EXPECT_EQ(store.draft().commitSubject.value(), QStringLiteral("with words"));
    store.window().takeWay(0);
    worker.finishAll();
    EXPECT_EQ(error(), "");
    EXPECT_EQ(repo.read({"log", "-1", "--format=%s"}), "with words");
    EXPECT_EQ(bytesAt(repo / ".git/runs"), "run\nrun\n");
    EXPECT_TRUE(store.window().ways().empty());
}

TEST_F(WaysOn, ACommitWithoutANameAsksWhoMakesIt)
{
    const ScopedVariable configuration("GIT_CONFIG_GLOBAL", (repo / ".git/global").string());
    repo.write(".git/global", "");
    repo.git({"config", "user.useConfigOnly", "true"}).write("b", "2\n").git({"add", "b"});
    load();
    store.draft().setSubject(QStringLiteral("words"));
    store.draft().commit();
    worker.finishAll();
    EXPECT_EQ(error(), "");
    EXPECT_EQ(store.window().sheet.value(), SheetKind(IdentitySheet{}));
    EXPECT_EQ(store.draft().commitSubject.value(), QStringLiteral("words"));
    store.window().closeSheet();
    store.draft().commitAs({"Ada Ö", "ada@example.org"}, gitkit::IdentityPlace::repository);
    worker.finishAll();
    EXPECT_EQ(error(), "");
    EXPECT_EQ(repo.read({"log", "-1", "--format=%an <%ae> %cn: %s"}), "Ada Ö <ada@example.org> Ada Ö: words");
    EXPECT_EQ(repo.read({"config", "--local", "user.name"}), "Ada Ö");
    EXPECT_EQ(bytesAt(repo / ".git/global"), "");
    store.draft().setSubject(QStringLiteral("others"));
    store.draft().setAmend(true);
    store.draft().commitAs({"Bob", "bob@example.org"}, gitkit::IdentityPlace::everywhere);
    worker.finishAll();
    EXPECT_EQ(repo.read({"config", "--global", "user.email"}), "bob@example.org");
}

TEST_F(WaysOn, WhoeverMakesACommitIsAskedForWithoutAName)
{
    const std::vector<std::pair<const char*, std::function<void(OfferWindow&)>>> makers{
        {"Merge branch 'topic'", [](auto& t) { actions::merge(t.store.actors(), t.ref("topic")); }},
        {"on topic", [](auto& t) { actions::cherryPick(t.store.actors(), t.ref("topic").hash); }},
        {"Revert \"mine\"", [](auto& t) { actions::revert(t.store.actors(), t.repo.head()); }},
        {"Merge remote-tracking branch", [](auto& t) { actions::pull(t.store.actors()); }},
        {"mine",
         [](auto& t) {
             t.repo.git({"config", "pull.rebase", "true"});
             actions::pull(t.store.actors());
         }},
        {"mine", [](auto& t) { actions::rebaseOnto(t.store.actors(), t.ref("topic")); }},
        {"Merge branch 'side'", // stopped, and resolved since
         [](auto& t) { actions::continueOperation(t.store.actors()); }},
    };
    for (const auto& [subject, act] : makers) {
        SCOPED_TRACE(subject);
        OfferWindow t;
        t.repo.write("b", "mine\n").commit("mine").git({"config", "pull.rebase", "false"});
        if (std::string_view(subject) == "Merge branch 'side'") {
            t.repo.git({"checkout", "-q", "-b", "side", "HEAD~1"}).write("b", "side\n").commit("on side");
            t.repo.git({"checkout", "-q", "main"});
            int status = 0;
            runPlainGit(t.repo.path(), {"merge", "side"}, status);
            t.repo.write("b", "both\n").git({"add", "b"});
        }
        const ScopedVariable configuration("GIT_CONFIG_GLOBAL", (t.repo / ".git/global").string());
        t.repo.write(".git/global", "").git({"config", "user.useConfigOnly", "true"});
        t.load();
        act(t);
        t.worker.finishAll();
        EXPECT_EQ(t.error(), "");
        const auto* const sheet =
            t.store.window().sheet.value() ? std::get_if<IdentitySheet>(&*t.store.window().sheet.value()) : nullptr;
        ASSERT_TRUE(sheet && sheet->then);
        const auto then = sheet->then;
        t.store.window().closeSheet();
        (*then)({"Bob", "bob@example.org"}, gitkit::IdentityPlace::repository);
        t.worker.finishAll();
        EXPECT_EQ(t.error(), "");
        EXPECT_EQ(t.repo.read({"log", "-1", "--format=%cn: %s"}).find(std::string("Bob: ") + subject), 0U)
            << t.repo.read({"log", "-3", "--format=%cn: %s"});
        EXPECT_FALSE(t.store.snapshot().inProgress.value());
    }
}

TEST_F(WaysOn, WhatHasNothingToDoIsSaidQuietly)
{
    repo.git({"merge", "-q", "--ff-only", "topic"});
    load();
    const auto says = [&](const std::function<void()>& act, const std::string& sentence) {
        store.window().clearNotice();
        act();
        worker.finishAll();
        EXPECT_EQ(notice(), sentence);
        EXPECT_EQ(error(), "");
    };
    says([&] { actions::pull(store.actors()); }, "Already up to date.");
    says([&] { actions::merge(store.actors(), ref("topic")); }, "Already up to date.");
    const std::string topic = ref("topic").hash;
    actions::cherryPick(store.actors(), topic);
    worker.finishAll();
    ASSERT_TRUE(store.snapshot().inProgress.value());
    EXPECT_EQ(skipped(), topic.substr(0, 7) + " would change nothing here. It can be skipped.");
    EXPECT_FALSE(store.snapshot().inProgress.value());
    repo.git({"revert", "--no-edit", topic});
    load();
    actions::revert(store.actors(), topic);
    worker.finishAll();
    EXPECT_EQ(skipped(), topic.substr(0, 7) + " would change nothing here. It can be skipped.");
    EXPECT_EQ(error(), "");
}

TEST_F(WaysOn, TwoCommitsInARowThatChangeNothingAreSkippedOneAfterTheOther)
{
    repo.git({"checkout", "-q", "topic"}).write("d", "more\n").commit("more").git({"checkout", "-q", "main"});
    repo.git({"merge", "-q", "topic"});
    load();
    gitkit::Commit first;
    first.hash = repo.read({"rev-parse", "topic~1"});
    gitkit::Commit second;
    second.hash = ref("topic").hash;
    repo.write("b", "mine\n").commit("mine");
    load();
    actions::cherryPick(store.actors(), std::vector{second, first});
    worker.finishAll();
    skipped();
    EXPECT_EQ(error(), "");
    ASSERT_TRUE(store.snapshot().inProgress.value());
    EXPECT_EQ(skipped(), "This commit would change nothing here. It can be skipped.");
    EXPECT_FALSE(store.snapshot().inProgress.value());
    EXPECT_EQ(error(), "");
}

} // namespace
} // namespace plovik
