// SPDX-License-Identifier: GPL-3.0-or-later
// What dragging one thing onto another means, and that it is what the menus do.

#include "tests/store/UndoWindow.h"
#include "tests/support/WholeState.h"

#include "app/store/DropWords.h"
#include "app/store/Drops.h"
#include "app/store/RepositoryStore.h"
#include "app/store/actions/CarryOut.h"
#include "app/store/actions/Merges.h"

#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <vector>

namespace plovik {
namespace {

using Act = Drop::Act;
using gitkit::GitRef;
using Held = Dragged::Kind;
using Onto = DropTarget::Kind;

GitRef branchRef(const std::string& name, char hash, const std::string& upstream = {})
{
    GitRef ref{.fullName = "refs/heads/" + name, .name = name, .hash = std::string(40, hash), .upstream = {}};
    if (!upstream.empty()) {
        ref.upstream = upstream;
        ref.upstreamRef = "refs/remotes/" + upstream;
    }
    return ref;
}

GitRef remoteRef(const std::string& name, char hash)
{
    return {.fullName = "refs/remotes/" + name,
            .name = name,
            .kind = GitRef::Kind::remote,
            .hash = std::string(40, hash),
            .upstream = {}};
}

/// main is checked out and follows origin/main; topic follows fork/other; new follows nothing.
struct DropTable : testing::Test {
    DropTable()
    {
        branches[0].isHead = true;
        branches[4].hash.clear();
        files = gitkit::ChangedFiles(
            {{.path = "a", .originalPath = {}, .index = '.', .worktree = 'M'},
             {.path = "module", .originalPath = {}, .index = '.', .worktree = 'M', .isSubmodule = true}});
    }
    Drop of(const Dragged& dragged, const DropTarget& target, bool isOther = false) const
    {
        return dropOf(dragged, target, {branches, remoteBranches, remotes, files, std::string(40, 'a')}, isOther);
    }
    Drop ofRefs(const std::string& dragged, const std::string& target, bool isOther = false) const
    {
        return of({Held::ref, {dragged}}, {Onto::ref, target}, isOther);
    }

