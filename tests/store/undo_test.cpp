// SPDX-License-Identifier: GPL-3.0-or-later
// Every action of the store, taken back and done again.

#include "tests/store/UndoWindow.h"
#include "tests/support/FullDisk.h"
#include "tests/support/WholeState.h"

#include "GitKit/repository/GitRepository.h"
#include "GitKit/rewrite/Absorbing.h"
#include "GitKit/rewrite/Rebasing.h"
#include "GitKit/runner/GitVersion.h"
#include "GitKit/undo/UndoJournal.h"
#include "app/store/RepositoryStore.h"
#include "app/store/actions/BranchSettings.h"
#include "app/store/actions/EditStop.h"
#include "app/store/actions/FileVersions.h"
#include "app/store/actions/Ignoring.h"
#include "app/store/actions/Merges.h"
#include "app/store/actions/Operation.h"
#include "app/store/actions/OwnCommands.h"
#include "app/store/actions/Patches.h"
#include "app/store/actions/Picks.h"
#include "app/store/actions/Pushes.h"
#include "app/store/actions/Refs.h"
#include "app/store/actions/Remotes.h"
#include "app/store/actions/StagedInto.h"
#include "app/store/actions/Stashes.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <functional>
#include <iterator>
#include <sstream>

namespace plovik {
namespace {

namespace fs = std::filesystem;

struct StoreUndo : testing::Test, UndoWindow {
    int status_ = 0;
};

struct Story {
    const char* title;
    std::function<void(TestRepository&)> before;
    std::function<void(UndoWindow&)> act;
};

void conflict(TestRepository& repo, const std::vector<std::string>& command)
{
    repo.write("a", "ours").git({"commit", "-q", "-am", "ours"});
    int status = 0;
    runPlainGit(repo.path(), command, status);
}

const auto nothing = [](TestRepository&) {};

/// origin was fetched, its HEAD names a branch, and main follows one. The sections stand in the order in which they are
/// written anew.
void withRemote(TestRepository& repo)
{
    repo.git({"config", "branch.main.remote", "origin"}).git({"config", "branch.main.merge", "refs/heads/main"});
    repo.git({"config", "remote.pushDefault", "origin"}).git({"remote", "add", "origin", "."});
    repo.git({"fetch", "-q", "origin"}).git({"remote", "set-head", "origin", "main"});
}

/// On top of a commit that has the files `gone` and `place`, with changes that the newest commit does not touch.
void twoCommits(TestRepository& repo)
{
    repo.git({"checkout", "-q", "-f", "-B", "main"})
        .write("gone", "1")
        .write("place", "1")
        .git({"add", "gone", "place"});
    repo.git({"commit", "-q", "-m", "older"}).write("a", "2").git({"rm", "-q", "-f", "place"});
    repo.git({"commit", "-q", "-am", "newer"}).write("b", "staged").git({"add", "b"}).write("b", "changed");
    repo.write("new", "n\r\n").git({"add", "new"});
}

gitkit::FileChange fileOf(const UndoWindow& window, const std::string& path)
{
    const gitkit::FileChange* const file = window.store.snapshot().status.value().files.find(path);
    EXPECT_TRUE(file) << path;
    return file ? *file : gitkit::FileChange();
}

void resetBack(UndoWindow& window, gitkit::ResetKind kind)
{
    actions::reset(window.store.actors(), {kind, window.repo.head(), window.repo.read({"rev-parse", "HEAD~1"})});
}

/// topic has two commits above main, the second of which changes what the first one has made.
void twoOnTopic(TestRepository& repo)
{
    repo.git({"checkout", "-q", "topic"}).write("t/new", "2").git({"commit", "-q", "-am", "three"});
    repo.git({"checkout", "-q", "main"}).write("b", "local");
}

gitkit::Commit commitAt(UndoWindow& window, const std::string& name)
{
    gitkit::Commit commit;
    commit.hash = window.repo.read({"rev-parse", name});
    commit.subject = window.repo.read({"log", "-1", "--format=%s", name});
    std::istringstream parents(window.repo.read({"log", "-1", "--format=%P", name}));
    commit.parents.assign(std::istream_iterator<std::string>(parents), {});
    return commit;
}

/// main has two more commits, branch mid stands on the first, and files were changed that they do not touch.
void twoToRewrite(TestRepository& repo)
{
    repo.write("c", "1").git({"add", "c"}).git({"commit", "-q", "-m", "two\n\nbody"}).git({"branch", "mid"});
    repo.write("d", "1").git({"add", "d"}).git({"commit", "-q", "-m", "three"});
    repo.write("b", "staged").git({"add", "b"}).write("b", "changed").write("new", "n").git({"add", "-N", "new"});
}

template <typename Do>
void rewrite(UndoWindow& window, Do change)
{
    window.store.rewriting().watch();
    window.worker.finishAll();
    change(window.store.rewriting());
    window.worker.finishAll();
    window.store.rewriting().apply();
}

const std::vector<Story> stories{
    {"Commit “more”", [](auto& r) { r.write("b", "2").git({"add", "b"}); },
     [](auto& t) {
         t.store.draft().setSubject(QStringLiteral("more"));
         t.store.draft().commit();
     }},
    {"Amend of “other words”", [](auto& r) { r.write("b", "2").git({"add", "b"}); },
     [](auto& t) {
         t.store.draft().setSubject(QStringLiteral("other words"));
         t.store.draft().setAmend(true);
         t.store.draft().commit();
     }},
    {"Checkout of topic", nothing, [](auto& t) { actions::checkout(t.store.actors(), t.ref("topic")); }},
    {"New Branch “new”", nothing,
     [](auto& t) {
         actions::createBranch(t.store.actors(), "new", "refs/heads/topic", gitkit::AfterCreating::checkOut);
     }},
    {"Deletion of Branch “topic”",
     [](auto& r) {
         r.git({"merge", "-q", "topic"}).git({"config", "branch.topic.remote", "."});
         r.git({"config", "branch.topic.merge", "refs/heads/main"});
     },
     [](auto& t) { actions::confirmDelete(t.store.actors(), t.ref("topic")); }},
    {"Rename of “main” to “main/new”",
     [](auto& r) {
         r.git({"config", "branch.main.remote", "origin"}).git({"config", "branch.main.merge", "refs/heads/main"});
     },
     [](auto& t) { actions::renameBranch(t.store.actors(), "main", "main/new"); }},
    {"New Upstream of “main”",
     [](auto& r) {
         r.git({"remote", "add", "origin", "."}).git({"update-ref", "refs/remotes/origin/topic", "topic"});
         r.git({"tag", "origin/topic"});
     },
     [](auto& t) { actions::setUpstream(t.store.actors(), "main", "refs/remotes/origin/topic"); }},
    {"New Remote “up”", nothing,
     [](auto& t) { actions::addRemote(t.store.actors(), {.name = "up", .url = ".", .pushUrl = "../there"}); }},
    {"Change of Remote “origin”", withRemote,
     [](auto& t) {
         actions::changeRemote(t.store.actors(), {.name = "origin", .url = "."},
                               {.name = "origin", .url = "../x", .pushUrl = "../y", .skipsFetchAll = true});
     }},
    {"Rename of Remote “origin” to “up”", withRemote,
     [](auto& t) {
         actions::changeRemote(t.store.actors(), {.name = "origin", .url = "."}, {.name = "up", .url = "."});
     }},
    {"Removal of Remote “origin”", withRemote,
     [](auto& t) { actions::confirmRemoveRemote(t.store.actors(), "origin"); }},
    {"New Tag “v2”", nothing, [](auto& t) { actions::createTag(t.store.actors(), "v2", t.repo.head()); }},
    {"New Tag “v2”", nothing,
     [](auto& t) { actions::createTag(t.store.actors(), "v2", t.repo.head(), "#1 words\n\nmore"); }},
    {"Deletion of Tag “v1”", [](auto& r) { r.git({"tag", "-a", "-m", "note", "v1"}); },
     [](auto& t) { actions::confirmDelete(t.store.actors(), t.ref("v1")); }},
    {"Merge of topic", nothing, [](auto& t) { actions::merge(t.store.actors(), t.ref("topic")); }},
    {"Merge of topic", [](auto& r) { r.write("a", "ours").git({"commit", "-q", "-am", "ours"}); },
     [](auto& t) { actions::merge(t.store.actors(), t.ref("topic")); }},
    {"Squash of topic", [](auto& r) { r.write("b", "local"); },
     [](auto& t) { actions::merge(t.store.actors(), t.ref("topic"), gitkit::MergeKind::squash); }},
    {"Rebase of main onto topic",
     [](auto& r) {
         r.write("c", "ours").git({"add", "c"}).git({"commit", "-q", "-m", "ours"}).git({"branch", "other"});
         r.git({"config", "rebase.updateRefs", "true"}).git({"config", "rebase.autoStash", "true"});
         r.write("b", "changed");
     },
     [](auto& t) { actions::rebaseOnto(t.store.actors(), t.ref("topic")); }},
    {"Rebase of main onto topic", [](auto& r) { r.write("a", "ours").git({"commit", "-q", "-am", "ours"}); },
     [](auto& t) { actions::rebaseOnto(t.store.actors(), t.ref("topic")); }},
    {"Rewrite of main", twoToRewrite,
     [](auto& t) { rewrite(t, [&](Rewriting& plan) { plan.moveDown({t.repo.head()}); }); }},
    {"Rewrite of main",
     [](auto& r) {
         twoToRewrite(r);
         r.git({"rm", "-q", "-f", "c"}).git({"commit", "-q", "-m", "away", "--", "c"});
         r.write(".git/info/exclude", "c\n").write("c", "ignored");
     },
     [](auto& t) { rewrite(t, [&](Rewriting& plan) { plan.drop({t.repo.head()}); }); }},
    {"Rewrite of main",
     [](auto& r) {
         twoToRewrite(r);
         r.git({"reset", "-q"}).git({"checkout", "-q", "b"}).write("d", "2").git({"commit", "-q", "-am", "four"});
         r.write("b", "changed");
     },
     [](auto& t) { // which conflicts
         rewrite(t, [&](Rewriting& plan) { plan.move({t.repo.head()}, t.repo.read({"rev-parse", "HEAD~2"})); });
     }},
    {"Rewrite of main",
     [](auto& r) {
         twoToRewrite(r);
         r.git({"commit", "-q", "-m", "several", "--", "b"}).git({"reset", "-q"});
         r.write("c", "2").git({"commit", "-q", "-a", "--amend", "-m", "several"}).write("b", "local");
     },
     [](auto& t) {
         t.store.rewriting().watch();
         t.worker.finishAll();
         t.store.rewriting().split(t.repo.head(), {.files = {"b"}}, QStringLiteral("b"), QStringLiteral("rest"));
     }},
    {"Taking Apart of “three”",
     [](auto& r) {
         twoToRewrite(r);
         r.git({"reset", "-q", "--hard"})
             .git({"-c", "sequence.editor=sed -i s/^pick/edit/", "rebase", "-q", "-i", "HEAD~1"});
         r.write("d", "staged").git({"add", "d"}).write("c", "edited");
     },
     [](auto& t) { actions::takeApart(t.store.actors()); }},
    {"Absorbing of 1 change",
     [](auto& r) {
         twoToRewrite(r);
         r.git({"reset", "-q", "b"}).write("c", "2").git({"add", "c"}).write("c", "3");
     },
     [](auto& t) { actions::absorb(t.store.actors(), gitkit::absorbProposal(t.repo.repository())); }},
    {"Commit into “two”", twoToRewrite,
     [](auto& t) {
         t.store.rewriting().watch();
         t.worker.finishAll();
         actions::commitStagedInto(t.store.actors(),
                                   {.commit = t.ref("mid").hash, .subject = "two", .message = "two\n\nother\n"});
     }},
    {"Rewrite of topic", twoToRewrite,
     [](auto& t) {
         t.store.window().select(SidebarItem::ref("refs/heads/topic"));
         rewrite(t, [&](Rewriting& plan) { plan.reword(t.ref("topic").hash, QStringLiteral("words")); });
     }},
    {"Rebase of topic onto main", twoToRewrite,
     [](auto& t) {
         const gitkit::RebaseQuestion question{.branch = "refs/heads/topic", .onto = "refs/heads/main"};
         t.store.rewriting().rebase(gitkit::rebaseProposal(t.repo.repository(), question), QStringLiteral("main"));
     }},
    {"Fast-Forward of “old”",
     [](auto& r) { r.git({"branch", "old", "main"}).git({"branch", "-q", "-u", "topic", "old"}); },
     [](auto& t) { actions::fastForward(t.store.actors(), "old"); }},
    {"Move of “old”", [](auto& r) { r.git({"branch", "old", "topic"}); },
     [](auto& t) { actions::moveBranch(t.store.actors(), t.ref("old"), t.repo.head()); }},
    {"Cherry-Pick of", [](auto& r) { r.write("b", "local"); },
     [](auto& t) { actions::cherryPick(t.store.actors(), t.ref("topic").hash); }},
    {"Cherry-Pick of 2 commits", twoOnTopic,
     [](auto& t) { actions::cherryPick(t.store.actors(), std::vector{commitAt(t, "topic"), commitAt(t, "topic~1")}); }},
    {"Revert of 2 commits",
     [](auto& r) {
         twoOnTopic(r);
         r.git({"merge", "-q", "--ff-only", "topic"});
     },
     [](auto& t) { actions::revert(t.store.actors(), std::vector{commitAt(t, "topic"), commitAt(t, "topic~1")}); }},
    {"Revert of",
     [](auto& r) {
         twoOnTopic(r);
         r.git({"merge", "-q", "--no-ff", "topic"});
     },
     [](auto& t) { actions::revert(t.store.actors(), std::vector{commitAt(t, "HEAD")}); }},
    {"Revert of", nothing, [](auto& t) { actions::revert(t.store.actors(), t.repo.head()); }},
    {"Run of “mess”", [](auto& r) { r.write("b", "local"); },
     [](auto& t) {
         const char* const line =
             "git commit -q -m own --allow-empty && git tag own && printf x > a && printf y > b && "
             "git branch -q -D topic && git config branch.main.remote .";
         actions::runOwnCommand(t.store.actors(), {QStringLiteral("mess"), {line, {}, {}, {}}, false});
     }},
    {"Reset of main", twoCommits, [](auto& t) { resetBack(t, gitkit::ResetKind::keep); }},
    {"Reset of main", twoCommits, [](auto& t) { resetBack(t, gitkit::ResetKind::soft); }},
    {"Reset of main", twoCommits, [](auto& t) { resetBack(t, gitkit::ResetKind::mixed); }},
    {"Reset of main",
     [](auto& r) {
         twoCommits(r);
         // What comes back is ignored, untracked, or lies in a folder where a file comes.
         r.git({"rm", "-q", "--cached", "gone"}).write("gone", "mine").write("place/file", "f\r\n");
         r.write("c", "staged").git({"add", "c"}).write("c", "changed").git({"update-index", "--chmod=+x", "a"});
     },
     [](auto& t) { resetBack(t, gitkit::ResetKind::hard); }},
    {"Abort of the Merge",
     [](auto& r) {
         conflict(r, {"merge", "topic"});
         r.write("a", "half resolved\n");
     },
     [](auto& t) { actions::abortOperation(t.store.actors()); }},
    {"Skip of a Commit",
     [](auto& r) {
         conflict(r, {"rebase", "topic"});
         r.write("a", "half").write("b", "touched");
     },
     [](auto& t) { actions::skipOperation(t.store.actors()); }},
    {"Continuing the Rebase",
     [](auto& r) {
         conflict(r, {"rebase", "topic"});
         r.write("a", "resolved").git({"add", "a"});
     },
     [](auto& t) { actions::continueOperation(t.store.actors()); }},
    {"Resolving “a”", [](auto& r) { conflict(r, {"merge", "topic"}); },
     [](auto& t) { t.store.staging().takeSide(t.files(), gitkit::ConflictSide::theirs); }},
    {"Taking “a” from", [](auto& r) { r.write("a", "staged").git({"add", "a"}).write("a", "mine\r\n"); },
     [](auto& t) { actions::takeFile(t.store.actors(), t.ref("topic").hash, "a"); }},
    {"Taking “a” from",
     [](auto& r) { r.git({"rm", "-q", "--cached", "a"}).write(".git/info/exclude", "a\n").write("a", "ignored\n"); },
     [](auto& t) { actions::takeFile(t.store.actors(), t.ref("topic").hash, "a"); }},
    {"Ignoring of “/untracked”", nothing,
     [](auto& t) {
         actions::ignore(t.store.actors(), Staging::Files({fileOf(t, "untracked")}), actions::IgnoreWhat::files,
                         gitkit::IgnorePlace::own);
     }},
    {"Applying of “x.patch”",
     [](auto& r) {
         r.write("a", "p\r\n").write("q/new", "1").git({"add", "."}).git({"mv", "b", "moved"});
         r.git({"commit", "-q", "-m", "patched"});
         r.write(".git/x.patch", r.read({"show", "--format=", "--binary"}) + "\n")
             .git({"reset", "-q", "--hard", "HEAD~1"});
     },
     [](auto& t) { actions::askToApply(t.store.actors(), t.repo / ".git/x.patch"); }},
    {"Applying of “x.mbox”",
     [](auto& r) {
         r.write("a", "p\n").git({"commit", "-q", "-am", "one more"}).write("q", "1").git({"add", "q"});
         r.git({"commit", "-q", "-m", "and more"})
             .write(".git/x.mbox", r.read({"format-patch", "-2", "--stdout"}) + "\n");
         r.git({"reset", "-q", "--hard", "HEAD~2"}).write("b", "local");
     },
     [](auto& t) { actions::askToApply(t.store.actors(), t.repo / ".git/x.mbox"); }},
    {"Ignoring of “*.txt”",
     [](auto& r) {
         r.write("b.txt", "1").git({"add", "b.txt"}).git({"commit", "-q", "-m", "text"});
         r.remove(".gitignore").write("b.txt", "2").git({"add", "-u"}).write("b.txt", "3").write("c.txt", "1");
     },
     [](auto& t) {
         actions::ignore(t.store.actors(), Staging::Files({fileOf(t, "b.txt"), fileOf(t, "c.txt")}),
                         actions::IgnoreWhat::ending, gitkit::IgnorePlace::repository);
     }},
    {"Stash “mine”",
     [](auto& r) { r.write("a", "staged").git({"add", "a"}).write("a", "changed").write("new file", "n\r\n"); },
     [](auto& t) { actions::stashSave(t.store.actors(), QStringLiteral("mine"), gitkit::UntrackedFiles::include); }},
    {"Pop of “On main: mine”",
     [](auto& r) { r.write("a", "2").write("new", "n").git({"stash", "push", "-q", "-u", "-m", "mine"}); },
     [](auto& t) {
         actions::stashApply(t.store.actors(), t.store.snapshot().stashes.value().front(), gitkit::StashUse::pop);
     }},
    {"Stash “mine”",
     [](auto& r) { r.write("a", "2").git({"add", "a"}).write("a", "3").write("b", "other").write("dir/new", "n"); },
     [](auto& t) {
         actions::stashFiles(t.store.actors(), QStringLiteral("mine"), {fileOf(t, "a"), fileOf(t, "dir/new")});
     }},
    {"Stash", [](auto& r) { r.write("a", "2").git({"add", "a"}).write("b", "other"); },
     [](auto& t) { actions::stashStaged(t.store.actors(), QString()); }},
    {"New Branch “new”",
     [](auto& r) {
         r.write("a", "2").git({"add", "a"}).git({"stash", "push", "-q", "-m", "mine"});
         r.write("c", "later").git({"add", "c"}).git({"commit", "-q", "-m", "later"});
         r.write("b", "staged").git({"add", "b"}).write("b", "changed"); // git takes it out of the index
     },
     [](auto& t) { actions::branchFromStash(t.store.actors(), "new", t.store.snapshot().stashes.value().front()); }},
    {"Drop of “On main: mine”", [](auto& r) { r.write("a", "2").git({"stash", "push", "-q", "-m", "mine"}); },
     [](auto& t) { actions::confirmDrop(t.store.actors(), t.store.snapshot().stashes.value().front()); }},
    {"Staging of “a” and 2 other files", [](auto& r) { r.write("a", "2").write("new", "n"); },
     [](auto& t) { t.store.staging().stageAll(); }},
    {"Unstaging of “a”", [](auto& r) { r.write("a", "2").git({"add", "a"}); },
     [](auto& t) { t.store.staging().unstageAll(); }},
    {"Discard of “a” and 3 other files",
     [](auto& r) {
         r.git({"config", "core.autocrlf", "input"}).write("a", "x\r\ny\n").git({"add", "a"}).write("a", "z\r\n");
         r.write("new", "n").remove("b");
     },
     [](auto& t) { t.store.staging().confirmDiscard(t.files()); }},
};

TEST(StoreUndoStories, TakesEveryActionBackAndDoesItAgain)
{
    for (const Story& story : stories) {
        SCOPED_TRACE(story.title);
        UndoWindow one;
        TestRepository& r = one.repo;
        r.write("a", "1").write("b", "1").write(".gitignore", "*.log\n").commit("one");
        r.git({"checkout", "-q", "-b", "topic"}).write("a", "topic").write("t/new", "1").commit("two");
        r.git({"checkout", "-q", "main"}).write("keep\xe4.log", "ignored").write("untracked", "u");
        story.before(r);
        one.load();
        const std::string a = wholeState(r);
        story.act(one);
        one.answer();
        const std::string b = wholeState(r);
        ASSERT_NE(a, b) << one.error();
        EXPECT_EQ(one.undoTitle().substr(0, std::string_view(story.title).size()), story.title);
        EXPECT_EQ(one.redoTitle(), "");
        r.git({"gc", "-q", "--prune=now"});
        one.store.window().dismissError();
        one.undo();
        EXPECT_EQ(one.error(), "");
        EXPECT_EQ(wholeState(r), a) << one.notice();
        one.redo();
        one.answer(); // files that git does not know may be in the way again
        EXPECT_EQ(wholeState(r), b) << one.error();
        one.undo();
        EXPECT_EQ(wholeState(r), a) << "and once more";
    }
}

TEST_F(StoreUndo, AMessageReturnsToTheBoxUnlessSomethingIsTyped)
{
    repo.write("a", "1").commit("one").write("a", "2").git({"add", "a"});
    load();
    const auto subject = [this] { return store.draft().commitSubject.value().toStdString(); };
    store.draft().setSubject(QStringLiteral("more"));
    store.draft().commit();
    worker.finishAll();
    EXPECT_EQ(said(), "Committed “more”.");
    EXPECT_EQ(subject(), "");
    undo();
    EXPECT_EQ(subject(), "more");
    EXPECT_EQ(said(), "Undone: Commit “more”.");
    redo();
    EXPECT_EQ(subject(), "");
    store.draft().setSubject(QStringLiteral("next"));
    undo();
    EXPECT_EQ(subject(), "next");
}

TEST_F(StoreUndo, ARenamedBranchKeepsItsLogBackAndForth)
{
    repo.write("a", "1").commit("one").write("a", "2").commit("two");
    load();
    store.window().select(SidebarItem::ref("refs/heads/main"));
    worker.finishAll();
    const auto log = [this](const char* branch) { return repo.read({"reflog", "--format=%gs", branch}); };
    const std::string before = log("main");
    actions::renameBranch(store.actors(), "main", "other");
    worker.finishAll();
    EXPECT_EQ(store.window().selection.value(), SidebarItem::ref("refs/heads/other"));
    EXPECT_TRUE(log("other").ends_with(before)) << log("other");
    undo();
    EXPECT_TRUE(log("main").ends_with(before)) << log("main");
    EXPECT_EQ(store.snapshot().headDescription().toStdString(), "main");

    // One that has moved since is left alone.
    redo();
    repo.write("a", "3").commit("three");
    undo();
    EXPECT_EQ(repo.read({"branch", "--show-current"}), "other");
    EXPECT_TRUE(store.window().confirmation.value());
}

TEST_F(StoreUndo, WhatIsInTheWayIsMovedAsideAndComesBack)
{
    repo.write(".gitignore", ".env\n").commit("one").git({"checkout", "-q", "-b", "topic"});
    repo.write(".env", "theirs").git({"add", "-f", ".env"}).write("notes", "theirs").commit("two");
    repo.git({"checkout", "-q", "main"}).write(".env", "secret");
    load();
    const std::string before = wholeState(repo);
    actions::checkout(store.actors(), ref("topic"));
    worker.finishAll();
    EXPECT_EQ(bytesAt(repo / ".env"), "theirs");
    EXPECT_EQ(notice(), "Moved 1 ignored file out of the way: “.env”. Undo brings it back.");
    undo();
    EXPECT_EQ(wholeState(repo), before);
    redo();
    EXPECT_EQ(bytesAt(repo / ".env"), "theirs");
    undo();
    EXPECT_EQ(wholeState(repo), before);

    repo.write("notes", "mine");
    load();
    actions::checkout(store.actors(), ref("topic"));
    worker.finishAll();
    ASSERT_TRUE(store.window().confirmation.value());
    EXPECT_EQ(store.window().confirmation.value()->title.toStdString(), "1 file is in the way");
    EXPECT_EQ(bytesAt(repo / "notes"), "mine") << "nothing has happened yet";
    EXPECT_EQ(bytesAt(repo / ".env"), "secret");
    answer();
    EXPECT_EQ(bytesAt(repo / "notes"), "theirs") << error();
    undo();
    EXPECT_EQ(bytesAt(repo / "notes") + bytesAt(repo / ".env"), "minesecret");

    // A checkout that fails leaves them where they are.
    repo.write(".git/index.lock", "");
    repo.remove("notes");
    load();
    actions::checkout(store.actors(), ref("topic"));
    worker.finishAll();
    EXPECT_NE(error(), "");
    EXPECT_EQ(bytesAt(repo / ".env"), "secret");
}

TEST_F(StoreUndo, WhatIsInTheWayOfAPullIsMovedAsideAndComesBack)
{
    repo.write(".gitignore", ".env\n").write("a", "1").commit("one");
    repo.git({"remote", "add", "origin", remote.path().string()}).git({"push", "-q", "-u", "origin", "main"});
    const std::string one = repo.head();
    repo.write(".env", "theirs").git({"add", "-f", ".env"}).commit("two").git({"push", "-q"});
    for (const char* rebase : {"false", "true"}) {
        SCOPED_TRACE(rebase);
        // It is known only after the fetch; with a commit of one's own, the pull merges or rebases.
        repo.git({"reset", "-q", "--hard", one}).write("a", rebase).commit("ours").write(".env", "secret");
        repo.git({"update-ref", "refs/remotes/origin/main", one}).git({"config", "pull.rebase", rebase});
        load();
        const std::string before = wholeState(repo);
        actions::pull(store.actors());
        worker.finishAll();
        EXPECT_EQ(error(), "");
        EXPECT_EQ(bytesAt(repo / ".env"), "theirs");
        EXPECT_EQ(notice(), "Moved 1 ignored file out of the way: “.env”. Undo brings it back.");
        repo.git({"update-ref", "refs/remotes/origin/main", one}); // which is not ours to take back
        load();
        undo();
        EXPECT_EQ(wholeState(repo), before) << error() << notice();
    }
}

TEST_F(StoreUndo, RefusesInWordsWithAWayOn)
{
    repo.write("a", "1").write("b", "1").commit("one").git({"branch", "topic"});
    repo.git({"checkout", "-q", "topic"}).write("a", "2").commit("two").git({"checkout", "-q", "main"});
    load();
    const auto asked = [this] { return store.window().confirmation.value().value_or(Confirmation{}); };
    actions::merge(store.actors(), ref("topic"));
    worker.finishAll();
    repo.write("a", "edited since");
    undo();
    EXPECT_EQ(asked().title.toStdString(), "1 file was edited after “Merge of topic”");
    EXPECT_EQ(bytesAt(repo / "a"), "edited since");
    answer();
    EXPECT_EQ(bytesAt(repo / "a"), "1");
    redo();
    EXPECT_EQ(bytesAt(repo / "a"), "edited since") << "the edit has stayed in the timeline";

    repo.write("c", "1").git({"add", "c"}).git({"commit", "-q", "-m", "in a terminal"});
    undo();
    EXPECT_EQ(asked().title.toStdString(), "Cannot undo “Merge of topic”");
    EXPECT_NE(asked().message.toStdString().find("main has moved since"), std::string::npos);
    store.window().dismissQuestion();

    load();
    actions::confirmDelete(store.actors(), ref("topic"));
    answer();
    repo.git({"branch", "topic"});
    load();
    undo();
    EXPECT_EQ(asked().choices.at(0).title.toStdString(), "Restore as “topic-2”");
    store.window().choose(asked().id, 0);
    worker.finishAll();
    EXPECT_NO_THROW(ref("topic-2")) << error();
}

TEST_F(StoreUndo, NothingIsTakenWithoutAWayBack)
{
    repo.write("a", "1").commit("one").write("a", "mine");
    load();
    store.staging().confirmDiscard(files());
    worker.finishAll();
    {
        const test::FullDisk full(20);
        store.window().confirm(store.window().confirmation.value()->id);
        worker.finishAll();
    }
    ASSERT_TRUE(store.window().confirmation.value()) << error();
    EXPECT_EQ(store.window().confirmation.value()->title.toStdString(), "No way back could be kept");
    EXPECT_EQ(bytesAt(repo / "a"), "mine");
    answer();
    EXPECT_EQ(bytesAt(repo / "a"), "1");
    EXPECT_EQ(store.undo().whyNoUndo().toStdString(), "There is nothing to undo.");
}

TEST_F(StoreUndo, ARedoThatFailsLeavesFilesThatGitDoesNotKnow)
{
    repo.write("a", "1").commit("one").write("a", "2").git({"add", "a"}).write("new", "mine");
    load();
    store.staging().confirmDiscard(files());
    answer();
    undo();
    const std::string before = wholeState(repo);
    repo.write(".git/index.lock", "");
    redo();
    EXPECT_NE(error(), "");
    repo.remove(".git/index.lock");
    EXPECT_EQ(bytesAt(repo / "new"), "mine");
    EXPECT_EQ(wholeState(repo), before);
}

TEST_F(StoreUndo, ALinkedWorkingTreeHasStepsOfItsOwn)
{
    repo.write("a", "1").commit("one").git({"worktree", "add", "-q", "-b", "side", (trash / "tree").string()});
    RepositoryStore linked(trash / "tree", worker);
    linked.snapshot().refresh(RefreshScope::full);
    worker.finishAll();
    actions::createBranch(linked.actors(), "new", std::nullopt, gitkit::AfterCreating::checkOut);
    worker.finishAll();
    load();
    EXPECT_EQ(undoTitle(), "");
    EXPECT_EQ(linked.undo().undoTitle.value().value_or(QString()).toStdString(), "New Branch “new”");
    linked.undo().undo();
    worker.finishAll();
    EXPECT_EQ(linked.snapshot().headDescription().toStdString(), "side");
    EXPECT_EQ(repo.read({"branch", "--list", "new"}), "");

    // A branch that is checked out there is not moved from here.
    repo.write("b", "1").git({"add", "b"});
    load();
    store.draft().setSubject(QStringLiteral("more"));
    store.draft().commit();
    worker.finishAll();
    repo.git({"checkout", "-q", "--detach"});
    runPlainGit(trash / "tree", {"checkout", "-q", "main"}, status_);
    undo();
    EXPECT_EQ(repo.read({"log", "-1", "--format=%s", "main"}), "more");
    EXPECT_TRUE(store.window().confirmation.value());
    store.window().dismissQuestion();

    // Nor is it deleted from here, and its window is offered.
    actions::createBranch(store.actors(), "late", std::nullopt, gitkit::AfterCreating::stay);
    worker.finishAll();
    runPlainGit(trash / "tree", {"checkout", "-q", "late"}, status_);
    undo();
    ASSERT_TRUE(store.window().confirmation.value());
    ASSERT_EQ(store.window().confirmation.value()->choices.size(), 1U);
    store.window().choose(store.window().confirmation.value()->id, 0);
    EXPECT_EQ(opened, std::vector{trash / "tree"});
}

TEST_F(StoreUndo, WhatIsInsideASubmoduleStaysAndThatIsTold)
{
    TestRepository inner;
    const std::string older = inner.write("a", "1").commit("inner one").head();
    repo.git({"-c", "protocol.file.allow=always", "submodule", "--quiet", "add", inner.path().string(), "inner"});
    repo.commit("with a submodule").git({"checkout", "-q", "-b", "topic"});
    runPlainGit(repo / "inner",
                {"-c", "user.name=a", "-c", "user.email=b@c", "commit", "-q", "--allow-empty", "-m", "2"}, status_);
    repo.git({"commit", "-q", "-am", "newer"}).git({"checkout", "-q", "main"});
    load();
    actions::merge(store.actors(), ref("topic"));
    worker.finishAll();
    undo();
    EXPECT_EQ(repo.read({"rev-parse", ":inner"}), older);
    EXPECT_NE(repo.read({"-C", "inner", "rev-parse", "HEAD"}), older);
    EXPECT_EQ(notice(), "What is checked out inside “inner” stays as it is.");
}

TEST_F(StoreUndo, ARequestIsFetchedAndCheckedOut)
{
    repo.write(".gitignore", ".env\n").write("a", "1").commit("one").git({"checkout", "-q", "-b", "elsewhere"});
    repo.write("a", "2").write(".env", "theirs").git({"add", "-f", ".env"}).commit("proposed");
    const std::string proposed = repo.head();
    repo.git({"remote", "add", "origin", remote.path().string()});
    repo.git({"push", "-q", "origin", "elsewhere:refs/merge-requests/7/head", "main"}).git({"checkout", "-q", "main"});
    repo.git({"branch", "-q", "-D", "elsewhere"}).write(".env", "secret").write("a", "mine");
    load();
    const std::string before = wholeState(repo);
    actions::checkOutRequest(store.actors(), {.remote = "origin", .number = 8, .branch = "request-8"});
    worker.finishAll();
    EXPECT_EQ(error(), "“origin” offers no request 8.");
    store.window().dismissError();
    actions::checkOutRequest(store.actors(), {.remote = "origin", .number = 7, .branch = "request-7"});
    worker.finishAll();
    EXPECT_EQ(wholeState(repo), before) << "a change is in the way";
    repo.write("a", "1");
    const std::string clean = wholeState(repo);
    ASSERT_TRUE(store.window().confirmation.value()) << "Stash and Continue";
    store.window().dismissQuestion();
    actions::checkOutRequest(store.actors(), {.remote = "origin", .number = 7, .branch = "request-7"});
    worker.finishAll();
    EXPECT_EQ(repo.head(), proposed) << error();
    EXPECT_EQ(repo.read({"branch", "--show-current"}), "request-7");
    EXPECT_EQ(bytesAt(repo / ".env"), "theirs");
    undo();
    EXPECT_EQ(wholeState(repo), clean);
}

TEST_F(StoreUndo, APushIsShownAndStandsInTheWay)
{
    repo.git({"remote", "add", "origin", remote.path().string()}).write("a", "1").commit("one");
    repo.git({"push", "-q", "-u", "origin", "main"}).write("a", "2").git({"add", "a"});
    load();
    store.draft().setSubject(QStringLiteral("more"));
    store.draft().commit();
    worker.finishAll();
    actions::push(store.actors());
    worker.finishAll();
    EXPECT_EQ(undoTitle(), "");
    EXPECT_EQ(store.undo().whyNoUndo().toStdString(), "“Push to origin/main” cannot be undone from here.");
    store.undo().showTimeline();
    worker.finishAll();
    const auto& rows = *store.undo().timeline.value();
    ASSERT_GE(rows.size(), 2U);
    EXPECT_EQ(rows[0].title.toStdString(), "Push to origin/main");
    store.undo().confirmUndoTo(rows[1].step.id);
    answer();
    EXPECT_EQ(repo.read({"log", "-1", "--format=%s"}), "one") << "the branch only";
}

TEST_F(StoreUndo, AnotherWindowGoesOnWhereThisOneEnded)
{
    repo.write("a", "1").commit("one").write("a", "2").git({"add", "a"});
    load();
    const std::string before = wholeState(repo);
    store.draft().setSubject(QStringLiteral("more"));
    store.draft().commit();
    worker.finishAll();
    const auto stop = [this](const char* title) {
        const gitkit::UndoRecording killed(repo.repository(), repo / ".git",
                                           {.kind = "merge", .title = title, .movesFiles = true, .movesIndex = true});
    };
    RepositoryStore next(repo.path(), worker);
    const auto open = [this](RepositoryStore& window) {
        window.snapshot().refresh(RefreshScope::full);
        worker.finishAll();
    };
    open(next);
    EXPECT_EQ(next.undo().undoTitle.value().value_or(QString()).toStdString(), "Commit “more”");
    EXPECT_EQ(next.undo().interrupted.value().toStdString(), "");

    const std::string whole = wholeState(repo);
    stop("Merge of topic");
    repo.write("a", "half written").write("b", "half written").git({"add", "b"});
    RepositoryStore after(repo.path(), worker);
    open(after);
    EXPECT_EQ(after.undo().interrupted.value().toStdString(), "Merge of topic");
    after.undo().leaveInterrupted();
    worker.finishAll();
    EXPECT_EQ(after.undo().interrupted.value().toStdString(), "");
    repo.git({"rm", "-q", "--cached", "b"}).remove("b").write("a", "2");
    stop("Merge of other");
    repo.git({"rm", "-q", "--cached", "a"});
    repo.git({"update-ref", "refs/heads/main", "HEAD~"});
    RepositoryStore last(repo.path(), worker);
    open(last);
    EXPECT_EQ(last.undo().interrupted.value().toStdString(), "Merge of other");
    last.undo().restoreInterrupted();
    worker.finishAll();
    EXPECT_EQ(wholeState(repo), whole);
    last.undo().undo();
    worker.finishAll();
    EXPECT_EQ(wholeState(repo), before) << "the commit is the step before it";
}

} // namespace
} // namespace plovik
