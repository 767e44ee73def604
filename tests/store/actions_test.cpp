// SPDX-License-Identifier: GPL-3.0-or-later
#include "tests/store/ManualWorker.h"
#include "tests/support/TestRepository.h"

#include "app/store/RepositoryStore.h"
#include "app/store/actions/Merges.h"
#include "app/store/actions/Picks.h"
#include "app/store/actions/Pushes.h"
#include "app/store/actions/Refs.h"
#include "app/store/actions/Remotes.h"
#include "app/store/actions/Stashes.h"

#include <gtest/gtest.h>

#include <filesystem>

namespace plovik {
namespace {

using gitkit::GitRef;
using gitkit::GitRepository;

struct StoreActions : testing::Test {
    TestRepository repo;
    TestRepository remote{{"--bare"}};
    ManualWorker worker;
    RepositoryStore store{repo.path(), worker};

    void load()
    {
        store.snapshot().refresh(RefreshScope::full);
        worker.finishAll();
    }

    std::string activity() const { return store.changes().activity.value().value_or(QString()).toStdString(); }
    std::string error() const { return store.window().errorMessage.value().value_or(QString()).toStdString(); }

    const GitRef& branch(const std::string& name) const { return named(store.snapshot().branches.value(), name); }
    static const GitRef& named(const std::vector<GitRef>& refs, const std::string& name)
    {
        const auto found = std::ranges::find(refs, name, &GitRef::name);
        if (found == refs.end())
            throw std::runtime_error("no ref " + name);
        return *found;
    }

