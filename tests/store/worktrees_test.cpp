// SPDX-License-Identifier: GPL-3.0-or-later
#include "tests/store/UndoWindow.h"

#include "GitKit/repository/Worktrees.h"
#include "app/store/actions/Worktrees.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

namespace plovik {
namespace {

namespace fs = std::filesystem;

/// A window on a repository that ignores *.env, with a second working tree `topic` beside it.
struct StoreWorktrees : testing::Test, UndoWindow {
    StoreWorktrees()
    {
        repo.write("a", "1\n").write(".gitignore", "*.env\n").commit("one").git({"branch", "topic"});
        repo.git({"worktree", "add", "-q", folder.string(), "topic"});
        load();
    }

    const std::vector<gitkit::Worktree>& trees() const { return store.neighbours().worktrees.value(); }
    void put(const char* name, const char* bytes) const { std::ofstream(folder / name) << bytes; }
    void askToRemove()
    {
        actions::askToRemoveWorktree(store.actors(), trees().at(1));
        worker.finishAll();
    }
    const Confirmation& question() const { return store.window().confirmation.value().value(); }
    int listings() const
    {
        const auto commands = store.changes().commandLog().commands();
        return static_cast<int>(std::ranges::count_if(
            commands, [](const auto& command) { return std::ranges::count(command.arguments, "worktree") == 1; }));
    }

    TemporaryFolder beside;
    fs::path folder = beside / "topic";
};

TEST_F(StoreWorktrees, AreReadOnlyWhereThereMayBeSeveral)
{
    ASSERT_EQ(trees().size(), 2U);
    EXPECT_EQ(trees()[1].branchName(), "topic");
    EXPECT_EQ(listings(), 1);

    UndoWindow plain;
    plain.repo.write("a", "1").commit("one");
    plain.load();
    for (const auto& command : plain.store.changes().commandLog().commands())
        EXPECT_EQ(std::ranges::count(command.arguments, "worktree"), 0);

    repo.git({"worktree", "remove", folder.string()});
    load();
    EXPECT_TRUE(trees().empty()) << "one is no list";
}

TEST_F(StoreWorktrees, AreMadeAndOpened)
{
    const fs::path made = beside / "made";
    actions::addWorktree(store.actors(), {.folder = made, .branch = "made", .isNewBranch = true},
                         actions::AfterAdding::open);
    worker.finishAll();
    EXPECT_EQ(opened, std::vector<fs::path>{made});
    EXPECT_EQ(trees().size(), 3U);

    actions::addWorktree(store.actors(), {.folder = beside / "again", .branch = "made"}, actions::AfterAdding::stay);
    worker.finishAll();
    EXPECT_EQ(question().detail.toStdString(), made.string()) << "the window that has the branch is offered";
    answer();
    EXPECT_EQ(opened.size(), 2U);
}

TEST_F(StoreWorktrees, RemovingOneSaysWhatGoesAndWhereItIsKept)
{
    put("my.env", "secret");
    actions::lockWorktree(store.actors(), trees()[1], "on a stick");
    worker.finishAll();
    askToRemove();
    EXPECT_EQ(question().title, u"Remove the worktree “topic”?");
    EXPECT_EQ(question().actionTitle, u"Remove Anyway");
    EXPECT_TRUE(question().message.contains(u"It is locked: “on a stick”."));
    EXPECT_TRUE(question().message.contains(u"1 file or folder is in no commit")) << question().message.toStdString();
    EXPECT_EQ(question().detail, u"my.env, 6 bytes");
    EXPECT_TRUE(fs::exists(folder));
    answer();
    EXPECT_EQ(error(), "");
    EXPECT_FALSE(fs::exists(folder));
    EXPECT_TRUE(trees().empty());
    const std::string told = notice();
    const std::string start = "is in ";
    const std::size_t place = told.find(start);
    ASSERT_NE(place, std::string::npos) << told;
    const std::string saved = told.substr(place + start.size(), told.rfind(" now") - place - start.size());
    EXPECT_TRUE(fs::exists(fs::path(saved) / "my.env")) << saved;
}

TEST_F(StoreWorktrees, RemovingOneOffersABranchForItsStrayCommits)
{
    int status = 0;
    runPlainGit(folder, {"checkout", "-q", "--detach"}, status);
    runPlainGit(folder, {"commit", "-q", "--allow-empty", "-m", "stray"}, status);
    load();
    askToRemove();
    EXPECT_TRUE(question().message.contains(u"1 commit of its detached HEAD is"));
    ASSERT_EQ(question().choices.size(), 1U);
    store.window().choose(question().id, 0);
    const auto& sheet = std::get<NewBranchSheet>(*store.window().sheet.value());
    EXPECT_EQ(sheet.startPoint, trees()[1].head);
    EXPECT_TRUE(fs::exists(folder));
}

TEST_F(StoreWorktrees, AMissingOneIsForgottenUnlessItIsLocked)
{
    repo.git({"worktree", "lock", folder.string()});
    fs::rename(folder, beside / "moved");
    load();
    ASSERT_TRUE(trees()[1].isMissing);
    askToRemove();
    EXPECT_NE(error().find("Unlock it"), std::string::npos);
    store.window().dismissError();
    actions::unlockWorktree(store.actors(), trees()[1]);
    worker.finishAll();
    askToRemove();
    EXPECT_EQ(question().actionTitle, u"Forget");
    answer();
    EXPECT_TRUE(trees().empty());
    EXPECT_EQ(error(), "");
}

} // namespace
} // namespace plovik
