// SPDX-License-Identifier: GPL-3.0-or-later
#include "tests/store/UndoWindow.h"

#include "app/store/actions/Refs.h"
#include "app/store/actions/Submodules.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <string>
#include <vector>

namespace plovik {
namespace {

using State = gitkit::SubmoduleState;

/// A window on a repository with the submodule `lib`; branch `old` records the first of its two commits.
struct StoreSubmodules : testing::Test, UndoWindow {
    StoreSubmodules()
    {
        inner.write("i", "1\n").commit("inner one");
        repo.git({"-c", "protocol.file.allow=always", "submodule", "add", "-q", inner.path().string(), "lib"});
        repo.commit("with a submodule").git({"branch", "old"});
        first = inner.head();
        inner.write("i", "2\n").commit("inner two");
        in({"pull", "-q"});
        repo.commit("a newer one");
        load();
    }

    std::string in(const std::vector<std::string>& arguments) const
    {
        int status = 0;
        return runPlainGit(repo / "lib", arguments, status);
    }
    const std::vector<gitkit::Submodule>& all() const { return store.neighbours().submodules.value(); }
    State state() const { return stateOf(all().at(0), store.snapshot().status.value()); }
    std::size_t outdated() const { return store.neighbours().outdated.value().size(); }
    void checkOut(const char* branch)
    {
        actions::checkout(store.actors(), ref(branch));
        answer();
    }
    void update()
    {
        actions::updateSubmodules(store.actors(), all());
        worker.finishAll();
    }

    ScopedVariable allowed{"GIT_ALLOW_PROTOCOL", "file"}; // git clones submodules from addresses alone
    TestRepository inner;
    std::string first;
};

TEST_F(StoreSubmodules, AreToldWhenAnotherCommitIsRecorded)
{
    ASSERT_EQ(all().size(), 1U);
    EXPECT_EQ(state(), State::atRecorded);
    in({"checkout", "-q", first});
    load();
    EXPECT_EQ(state(), State::otherCommit);
    EXPECT_EQ(outdated(), 0U) << "the user has checked that out";
    update();
    EXPECT_EQ(state(), State::atRecorded) << error();

    checkOut("old");
    EXPECT_EQ(error(), "");
    EXPECT_EQ(outdated(), 1U);
    update();
    EXPECT_EQ(error(), "");
    EXPECT_EQ(in({"rev-parse", "HEAD"}).substr(0, 40), first);
    EXPECT_EQ(outdated(), 0U);

    checkOut("main");
    EXPECT_EQ(outdated(), 1U);
    store.neighbours().leaveOutdated();
    load();
    EXPECT_EQ(outdated(), 0U) << "it was left as it is";
}

TEST_F(StoreSubmodules, UpdatingAsksBeforeCommitsAreLeftOnNoBranch)
{
    in({"checkout", "-q", "--detach"});
    in({"commit", "-q", "--allow-empty", "-m", "mine"});
    const std::string mine = in({"rev-parse", "HEAD"}).substr(0, 40);
    load();
    update();
    const auto question = store.window().confirmation.value();
    ASSERT_TRUE(question) << error();
    EXPECT_EQ(question->actionTitle, u"Update Anyway");
    EXPECT_EQ(question->detail, u"“lib” has 1 commit on no branch.");
    EXPECT_EQ(in({"rev-parse", "HEAD"}).substr(0, 40), mine) << "nothing was done yet";
    store.window().choose(question->id, 0);
    worker.finishAll();
    EXPECT_EQ(error(), "");
    EXPECT_EQ(state(), State::atRecorded);
    EXPECT_EQ(in({"rev-parse", "kept-" + mine.substr(0, 10)}).substr(0, 40), mine);
}

TEST_F(StoreSubmodules, OneThatIsNotInitialisedOpensNothingAndSaysItsAddressWhenThatFails)
{
    repo.git({"submodule", "deinit", "-q", "-f", "lib"});
    std::filesystem::remove_all(repo / ".git/modules/lib");
    std::filesystem::rename(inner.path(), inner.path().string() + ".away");
    load();
    EXPECT_EQ(state(), State::notInitialised);
    actions::openSubmodule(store.actors(), all()[0]);
    EXPECT_TRUE(opened.empty()) << "the outer repository would be found there";
    update();
    EXPECT_NE(error().find("“lib” comes from " + inner.path().string()), std::string::npos) << error();
    store.window().dismissError();
    std::filesystem::rename(inner.path().string() + ".away", inner.path());
    update();
    EXPECT_EQ(error(), "");
    EXPECT_EQ(state(), State::atRecorded);
    actions::openSubmodule(store.actors(), all()[0]);
    EXPECT_EQ(opened, std::vector<std::filesystem::path>{repo / "lib"});
}

TEST(StoreWithoutSubmodules, PaysNothing)
{
    UndoWindow plain;
    plain.repo.write("a", "1").commit("one");
    plain.load();
    for (const auto& command : plain.store.changes().commandLog().commands()) {
        EXPECT_EQ(std::ranges::count(command.arguments, ".gitmodules"), 0);
        EXPECT_EQ(std::ranges::count(command.arguments, "-s"), 0);
    }
}

} // namespace
} // namespace plovik