    /// Confirms as the window does: the question is gone before its action runs.
    void confirm()
    {
        ASSERT_TRUE(store.window().confirmation.value().has_value());
        const Confirmation question = *store.window().confirmation.value();
        store.window().dismissQuestion();
        question.action();
        worker.finishAll();
    }
};

TEST_F(StoreActions, AnActionShowsWhatItDoesDropsASecondAndReadsAgain)
{
    repo.write("a", "1").commit("one").git({"remote", "add", "origin", remote.path().string()});
    load();
    actions::fetch(store.actors());
    EXPECT_EQ(activity(), "Fetching…");
    actions::fetch(store.actors());
    actions::pull(store.actors()); // would use the network beside it
    EXPECT_EQ(worker.waiting(), 1u);
    EXPECT_EQ(activity(), "Fetching…");
    EXPECT_EQ(store.changes().whyNot(Verb::pull), QStringLiteral("Not while this runs: Fetching…"));
    EXPECT_EQ(store.window().notice.value(), store.changes().whyNot(Verb::pull)) << "what is not begun is said";
    const qint64 generation = store.snapshot().generation.value();
    worker.finishAll();
    EXPECT_EQ(activity(), "");
    EXPECT_EQ(error(), "");
    EXPECT_EQ(store.snapshot().generation.value(), generation + 1);
}

TEST_F(StoreActions, WhatDoesNotClashRunsBesideAndWhatTouchesTheIndexWaits)
{
    repo.write("a", "1").commit("one").git({"remote", "add", "origin", remote.path().string()});
    repo.git({"push", "-q", "-u", "origin", "main"}).write("a", "2");
    load();
    actions::fetch(store.actors());
    actions::checkoutCommit(store.actors(), repo.head());
    EXPECT_EQ(worker.waiting(), 2u);
    EXPECT_EQ(activity().substr(0, 12), "Checking out");
    worker.finish(1);
    EXPECT_EQ(activity(), "Fetching…") << "the older one still runs";
    worker.finishAll();
    EXPECT_EQ(store.snapshot().headDescription().toStdString(), "HEAD detached at " + repo.head().substr(0, 7));

    repo.git({"checkout", "-q", "main"});
    load();
    actions::pull(store.actors());
    EXPECT_FALSE(store.changes().offers(Verb::commit));
    store.staging().stageAll();
    EXPECT_EQ(worker.waiting(), 1u) << "what is staged during a pull lands in no commit that it replays";
    EXPECT_EQ(store.staging().shownStageState(store.snapshot().status.value().files[0]), gitkit::StageState::full);
    worker.finishAll();
    EXPECT_EQ(error(), "");
    EXPECT_EQ(store.snapshot().status.value().stagedCount(), 1);
}

TEST_F(StoreActions, WhatWaitedBehindAConflictIsNotStaged)
{
    repo.write("a", "1").commit("base").git({"branch", "side"}).write("a", "2").commit("ours");
    repo.git({"checkout", "-q", "side"}).write("a", "3").commit("theirs").git({"checkout", "-q", "main"});
    repo.write("b", "new");
    load();
    actions::merge(store.actors(), branch("side"));
    store.staging().stageAll();
    worker.finishAll();
    EXPECT_EQ(error(), "Nothing was done: “a” has come into conflict in the meantime.");
    EXPECT_EQ(store.snapshot().conflictCount(), 1);
}

TEST_F(StoreActions, WhatGitWouldRefuseIsSaidWithoutAskingIt)
{
    repo.write("a", "1").commit("base").git({"branch", "side"}).write("a", "2").commit("ours");
    repo.git({"checkout", "-q", "side"}).write("a", "3").commit("theirs").git({"checkout", "-q", "main"});
    int status = 0;
    runPlainGit(repo.path(), {"merge", "side"}, status);
    load();
    actions::checkout(store.actors(), branch("side"));
    EXPECT_EQ(worker.waiting(), 0u);
    EXPECT_EQ(store.window().notice.value(), QStringLiteral("Resolve and stage the conflicted files first"));
}

TEST_F(StoreActions, AStopIsNoFailureAndTheRepositoryIsReadAgain)
{
    repo.write("a", "1").commit("base").git({"branch", "side"}).write("a", "2").commit("ours");
    repo.git({"checkout", "-q", "side"}).write("a", "3").commit("theirs").git({"checkout", "-q", "main"});
    load();
    actions::merge(store.actors(), branch("side"));
    EXPECT_EQ(activity(), "Merging side…");
    worker.finishAll();
    EXPECT_EQ(error(), "");
    ASSERT_EQ(store.snapshot().status.value().files.size(), 1u);
    EXPECT_TRUE(store.snapshot().status.value().files[0].isConflicted);
}

TEST_F(StoreActions, CommitsOfADetachedHeadAreNotLeftUnasked)
{
    repo.write("a", "1").commit("one").git({"branch", "side"}).git({"checkout", "-q", "--detach"});
    load();
    actions::checkout(store.actors(), branch("side"));
    worker.finishAll();
    EXPECT_FALSE(store.window().confirmation.value()) << "a branch leads there";
    EXPECT_EQ(repo.read({"symbolic-ref", "--short", "HEAD"}), "side");

    repo.git({"checkout", "-q", "--detach"}).write("a", "2").commit("two").write("a", "3").commit("three");
    const std::string head = repo.head();
    load();
    const auto leaves = [&](const std::function<void()>& leave) {
        leave();
        worker.finishAll();
        const std::optional<Confirmation> asked = store.window().confirmation.value();
        EXPECT_EQ(repo.head(), head) << "not before the answer";
        return asked;
    };
    const std::string first = repo.read({"rev-parse", "main"});
    ASSERT_TRUE(leaves([&] { actions::checkoutCommit(store.actors(), first); }));
    ASSERT_TRUE(leaves(
        [&] { actions::createBranch(store.actors(), "new", "refs/heads/main", gitkit::AfterCreating::checkOut); }));
    const std::optional<Confirmation> asked = leaves([&] { actions::checkout(store.actors(), branch("side")); });
    ASSERT_TRUE(asked);
    EXPECT_EQ(asked->title, QStringLiteral("Leave 2 commits behind?"));
    store.window().choose(asked->id, 0);
    EXPECT_EQ(store.window().sheet.value(), SheetKind(NewBranchSheet{head}));
    EXPECT_FALSE(store.window().confirmation.value());

    actions::checkout(store.actors(), branch("side"));
    worker.finishAll();
    store.window().confirm(store.window().confirmation.value()->id);
    worker.finishAll();
    EXPECT_EQ(repo.read({"symbolic-ref", "--short", "HEAD"}), "side");

    // What the commit to check out leads to is not left.
    repo.git({"checkout", "-q", head});
    load();
    actions::createBranch(store.actors(), "kept", head, gitkit::AfterCreating::checkOut);
    worker.finishAll();
    EXPECT_EQ(repo.read({"symbolic-ref", "--short", "HEAD"}), "kept");

    // HEAD was detached elsewhere, and no status has told of it yet.
    repo.git({"checkout", "-q", "--detach"}).write("a", "4").commit("four");
    actions::checkout(store.actors(), branch("side"));
    worker.finishAll();
    ASSERT_TRUE(store.window().confirmation.value());
    EXPECT_EQ(store.window().confirmation.value()->title, QStringLiteral("Leave 1 commit behind?"));
    EXPECT_EQ(repo.read({"log", "-1", "--format=%s"}), "four");
}

TEST_F(StoreActions, PushChoosesTheRemoteOrSaysWhyItCannot)
{
    repo.write("a", "1").commit("one");
    load();
    actions::push(store.actors());
    EXPECT_EQ(error(), "Cannot push: this repository has no remote.");

    repo.git({"remote", "add", "elsewhere", "/nowhere"}).git({"remote", "add", "origin", remote.path().string()});
    load();
    store.window().dismissError();
    actions::push(store.actors());
    worker.finishAll();
    EXPECT_TRUE(std::holds_alternative<PushSheet>(store.window().sheet.value().value())) << "which of the two is asked";
    store.window().closeSheet();
    repo.git({"remote", "remove", "elsewhere"});
    load();
    actions::push(store.actors());
    EXPECT_EQ(activity(), "Pushing…");
    worker.finishAll();
    EXPECT_EQ(error(), "");
    EXPECT_EQ(store.snapshot().status.value().upstream, "origin/main");

    repo.git({"checkout", "-q", "--detach"});
    load();
    const int posted = worker.posted();
    actions::push(store.actors());
    EXPECT_EQ(error(), "Cannot push: HEAD is detached. Check out a branch first.");
    EXPECT_EQ(worker.posted(), posted);
}

TEST_F(StoreActions, ARemoteBranchIsCheckedOutAsItsLocalOne)
{
    repo.write("a", "1").commit("one").git({"remote", "add", "origin", remote.path().string()});
    repo.git({"push", "-q", "origin", "main:feature"}).git({"fetch", "-q", "origin"});
    load();
    const GitRef feature = named(store.snapshot().remoteBranches.value(), "origin/feature");
    actions::checkout(store.actors(), feature);
    EXPECT_EQ(activity(), "Checking out feature…");
    worker.finishAll();
    EXPECT_EQ(store.snapshot().status.value().branch, "feature");
    EXPECT_EQ(store.snapshot().status.value().upstream, "origin/feature");

    actions::checkout(store.actors(), branch("main"));
    worker.finishAll();
    actions::checkout(store.actors(), feature); // exists now
    worker.finishAll();
    EXPECT_EQ(store.snapshot().status.value().branch, "feature");
    EXPECT_EQ(error(), "");
}

TEST_F(StoreActions, DeletingAnUnmergedBranchAsksOnceMore)
{
    repo.write("a", "1").commit("one").git({"checkout", "-q", "-b", "work"}).write("a", "2").commit("two");
    repo.git({"checkout", "-q", "main"});
    load();
    actions::confirmDelete(store.actors(), branch("work"));
    worker.finishAll();
    ASSERT_TRUE(store.window().confirmation.value().has_value());
    EXPECT_EQ(store.window().confirmation.value()->title, QStringLiteral("Delete branch “work”?"));
    EXPECT_EQ(store.window().confirmation.value()->detail, QStringLiteral("1 commit is on no other branch."));
    confirm();
    EXPECT_EQ(error(), "");
    ASSERT_TRUE(store.window().confirmation.value().has_value());
    EXPECT_EQ(store.window().confirmation.value()->title, QStringLiteral("“work” is not fully merged"));
    EXPECT_EQ(store.window().confirmation.value()->detail, QStringLiteral("1 commit is on no other branch."));
    EXPECT_EQ(store.snapshot().branches.value().size(), 2u);
    confirm();
    EXPECT_EQ(store.snapshot().branches.value().size(), 1u);
}

TEST_F(StoreActions, DeletingABranchCountsOnlyWhatNothingElseHasAndNotForever)
{
    repo.write("a", "1").commit("one").git({"checkout", "-q", "-b", "work"}).write("a", "2").commit("two");
    repo.git({"tag", "kept"}).write("a", "3").commit("three").git({"checkout", "-q", "main"}).git({"branch", "same"});
    load();
    const auto detail = [&](const std::string& name) {
        actions::confirmDelete(store.actors(), branch(name));
        worker.finishAll();
        const std::string said = store.window().confirmation.value()->detail.toStdString();
        store.window().dismissQuestion();
        return said;
    };
    EXPECT_EQ(detail("work"), "1 commit is on no other branch.");
    EXPECT_EQ(detail("same"), "");
    actions::confirmDelete(store.actors(), branch("work"));
    worker.advance(std::chrono::seconds(3));
    worker.finishAll();
    ASSERT_TRUE(store.window().confirmation.value());
    EXPECT_EQ(store.window().confirmation.value()->detail,
              QStringLiteral("How many commits are on no other branch is not known."));
}

TEST_F(StoreActions, ATagIsDeletedAndARemoteBranchIsNot)
{
    repo.write("a", "1").commit("one").git({"tag", "v1"}).git({"update-ref", "refs/remotes/origin/x", "HEAD"});
    load();
    actions::confirmDelete(store.actors(), store.snapshot().remoteBranches.value().at(0));
    EXPECT_FALSE(store.window().confirmation.value().has_value());
    actions::confirmDelete(store.actors(), store.snapshot().tags.value().at(0));
    confirm();
    EXPECT_TRUE(store.snapshot().tags.value().empty());
}

TEST_F(StoreActions, BranchesTagsPicksRevertsAndStashesLand)
{
    repo.write("a", "1").commit("one").write("b", "1").commit("two");
    load();
    const std::string first = store.history().history.value().at(1).commit.hash;
    actions::createBranch(store.actors(), "side", first, gitkit::AfterCreating::checkOut);
    worker.finishAll();
    EXPECT_EQ(store.snapshot().status.value().branch, "side");
    EXPECT_EQ(store.snapshot().status.value().oid, first);

    actions::createTag(store.actors(), "v1", first);
    worker.finishAll();
    EXPECT_EQ(store.snapshot().tags.value().at(0).hash, first);

    actions::cherryPick(store.actors(), branch("main").hash);
    worker.finishAll();
    EXPECT_EQ(store.history().history.value().at(0).commit.subject, "two");
    actions::revert(store.actors(), *store.snapshot().status.value().oid);
    worker.finishAll();
    EXPECT_FALSE(std::filesystem::exists(repo / "b"));
    ASSERT_EQ(error(), "");

    repo.write("a", "changed").write("new", "x");
    load();
    actions::stashSave(store.actors(), QStringLiteral("wip"), gitkit::UntrackedFiles::include);
    worker.finishAll();
    ASSERT_EQ(store.snapshot().stashes.value().size(), 1u);
    EXPECT_TRUE(store.snapshot().status.value().files.empty());
    actions::stashApply(store.actors(), store.snapshot().stashes.value()[0], gitkit::StashUse::apply);
    worker.finishAll();
    EXPECT_EQ(store.snapshot().status.value().files.size(), 2u);
    actions::confirmDrop(store.actors(), store.snapshot().stashes.value()[0]);
    EXPECT_EQ(store.window().confirmation.value()->title, QStringLiteral("Drop stash@{0}?"));
    confirm();
    EXPECT_TRUE(store.snapshot().stashes.value().empty());
    EXPECT_EQ(error(), "");
}

TEST_F(StoreActions, ClosingWhileAnActionRunsIsClean)
{
    repo.write("a", "1").commit("one");
    for (const bool jobHasRun : {false, true}) {
        ManualWorker own;
        auto closing = std::make_unique<RepositoryStore>(repo.path(), own);
        actions::createTag(closing->actors(), jobHasRun ? "late" : "early", "HEAD");
        closing->staging().stageAll(); // waits for its turn
        closing->staging().unstageAll();
        const auto comesBack = jobHasRun ? own.runOnly() : std::function<void()>();
        closing.reset();
        if (comesBack)
            comesBack();
        own.finishAll();
        EXPECT_EQ(own.waiting(), 0u);
    }
}

} // namespace
} // namespace plovik
