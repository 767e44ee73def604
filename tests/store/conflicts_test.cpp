// SPDX-License-Identifier: GPL-3.0-or-later
#include "tests/store/UndoWindow.h"
#include "tests/support/EveryConflict.h"
#include "tests/support/WholeState.h"

#include "GitKit/repository/Operations.h"
#include "app/store/ConflictWords.h"
#include "app/store/actions/Merges.h"
#include "app/store/actions/Picks.h"
#include "app/store/actions/Stashes.h"

#include <gtest/gtest.h>

namespace plovik {
namespace {

using gitkit::Conflict;
using gitkit::ConflictAnswer;
using gitkit::ConflictKind;

struct StoreConflicts : testing::Test, UndoWindow {
    const gitkit::ConflictList& list() const { return store.conflicts().list.value(); }
    Conflict conflict(const std::string& path) const
    {
        const Conflict* const found = store.conflicts().find(path);
        EXPECT_TRUE(found) << path;
        return found ? *found : Conflict();
    }
    std::string file(const std::string& path) const { return bytesAt(repo / path); }
    /// Two branches that both change a.
    void clash()
    {
        repo.write("a", "1\n").write("b", "1\n").commit("base").git({"checkout", "-q", "-b", "topic"});
        repo.write("a", "right\n").commit("Fix the parser").git({"checkout", "-q", "main"});
        repo.write("a", "left\n").commit("on main");
        load();
    }
    void merge()
    {
        actions::merge(store.actors(), ref("topic"));
        worker.finishAll();
    }
    std::string selected() const
    {
        return store.window().selectedPaths.value().empty() ? "" : *store.window().selectedPaths.value().begin();
    }
};

TEST_F(StoreConflicts, AStopShowsTheFirstConflictAndNoAlert)
{
    clash();
    store.window().select(SidebarItem::history());
    merge();
    EXPECT_EQ(error(), "");
    EXPECT_EQ(store.window().selection.value(), SidebarItem::workingCopy());
    EXPECT_EQ(selected(), "a");
    ASSERT_EQ(list().conflicts.size(), 1U);
    EXPECT_EQ(conflictWords::title(list().names.left), u"main");
    EXPECT_EQ(conflictWords::title(list().names.right), u"topic");
    // What git refuses because of it is an alert as before.
    repo.git({"stash", "list"});
    actions::cherryPick(store.actors(), ref("topic").hash);
    worker.finishAll();
    EXPECT_NE(error(), "");
}

TEST_F(StoreConflicts, AnAutostashThatDoesNotFitIsTold)
{
    clash();
    repo.git({"config", "rebase.autoStash", "true"}).git({"checkout", "-q", "-b", "mine", "main~1"});
    repo.write("b", "mine\n").commit("mine").write("a", "local\n");
    load();
    actions::rebaseOnto(store.actors(), ref("topic")); // exits with 0
    worker.finishAll();
    EXPECT_NE(notice().find("“autostash”"), std::string::npos) << notice() << error();
    EXPECT_EQ(selected(), "a");
    EXPECT_NE(repo.read({"stash", "list"}), "");
}

TEST_F(StoreConflicts, AStatusFromBeforeDoesNotMakeAnAlertOfAStop)
{
    clash();
    store.snapshot().refresh(RefreshScope::status);
    const auto older = worker.runOnly();
    merge();
    older();
    worker.finishAll();
    EXPECT_EQ(error(), "");
    EXPECT_EQ(selected(), "a");
}

TEST_F(StoreConflicts, AStashThatStopsIsCalledByItsMessage)
{
    repo.write("a", "1\n").commit("base").write("a", "work\n").git({"stash", "push", "-q", "-m", "WIP"});
    repo.write("a", "newer\n").commit("newer");
    load();
    actions::stashApply(store.actors(), store.snapshot().stashes.value().front(), gitkit::StashUse::apply);
    worker.finishAll();
    EXPECT_EQ(error(), "");
    EXPECT_EQ(selected(), "a");
    EXPECT_NE(notice(), "");
    EXPECT_EQ(conflictWords::title(list().names.right), u"stash “On main: WIP”");
}

TEST_F(StoreConflicts, AnswersThatGitRemembersAreTold)
{
    clash();
    repo.git({"config", "rerere.enabled", "true"}).git({"config", "rerere.autoUpdate", "true"});
    runIntoConflicts(repo, {"merge", "topic"});
    repo.write("a", "both\n")
        .git({"add", "a"})
        .git({"commit", "-q", "-m", "merged"})
        .git({"reset", "-q", "--hard", "HEAD~"});
    merge();
    EXPECT_EQ(error(), "");
    EXPECT_EQ(store.snapshot().conflictCount(), 0U);
    EXPECT_NE(notice().find("as you did before"), std::string::npos) << notice();
}

TEST_F(StoreConflicts, ResultsAreKeptResolvedAndBegunAnewAndNothingIsLost)
{
    clash();
    merge();
    std::optional<gitkit::FileStamp> stamp;
    const auto keep = [&](const char* bytes, std::optional<gitkit::FileStamp> seen) {
        store.conflicts().keepResult(conflict("a"), bytes, std::move(seen), [&](auto kept) { stamp = kept; });
        worker.finishAll();
    };
    keep("half\n", {});
    ASSERT_TRUE(stamp);
    EXPECT_EQ(file("a"), "half\n");
    EXPECT_TRUE(conflict("a").isEdited);
    const gitkit::FileStamp first = *stamp;
    repo.write("a", "by another program\n");
    keep("lost\n", first);
    EXPECT_FALSE(stamp);
    EXPECT_NE(error(), "");
    store.window().dismissError();
    store.conflicts().resolve(conflict("a"), "lost\n", first);
    worker.finishAll();
    EXPECT_NE(error(), "");
    EXPECT_EQ(file("a"), "by another program\n");
    store.window().dismissError();

    store.conflicts().resolve(conflict("a"), "done\n", {});
    worker.finishAll();
    EXPECT_EQ(undoTitle(), "Resolving “a”");
    EXPECT_TRUE(list().conflicts.empty());
    store.conflicts().startOverAt({"a"});
    worker.finishAll();
    EXPECT_NE(file("a").find("<<<<<<< main\n"), std::string::npos) << file("a");
    ASSERT_EQ(list().conflicts.size(), 1U);
    EXPECT_FALSE(conflict("a").isRemembered);
    undo();
    EXPECT_EQ(file("a"), "done\n");
    EXPECT_TRUE(list().conflicts.empty());
    undo();
    EXPECT_EQ(file("a"), "by another program\n");
    ASSERT_EQ(list().conflicts.size(), 1U);
}

TEST_F(StoreConflicts, WalksFromOneToTheNext)
{
    makeEveryConflict(repo);
    load();
    merge();
    std::vector<std::string> seen;
    for (std::size_t step = 0; step <= list().conflicts.size(); ++step) {
        seen.push_back(selected());
        store.conflicts().selectNext();
    }
    EXPECT_EQ(seen.front(), seen.back());
    EXPECT_EQ(std::set(seen.begin(), seen.end()).size(), list().conflicts.size());
    EXPECT_EQ(store.conflicts().count(), list().conflicts.size());
    EXPECT_EQ(store.conflicts().find("fRight"), store.conflicts().find("f"));
}

TEST_F(StoreConflicts, EveryAnswerIsTakenBack)
{
    makeEveryConflict(repo);
    load();
    merge();
    const std::string before = wholeState(repo);
    const gitkit::ConflictList all = list();
    int steps = 0;
    for (const Conflict& conflict : all.conflicts) {
        for (const ConflictAnswer answer : gitkit::answersTo(conflict)) {
            SCOPED_TRACE(conflictWords::answerTitle(conflict, all.names, answer).toStdString() + " of " +
                         conflict.path);
            store.conflicts().answer({conflict}, answer);
            this->answer();
            ASSERT_EQ(error(), "");
            EXPECT_EQ(list().conflicts.size(), all.conflicts.size() - 1);
            const std::string after = conflict.kind == ConflictKind::folderAndFile ? wholeState(repo) : std::string();
            undo();
            if (!after.empty()) {
                redo();
                ASSERT_EQ(wholeState(repo), after);
                undo();
            }
            ASSERT_EQ(error(), "");
            ASSERT_EQ(wholeState(repo), before);
            ++steps;
        }
    }
    EXPECT_GT(steps, 25);
}

TEST(ConflictWords, SayWhatHappenedByNamesThatDoNotSwap)
{
    TestRepository repo;
    makeEveryConflict(repo);
    runIntoConflicts(repo, {"rebase", "topic"});
    const gitkit::ConflictList list =
        readConflicts(repo.repository(), {{}, gitkit::operationInProgress(repo.repository(), repo / ".git"), {}});
    std::map<std::string, std::string> said;
    for (const Conflict& conflict : list.conflicts)
        said[conflict.path] = conflictWords::happened(conflict, list.names).toStdString();
    EXPECT_EQ(conflictWords::title(list.names.left), u"topic");
    EXPECT_EQ(conflictWords::title(list.names.right), u"“on main” (commit of main)");
    EXPECT_EQ(said["both"], "changed on both sides");
    EXPECT_EQ(said["goneLeft"], "deleted on “on main”, changed on topic");
    EXPECT_EQ(said["f"], "renamed to “fRight” on topic and to “fLeft” on “on main”");
    EXPECT_EQ(said["newLeft"], "renamed to “newLeft” on “on main”, deleted on topic");
    EXPECT_EQ(said["typed"], "a link on topic, a file on “on main”");
    for (const auto& [path, words] : said)
        EXPECT_NE(words, "") << path;
}

} // namespace
} // namespace plovik