    std::vector<GitRef> branches{branchRef("main", 'a', "origin/main"), branchRef("topic", 'b', "fork/other"),
                                 branchRef("new", 'c'), branchRef("pushed", 'd', "origin/pushed"),
                                 branchRef("damaged", 'e')};
    std::vector<GitRef> remoteBranches{remoteRef("origin/main", 'f'), remoteRef("fork/other", 'g'),
                                       remoteRef("origin/pushed", 'd')};
    std::vector<std::string> remotes{"origin", "fork"};
    gitkit::ChangedFiles files;
};

TEST_F(DropTable, BranchesOntoBranches)
{
    struct Row {
        const char* dragged;
        const char* target;
        Act act;
        Act other;
        const char* ref;
        const char* to;
    };
    const std::vector<Row> rows{
        {"refs/heads/topic", "refs/heads/main", Act::merge, Act::squash, "topic", ""},
        {"refs/remotes/fork/other", "refs/heads/main", Act::merge, Act::merge, "fork/other", ""},
        {"refs/heads/main", "refs/heads/topic", Act::rebase, Act::rebase, "topic", ""},
        {"refs/heads/main", "refs/remotes/fork/other", Act::rebase, Act::rebase, "fork/other", ""},
        {"refs/heads/main", "refs/remotes/origin/main", Act::push, Act::askPush, "main", ""},
        {"refs/heads/topic", "refs/remotes/fork/other", Act::push, Act::askPush, "topic", ""},
        {"refs/heads/pushed", "refs/remotes/origin/pushed", Act::nothing, Act::askPush, "", ""},
        {"refs/remotes/origin/main", "refs/heads/topic", Act::fastForward, Act::fastForward, "topic",
         "refs/remotes/origin/main"},
        {"refs/remotes/origin/pushed", "refs/heads/pushed", Act::nothing, Act::nothing, "", ""},
        {"refs/heads/topic", "refs/heads/new", Act::nothing, Act::nothing, "", ""},
        {"refs/heads/topic", "refs/remotes/origin/main", Act::nothing, Act::nothing, "", ""},
        {"refs/remotes/origin/main", "refs/remotes/fork/other", Act::nothing, Act::nothing, "", ""},
        {"refs/heads/main", "refs/heads/main", Act::nothing, Act::nothing, "", ""},
        {"refs/heads/damaged", "refs/heads/main", Act::nothing, Act::nothing, "", ""},
        {"refs/heads/main", "refs/heads/damaged", Act::nothing, Act::nothing, "", ""},
        {"refs/heads/gone", "refs/heads/main", Act::nothing, Act::nothing, "", ""},
        {"refs/tags/v1", "refs/heads/main", Act::nothing, Act::nothing, "", ""},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(std::string(row.dragged) + " onto " + row.target);
        const Drop drop = ofRefs(row.dragged, row.target);
        EXPECT_EQ(drop.act, row.act);
        EXPECT_EQ(drop.ref.name, row.ref);
        EXPECT_EQ(drop.to, row.to);
        EXPECT_EQ(ofRefs(row.dragged, row.target, true).act, row.other);
    }
}

TEST_F(DropTable, BranchesOntoRemotesAndCommits)
{
    const auto pushed = [this](const char* branch, const char* remote) {
        return of({Held::ref, {branch}}, {Onto::remote, remote}).push;
    };
    EXPECT_EQ(pushed("refs/heads/topic", "fork"), (gitkit::Push{"topic", {"fork", "other"}, std::string(40, 'g')}));
    EXPECT_EQ(pushed("refs/heads/topic", "origin"), (gitkit::Push{"topic", {"origin", "topic"}}));
    EXPECT_EQ(pushed("refs/heads/new", "origin"),
              (gitkit::Push{.branch = "new", .to = {"origin", "new"}, .setsUpstream = true}));
    EXPECT_EQ(of({Held::ref, {"refs/remotes/fork/other"}}, {Onto::remote, "origin"}), Drop());

    const std::string commit(40, '1');
    const auto onCommit = [this](const char* ref, const std::string& hash) {
        return of({Held::ref, {ref}}, {Onto::commit, hash});
    };
    EXPECT_EQ(onCommit("refs/heads/topic", commit), (Drop{.act = Act::moveBranch, .ref = branches[1], .to = commit}));
    EXPECT_EQ(onCommit("refs/heads/main", commit), (Drop{.act = Act::askReset, .ref = branches[0], .to = commit}));
    EXPECT_EQ(onCommit("refs/heads/topic", branches[1].hash), Drop());
    EXPECT_EQ(onCommit("refs/remotes/origin/main", commit), Drop());
    EXPECT_EQ(onCommit("refs/tags/v1", commit), Drop());
}

TEST_F(DropTable, CommitsFilesAndStashes)
{
    const std::string one(40, '1');
    const std::string two(40, '2');
    const DropTarget current{Onto::ref, "refs/heads/main"};
    EXPECT_EQ(of({Held::commits, {two, one}}, current),
              (Drop{.act = Act::cherryPick, .ref = branches[0], .names = {two, one}}));
    EXPECT_EQ(of({Held::commits, {one}}, {Onto::ref, "refs/heads/topic"}), Drop());
    EXPECT_EQ(of({Held::commits, {one}}, {Onto::commit, two}), Drop());
    EXPECT_EQ(of({Held::commits, {one, std::string(40, 'a')}}, current), Drop()) << "HEAD is there";
    EXPECT_EQ(of({.kind = Held::commits, .names = {one}, .hasMerge = true}, current).act, Act::cherryPick);
    EXPECT_EQ(of({.kind = Held::commits, .names = {two, one}, .hasMerge = true}, current), Drop());

    EXPECT_EQ(of({Held::files, {"a", "module", "gone"}}, {Onto::stashes}),
              (Drop{.act = Act::stashFiles, .names = {"a"}}));
    EXPECT_EQ(of({Held::files, {"module"}}, {Onto::stashes}), Drop());
    EXPECT_EQ(of({Held::files, {"a"}}, {Onto::workingCopy}), Drop());

    EXPECT_EQ(of({Held::stash, {one}}, {Onto::workingCopy}), (Drop{.act = Act::applyStash, .names = {one}}));
    EXPECT_EQ(of({Held::stash, {one}}, {Onto::workingCopy}, true).act, Act::popStash);
    EXPECT_EQ(of({Held::stash, {one}}, current), Drop());
    EXPECT_EQ(of({Held::commitFile, {"a"}, one}, {Onto::workingCopy}),
              (Drop{.act = Act::takeFile, .names = {"a"}, .revision = one}));
    EXPECT_EQ(of({Held::commitFile, {"a"}, one}, {Onto::stashes}), Drop());
    EXPECT_EQ(of({}, current), Drop());
}

TEST(DropPreviews, SayWhatWouldComeAndWhatIsInVain)
{
    using gitkit::MergePreview;
    using gitkit::RebasePreview;
    using Outcome = MergePreview::Outcome;
    const auto says = [](const DropPreview& preview) { return previewWords(preview).toStdString(); };
    MergePreview merge{.commits = 3, .own = 1, .outcome = Outcome::clean, .conflicts = {}};
    EXPECT_EQ(says(merge), "3 commits, merges cleanly");
    EXPECT_FALSE(isInVain(Act::merge, merge));
    merge.alwaysFastForward = true;
    EXPECT_TRUE(isInVain(Act::merge, merge));
    EXPECT_FALSE(isInVain(Act::squash, merge));
    merge = {.commits = 1, .own = 2, .outcome = Outcome::conflicts, .conflicts = {"a", "b", "c", "d"}};
    EXPECT_EQ(says(merge), "1 commit\nwill conflict in 4 files: a, b, c, …");
    EXPECT_EQ(says(MergePreview{.commits = 2, .own = 0, .outcome = Outcome::clean, .conflicts = {}}),
              "2 commits, fast-forward");
    EXPECT_TRUE(isInVain(Act::squash, MergePreview{}));
    EXPECT_EQ(says(RebasePreview{.commits = 3, .beneath = 1, .outcome = Outcome::clean}), "3 commits, no conflicts");
    EXPECT_EQ(says(RebasePreview{.commits = 0, .beneath = 2, .outcome = Outcome::clean}), "2 commits, fast-forward");
    EXPECT_TRUE(isInVain(Act::rebase, RebasePreview{.commits = 3}));
    EXPECT_EQ(says(MovePreview{.left = 2}), "2 commits are on no other branch: you are asked first");
    EXPECT_TRUE(isInVain(Act::fastForward, MovePreview{.comes = 1, .own = 1}));
    EXPECT_FALSE(isInVain(Act::moveBranch, MovePreview{}));
}

/// main and topic have a commit each above a common one, topic's remote branch one more.
struct DropWindow : UndoWindow {
    DropWindow()
    {
        repo.write("a", "1\n").write("b", "1\n").commit("base").git({"checkout", "-q", "-b", "topic"});
        repo.write("t", "1\n").commit("on topic").git({"branch", "late"}).write("t", "2\n").commit("ahead");
        repo.git({"remote", "add", "origin", remote.path().string()}).git({"push", "-q", "-u", "origin", "topic"});
        repo.git({"reset", "-q", "--hard", "HEAD~1"}).git({"branch", "-q", "-D", "late"});
        repo.git({"checkout", "-q", "main"}).write("b", "2\n").commit("ours");
        repo.write("a", "stashed\n").git({"stash", "-q"}).write("a", "changed\n");
    }
    void drop(const Dragged& dragged, const DropTarget& target, bool isOther = false)
    {
        const Snapshot& now = store.snapshot();
        const Drop drop = dropOf(dragged, target,
                                 {now.branches.value(), now.remoteBranches.value(), now.remotes.value(),
                                  now.status.value().files, now.status.value().oid.value_or(std::string())},
                                 isOther);
        said_ = dropWords(drop, now).toStdString();
        std::vector<gitkit::Commit> commits;
        if (dragged.kind == Held::commits)
            commits.emplace_back().hash = dragged.names.front();
        actions::carryOut(store.actors(), drop, commits);
        worker.finishAll();
    }
    std::string said_;
};

struct DropStory {
    const char* words;
    std::function<void(DropWindow&)> act;
    const char* step;
};

const DropTarget onMain{Onto::ref, "refs/heads/main"};

const std::vector<DropStory> dropStories{
    {"Merge “topic” into “main”", [](auto& t) { t.drop({Held::ref, {"refs/heads/topic"}}, onMain); }, "Merge of topic"},
    {"Squash “topic” into changes on “main”", [](auto& t) { t.drop({Held::ref, {"refs/heads/topic"}}, onMain, true); },
     "Squash of topic"},
    {"Rebase “main” onto “topic”",
     [](auto& t) {
         t.repo.git({"checkout", "-q", "a"});
         t.load();
         t.drop({Held::ref, {"refs/heads/main"}}, {Onto::ref, "refs/heads/topic"});
     },
     "Rebase of main onto topic"},
    {"Fast-forward “topic” to “origin/topic”",
     [](auto& t) { t.drop({Held::ref, {"refs/remotes/origin/topic"}}, {Onto::ref, "refs/heads/topic"}); },
     "Fast-Forward of “topic”"},
    {"Cherry-pick 1 commit onto “main”", [](auto& t) { t.drop({Held::commits, {t.ref("topic").hash}}, onMain); },
     "Cherry-Pick of"},
    {"Stash only “a”", [](auto& t) { t.drop({Held::files, {"a"}}, {Onto::stashes}); }, "Stash"},
    {"Apply stash “WIP on main",
     [](auto& t) {
         t.repo.git({"checkout", "-q", "a"});
         t.load();
         t.drop({Held::stash, {t.store.snapshot().stashes.value().at(0).hash}}, {Onto::workingCopy});
     },
     "Applying"},
    {"Pop stash “WIP on main",
     [](auto& t) {
         t.repo.git({"checkout", "-q", "a"});
         t.load();
         t.drop({Held::stash, {t.store.snapshot().stashes.value().at(0).hash}}, {Onto::workingCopy}, true);
     },
     "Pop of"},
    {"Take “t” as it is in",
     [](auto& t) { t.drop({Held::commitFile, {"t"}, t.ref("topic").hash}, {Onto::workingCopy}); }, "Taking “t” from"},
};

TEST(DropStories, EachIsOneStepThatGoesBackWhole)
{
    for (const auto& [words, act, step] : dropStories) {
        SCOPED_TRACE(words);
        DropWindow t;
        t.load();
        act(t);
        EXPECT_EQ(t.said_.substr(0, std::string(words).size()), words);
        EXPECT_EQ(t.error(), "");
        EXPECT_EQ(t.undoTitle().substr(0, std::string(step).size()), step);
        t.undo();
        t.answer();
        EXPECT_EQ(t.undoTitle(), "") << "one step";
    }
}

TEST(DropStories, ABranchIsMovedAfterAQuestionWhereCommitsFallOff)
{
    DropWindow t;
    t.repo.git({"branch", "lone", "main"}).git({"checkout", "-q", "-f", "lone"}).write("l", "1").commit("lone one");
    t.repo.git({"checkout", "-q", "main"});
    t.load();
    const std::string lone = t.ref("lone").hash;
    const std::string topic = t.ref("topic").hash;
    t.drop({Held::ref, {"refs/heads/lone"}}, {Onto::commit, topic});
    EXPECT_EQ(t.said_, "Move “lone” to " + topic.substr(0, 7));
    ASSERT_TRUE(t.store.window().confirmation.value()) << t.error();
    EXPECT_EQ(t.store.window().confirmation.value()->message.toStdString(),
              "1 commit is on no other branch and no tag. It stays in the timeline only.");
    EXPECT_EQ(t.ref("lone").hash, lone);
    t.answer();
    EXPECT_EQ(t.ref("lone").hash, topic);
    t.drop({Held::ref, {"refs/heads/lone"}}, {Onto::commit, lone});
    EXPECT_FALSE(t.store.window().confirmation.value()) << "nothing falls off";
    EXPECT_EQ(t.ref("lone").hash, lone);
    t.undo();
    t.undo();
    EXPECT_EQ(t.ref("lone").hash, lone);

    // What was shown is what is moved.
    t.repo.git({"branch", "-q", "-f", "lone", "main"});
    t.drop({Held::ref, {"refs/heads/lone"}}, {Onto::commit, topic});
    t.answer();
    EXPECT_NE(t.error().find("has moved meanwhile"), std::string::npos) << t.error();

    t.drop({Held::ref, {"refs/heads/main"}}, {Onto::commit, topic});
    EXPECT_EQ(t.store.window().sheet.value(), SheetKind(ResetSheet{topic}));
}

TEST(DropStories, APushGoesWhereItIsDropped)
{
    DropWindow t;
    t.load();
    t.drop({Held::ref, {"refs/heads/main"}}, {Onto::remote, "origin"});
    EXPECT_EQ(t.said_, "Push “main” to “origin/main”");
    EXPECT_EQ(t.remote.read({"rev-parse", "main"}), t.repo.head()) << t.error();
    EXPECT_EQ(t.repo.read({"rev-parse", "--abbrev-ref", "main@{u}"}), "origin/main");
    t.drop({Held::ref, {"refs/heads/topic"}}, {Onto::ref, "refs/remotes/origin/topic"}, true);
    EXPECT_EQ(t.store.window().sheet.value(), SheetKind(PushSheet{"topic", {"origin", "topic"}}));
}

} // namespace
} // namespace plovik
