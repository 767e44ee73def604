// SPDX-License-Identifier: GPL-3.0-or-later
// Coming to commits wherever they are, and the way back.

#include "tests/store/ManualWorker.h"
#include "tests/support/Given.h"
#include "tests/support/TestRepository.h"

#include "app/store/RepositoryStore.h"

#include <gtest/gtest.h>

namespace plovik {
namespace {

using namespace std::chrono_literals;

/// `main` with 1,200 commits, a branch from its third one, and a commit that nothing leads to.
struct StoreNavigation : testing::Test {
    TestRepository repo;
    ManualWorker worker;
    RepositoryStore store{repo.path(), worker};
    std::vector<std::string> main; ///< from the newest
    std::string side, dangling;

    StoreNavigation()
    {
        std::string stream;
        for (int i = 0; i < 1200; ++i) {
            const std::string line = "committer A <a@example.org> " + std::to_string(1'700'000'000 + i) + " +0000\n";
            stream += "commit refs/heads/main\n" + line + "data 1\nx\n";
        }
        repo.read({"fast-import", "--quiet"}, stream);
        side = repo.read({"commit-tree", "-p", "main~1197", "-m", "side", "main^{tree}"});
        dangling = repo.read({"commit-tree", "-p", "main", "-m", "lost", "main^{tree}"});
        repo.git({"branch", "side", side}).git({"tag", "-a", "-m", "note", "v1", "main~1199"});
        std::string list = repo.read({"rev-list", "main"});
        for (std::size_t at = 0; at < list.size(); at += 41)
            main.push_back(list.substr(at, 40));
        load();
    }

    void load()
    {
        store.snapshot().refresh(RefreshScope::full);
        worker.finishAll();
    }
    void select(SidebarItem item)
    {
        store.window().select(std::move(item));
        worker.finishAll();
    }
    void show(const std::string& hash)
    {
        store.history().showCommit(hash);
        worker.finishAll();
    }
    void back()
    {
        store.trail().goBack();
        worker.finishAll();
    }
    void forward()
    {
        store.trail().goForward();
        worker.finishAll();
    }
    bool isAt(const SidebarItem& item, const std::optional<std::string>& commit) const
    {
        return store.window().selection.value() == item && store.window().selectedCommit.value() == commit;
    }
};

const SidebarItem all = SidebarItem::history();
const SidebarItem sideRef = SidebarItem::ref("refs/heads/side");
const SidebarItem mainRef = SidebarItem::ref("refs/heads/main");

TEST_F(StoreNavigation, ACommitIsShownWhereverItIs)
{
    show(main[3]);
    EXPECT_TRUE(isAt(all, main[3]));
    EXPECT_EQ(store.history().history.value().size(), 500u);

    // Further down than the page, under a search that hides it, named by a part of its hash.
    store.history().search(QStringLiteral("nothing like this"), gitkit::HistoryFilter::Field::message);
    worker.advance(300ms);
    worker.finishAll();
    store.history().showCommit(main[900].substr(0, 10));
    worker.advance(200ms);
    EXPECT_EQ(store.history().lookup.value(),
              QStringLiteral("Looking for %1…").arg(QString::fromStdString(main[900]).left(7)));
    worker.finishAll();
    EXPECT_TRUE(isAt(all, main[900]));
    EXPECT_EQ(store.history().historySearch.value(), QString());
    EXPECT_EQ(store.history().lookup.value(), std::nullopt);
    EXPECT_EQ(store.history().history.value().size(), 1201u) << "three pages, for a hundred rows stand below it";

    // The selection outlives a refresh, which reads as far down again.
    load();
    EXPECT_TRUE(isAt(all, main[900]));

    // In the history of a ref as long as that holds it, otherwise in all of history.
    select(sideRef);
    select(SidebarItem::workingCopy());
    show(main[1199]);
    EXPECT_TRUE(isAt(sideRef, main[1199]));
    show(main[0]);
    EXPECT_TRUE(isAt(all, main[0]));
}

TEST_F(StoreNavigation, WhatNothingLeadsToIsToldAndLeavesTheSelection)
{
    select(sideRef);
    show(dangling);
    EXPECT_EQ(store.window().notice.value(),
              QStringLiteral("No branch or tag leads to %1, so it is not in the history.")
                  .arg(QString::fromStdString(dangling).left(7)));
    EXPECT_TRUE(isAt(sideRef, side));
    show(std::string(40, '1'));
    EXPECT_EQ(store.window().notice.value(), QStringLiteral("This repository has no commit 1111111."));
    EXPECT_TRUE(isAt(sideRef, side));
    EXPECT_FALSE(store.window().errorMessage.value());
    EXPECT_EQ(store.history().lookup.value(), std::nullopt);
    show(side);
    EXPECT_EQ(store.window().notice.value(), QString()) << "what was told no longer matters";
}

TEST_F(StoreNavigation, TheNewestWishWins)
{
    store.history().showCommit(main[1100]);
    store.history().showCommit(main[700]);
    ASSERT_EQ(worker.waiting(), 2u);
    worker.finish(1);
    worker.finish(0);
    worker.finishAll();
    EXPECT_TRUE(isAt(all, main[700]));
    EXPECT_EQ(store.history().history.value().size(), 1000u);

    // A click while git is still looking, and one while the longer page is being read.
    store.history().showCommit(main[1100]);
    store.window().selectCommit(main[5]);
    worker.finishAll();
    EXPECT_TRUE(isAt(all, main[5]));
    store.history().showCommit(main[1100]);
    worker.finish();
    store.window().selectCommit(main[6]);
    worker.finishAll();
    EXPECT_TRUE(isAt(all, main[6]));

    // A refresh in between reads as far, so that nothing is lost.
    select(sideRef);
    store.history().showCommit(main[1100]);
    worker.finish();
    store.snapshot().refresh(RefreshScope::full);
    worker.finishAll();
    EXPECT_TRUE(isAt(all, main[1100]));

    store.history().showCommit(main[1150]);
    select(SidebarItem::workingCopy());
    EXPECT_EQ(store.window().selection.value(), SidebarItem::workingCopy());
}

TEST_F(StoreNavigation, ASelectedRefShowsItsOwnCommit)
{
    select(sideRef);
    EXPECT_TRUE(isAt(sideRef, side));
    const qint64 reveals = store.history().commitReveals.value();
    store.window().selectCommit(main[1199]);
    select(SidebarItem::workingCopy());
    select(sideRef);
    EXPECT_TRUE(isAt(sideRef, side)) << "without reading it again";
    EXPECT_GT(store.history().commitReveals.value(), reveals);
    select(SidebarItem::ref("refs/tags/v1"));
    EXPECT_TRUE(isAt(SidebarItem::ref("refs/tags/v1"), main[1199])) << "the commit, not the tag's object";

    // All of history keeps what it holds, and opens with HEAD.
    select(all);
    EXPECT_EQ(store.window().selectedCommit.value(), main[0]) << "the commit of the tag is not on the page";
    given(store.window().selectedCommit, std::nullopt);
    select(SidebarItem::workingCopy());
    select(all);
    EXPECT_TRUE(isAt(all, main[0]));
    store.window().selectCommit(main[3]);
    select(all);
    EXPECT_TRUE(isAt(all, main[3]));
}

TEST_F(StoreNavigation, BackAndForwardGoThroughCommitsAndViews)
{
    EXPECT_FALSE(store.trail().canGoBack.value()) << "the first load is no step";
    select(all);
    store.window().selectCommit(main[2]);
    store.window().selectCommit(main[4]);
    select(sideRef);
    show(main[1000]);
    EXPECT_FALSE(store.trail().canGoForward.value());

    back();
    EXPECT_TRUE(isAt(sideRef, side));
    back();
    EXPECT_TRUE(isAt(all, main[4]));
    back();
    EXPECT_TRUE(isAt(all, main[2]));
    back();
    EXPECT_EQ(store.window().selection.value(), SidebarItem::workingCopy());
    EXPECT_FALSE(store.trail().canGoBack.value());
    back();
    for (int i = 0; i < 4; ++i)
        forward();
    EXPECT_TRUE(isAt(all, main[1000]));
    EXPECT_FALSE(store.trail().canGoForward.value());

    // Two presses before git has answered are two steps; a new selection cuts off what lies forward.
    store.trail().goBack();
    store.trail().goBack();
    worker.finishAll();
    EXPECT_TRUE(isAt(all, main[4]));
    store.window().selectCommit(main[7]);
    EXPECT_FALSE(store.trail().canGoForward.value());
    load();
    back();
    EXPECT_TRUE(isAt(all, main[4])) << "a refresh makes no step";
}

TEST_F(StoreNavigation, AHeldKeyIsOneStep)
{
    select(all);
    store.window().selectCommit(main[0]);
    for (int i = 0; i < 300; ++i) {
        store.history().moveCommitSelection(1);
        worker.advance(33ms);
    }
    worker.advance(500ms);
    store.history().moveCommitSelection(1);
    EXPECT_TRUE(isAt(all, main[301]));
    back();
    EXPECT_TRUE(isAt(all, main[300]));
    back();
    EXPECT_TRUE(isAt(all, main[0]));
}

TEST_F(StoreNavigation, WhatIsGoneIsSkipped)
{
    select(all);
    store.window().selectCommit(main[9]);
    select(sideRef);
    select(mainRef);
    store.window().selectCommit(main[0]);
    select(SidebarItem::workingCopy());

    repo.git({"branch", "-q", "-D", "side"}).git({"update-ref", "refs/heads/main", main[8]});
    load();
    back();
    EXPECT_TRUE(isAt(all, main[9])) << "one ref is gone, and the other's commit is no longer its";
    forward();
    EXPECT_EQ(store.window().selection.value(), SidebarItem::workingCopy());
    EXPECT_FALSE(store.trail().canGoForward.value());
}

TEST(NavigationTrail, KeepsAHundredPlacesAndNoneTwiceInARow)
{
    const auto commit = [](int number) { return NavigationPlace{SidebarItem::history(), std::to_string(number)}; };
    NavigationTrail trail(commit(0));
    for (int i = 0; i < 500; ++i) {
        trail.visit(commit(i));
        trail.visit(commit(i));
    }
    int steps = 0;
    while (trail.step(NavigationTrail::Direction::back))
        ++steps;
    EXPECT_EQ(steps, 99);
    EXPECT_EQ(trail.current(), commit(400));

    trail.visit(commit(1));
    trail.visit(commit(2));
    trail.visit(commit(1));
    ASSERT_TRUE(trail.step(NavigationTrail::Direction::back));
    ASSERT_TRUE(trail.forget(NavigationTrail::Direction::back));
    EXPECT_EQ(trail.current(), commit(1));
    EXPECT_FALSE(trail.canStep(NavigationTrail::Direction::forward)) << "the places beside it were one";
}

} // namespace
} // namespace plovik
