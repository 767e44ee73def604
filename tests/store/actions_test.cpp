// SPDX-License-Identifier: GPL-3.0-or-later
#include "tests/store/ManualWorker.h"
#include "tests/support/TestRepository.h"

#include "app/store/RepositoryStore.h"

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
        store.refresh(RefreshScope::full);
        worker.finishAll();
    }

    std::string activity() const { return store.activity.value().value_or(QString()).toStdString(); }
    std::string error() const { return store.errorMessage.value().value_or(QString()).toStdString(); }

    const GitRef& branch(const std::string& name) const { return named(store.branches.value(), name); }
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
        ASSERT_TRUE(store.confirmation.value().has_value());
        const Confirmation question = *store.confirmation.value();
        store.confirmation = std::nullopt;
        question.action();
        worker.finishAll();
    }
};

TEST_F(StoreActions, AnActionShowsWhatItDoesDropsASecondAndReadsAgain)
{
    repo.write("a", "1").commit("one").git({"remote", "add", "origin", remote.path().string()});
    load();
    store.fetch();
    EXPECT_EQ(activity(), "Fetching…");
    store.fetch();
    store.checkoutCommit(repo.head());
    EXPECT_EQ(worker.waiting(), 1u);
    EXPECT_EQ(activity(), "Fetching…");
    const qint64 generation = store.generation.value();
    worker.finishAll();
    EXPECT_EQ(activity(), "");
    EXPECT_EQ(error(), "");
    EXPECT_EQ(store.generation.value(), generation + 1);
}

TEST_F(StoreActions, AFailureIsShownAndTheRepositoryReadAgain)
{
    repo.write("a", "1").commit("base").git({"branch", "side"}).write("a", "2").commit("ours");
    repo.git({"checkout", "-q", "side"}).write("a", "3").commit("theirs").git({"checkout", "-q", "main"});
    load();
    store.merge(branch("side"));
    EXPECT_EQ(activity(), "Merging side…");
    worker.finishAll();
    EXPECT_NE(error().find("CONFLICT"), std::string::npos) << error();
    ASSERT_EQ(store.status.value().files.size(), 1u);
    EXPECT_TRUE(store.status.value().files[0].isConflicted);
}

TEST_F(StoreActions, PushChoosesTheRemoteOrSaysWhyItCannot)
{
    repo.write("a", "1").commit("one");
    load();
    store.push();
    EXPECT_EQ(error(), "Cannot push: this repository has no remote.");

    repo.git({"remote", "add", "elsewhere", "/nowhere"}).git({"remote", "add", "origin", remote.path().string()});
    load();
    store.errorMessage = std::nullopt;
    store.push();
    EXPECT_EQ(activity(), "Pushing…");
    worker.finishAll();
    EXPECT_EQ(error(), "");
    EXPECT_EQ(store.status.value().upstream, "origin/main");

    repo.git({"checkout", "-q", "--detach"});
    load();
    const int posted = worker.posted();
    store.push();
    EXPECT_EQ(error(), "Cannot push: HEAD is detached. Check out a branch first.");
    EXPECT_EQ(worker.posted(), posted);
}

TEST_F(StoreActions, ARemoteBranchIsCheckedOutAsItsLocalOne)
{
    repo.write("a", "1").commit("one").git({"remote", "add", "origin", remote.path().string()});
    repo.git({"push", "-q", "origin", "main:feature"}).git({"fetch", "-q", "origin"});
    load();
    const GitRef feature = named(store.remoteBranches.value(), "origin/feature");
    store.checkout(feature);
    EXPECT_EQ(activity(), "Checking out feature…");
    worker.finishAll();
    EXPECT_EQ(store.status.value().branch, "feature");
    EXPECT_EQ(store.status.value().upstream, "origin/feature");

    store.checkout(branch("main"));
    worker.finishAll();
    store.checkout(feature); // exists now
    worker.finishAll();
    EXPECT_EQ(store.status.value().branch, "feature");
    EXPECT_EQ(error(), "");
}

TEST_F(StoreActions, DeletingAnUnmergedBranchAsksOnceMore)
{
    repo.write("a", "1").commit("one").git({"checkout", "-q", "-b", "work"}).write("a", "2").commit("two");
    repo.git({"checkout", "-q", "main"});
    load();
    store.confirmDelete(branch("work"));
    EXPECT_EQ(store.confirmation.value()->title, QStringLiteral("Delete branch “work”?"));
    confirm();
    EXPECT_EQ(error(), "");
    ASSERT_TRUE(store.confirmation.value().has_value());
    EXPECT_EQ(store.confirmation.value()->title, QStringLiteral("“work” is not fully merged"));
    EXPECT_EQ(store.branches.value().size(), 2u);
    confirm();
    EXPECT_EQ(store.branches.value().size(), 1u);
}

TEST_F(StoreActions, ATagIsDeletedAndARemoteBranchIsNot)
{
    repo.write("a", "1").commit("one").git({"tag", "v1"}).git({"update-ref", "refs/remotes/origin/x", "HEAD"});
    load();
    store.confirmDelete(store.remoteBranches.value().at(0));
    EXPECT_FALSE(store.confirmation.value().has_value());
    store.confirmDelete(store.tags.value().at(0));
    confirm();
    EXPECT_TRUE(store.tags.value().empty());
}

TEST_F(StoreActions, BranchesTagsPicksRevertsAndStashesLand)
{
    repo.write("a", "1").commit("one").write("b", "1").commit("two");
    load();
    const std::string first = store.history.value().at(1).commit.hash;
    store.createBranch("side", first, gitkit::AfterCreating::checkOut);
    worker.finishAll();
    EXPECT_EQ(store.status.value().branch, "side");
    EXPECT_EQ(store.status.value().oid, first);

    store.createTag("v1", first);
    worker.finishAll();
    EXPECT_EQ(store.tags.value().at(0).hash, first);

    store.cherryPick(branch("main").hash);
    worker.finishAll();
    EXPECT_EQ(store.history.value().at(0).commit.subject, "two");
    store.revert(*store.status.value().oid);
    worker.finishAll();
    EXPECT_FALSE(std::filesystem::exists(repo / "b"));
    ASSERT_EQ(error(), "");

    repo.write("a", "changed").write("new", "x");
    load();
    store.stashSave(QStringLiteral("wip"), gitkit::UntrackedFiles::include);
    worker.finishAll();
    ASSERT_EQ(store.stashes.value().size(), 1u);
    EXPECT_TRUE(store.status.value().files.empty());
    store.stashApply(store.stashes.value()[0], gitkit::StashUse::apply);
    worker.finishAll();
    EXPECT_EQ(store.status.value().files.size(), 2u);
    store.confirmDrop(store.stashes.value()[0]);
    EXPECT_EQ(store.confirmation.value()->title, QStringLiteral("Drop stash@{0}?"));
    confirm();
    EXPECT_TRUE(store.stashes.value().empty());
    EXPECT_EQ(error(), "");
}

TEST_F(StoreActions, ClosingWhileAnActionRunsIsClean)
{
    repo.write("a", "1").commit("one");
    for (const bool jobHasRun : {false, true}) {
        ManualWorker own;
        auto closing = std::make_unique<RepositoryStore>(repo.path(), own);
        closing->createTag(jobHasRun ? "late" : "early", "HEAD");
        closing->stageAll(); // waits for its turn
        closing->unstageAll();
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
