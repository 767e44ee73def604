// SPDX-License-Identifier: GPL-3.0-or-later
// The plan for the newest commits, as the window has it.

#include "tests/store/UndoWindow.h"
#include "tests/support/WholeState.h"

#include "GitKit/repository/GitRepository.h"
#include "GitKit/rewrite/Absorbing.h"
#include "GitKit/rewrite/Rebasing.h"
#include "GitKit/runner/GitVersion.h"
#include "app/store/RepositoryStore.h"
#include "app/store/SplitChoice.h"
#include "app/store/actions/EditStop.h"
#include "app/store/actions/Operation.h"
#include "app/store/actions/StagedInto.h"

#include <gtest/gtest.h>

#include <filesystem>

namespace plovik {
namespace {

using StepAct = Rewriting::Act;
using MarkKind = gitkit::RewriteMark::Kind;

/// main has the commits one to four, each of a file of its own.
struct PlansInWindow : testing::Test, UndoWindow {
    void SetUp() override
    {
        if (!gitkit::can(gitkit::Ability::mergesInMemory))
            GTEST_SKIP() << "this git cannot merge in memory";
        for (const char* name : {"one", "two", "three", "four"}) {
            repo.write(name, name).commit(std::string(name) + "\n\nBody.\n");
            hashes.push_back(repo.head());
        }
        reload();
        store.window().select(SidebarItem::history());
        plans.watch();
        worker.finishAll();
    }
    void reload()
    {
        load();
        hashes.resize(4);
    }
    std::string sentence() const { return plans.sentence().toStdString(); }
    std::string subjects() const { return repo.read({"log", "--reverse", "--format=%s"}); }
    std::vector<std::string> shown() const
    {
        std::vector<std::string> names;
        for (const HistoryRow& row : store.history().history.value())
            names.push_back(row.commit.subject);
        return names;
    }
    using Names = std::vector<std::string>;

    std::vector<std::string> hashes;
    Rewriting& plans = store.rewriting();
};

TEST_F(PlansInWindow, MarkTheFirstRowsBeforeTheRestIsFoundOut)
{
    for (const char* name : {"five", "six", "seven"}) {
        repo.write(name, name).commit(name);
        hashes.push_back(repo.head());
    }
    load();
    worker.finishAll();
    plans.move({hashes[6]}, hashes[0]);
    EXPECT_FALSE(plans.markOf(hashes[0]));
    worker.finish();
    EXPECT_EQ(plans.markOf(hashes[0])->kind, MarkKind::unchanged);
    EXPECT_EQ(plans.markOf(hashes[6])->kind, MarkKind::rewritten);
    EXPECT_FALSE(plans.markOf(hashes[5]));
    EXPECT_FALSE(plans.outcome.value()) << "it is not to be applied before all is known";
    // The next plan begins alike.
    plans.drop({hashes[5]});
    EXPECT_EQ(plans.markOf(hashes[6])->kind, MarkKind::rewritten);
    worker.finishAll();
    EXPECT_EQ(plans.markOf(hashes[5])->kind, MarkKind::dropped);
    EXPECT_EQ(plans.markOf(hashes[4])->kind, MarkKind::rewritten);
}

TEST_F(PlansInWindow, ShowWhatBecomesOfTheRowsAndDoNothingBeforeApply)
{
    const std::string before = wholeState(repo);
    EXPECT_EQ(plans.whyNot({hashes[1]}), QString());
    plans.moveDown({hashes[3]});
    EXPECT_EQ(sentence(), "Plan: 1 moved — looking for conflicts…");
    EXPECT_EQ(shown(), (Names{"three", "four", "two", "one"}));
    EXPECT_EQ(store.history().history.value().rowOf(hashes[3]), 1U);
    worker.finishAll();
    EXPECT_EQ(sentence(), "Plan: 1 moved — no conflicts");
    EXPECT_EQ(plans.markOf(hashes[0])->kind, MarkKind::unchanged);
    EXPECT_EQ(plans.markOf(hashes[2])->kind, MarkKind::rewritten);
    plans.squash({hashes[2]}, hashes[1], StepAct::squash);
    plans.reword(hashes[0], QStringLiteral("first"));
    plans.drop({hashes[3]});
    worker.finishAll();
    EXPECT_EQ(sentence(), "Plan: 1 squashed, 1 reworded, 1 dropped — no conflicts");
    EXPECT_EQ(plans.messageOf(hashes[2]), "two\n\nBody.\n\nthree\n\nBody.\n");
    EXPECT_EQ(wholeState(repo), before);

    plans.keep({hashes[2], hashes[3], hashes[0]});
    EXPECT_FALSE(plans.plan.value()) << "all is where it was";
    EXPECT_EQ(shown(), (Names{"four", "three", "two", "one"}));
    plans.reword(hashes[0], QStringLiteral("one\n\nBody."));
    EXPECT_FALSE(plans.plan.value()) << "these are its words";
    plans.drop({hashes[0]});
    plans.keep({hashes[0]});
    EXPECT_FALSE(plans.plan.value()) << "nothing is left to do";

    plans.squash({hashes[2]}, hashes[1], StepAct::fixUp);
    worker.finishAll();
    store.window().selectCommit(hashes[3]);
    plans.apply();
    worker.finishAll();
    EXPECT_EQ(error(), "");
    EXPECT_EQ(subjects(), "one\ntwo\nfour");
    EXPECT_FALSE(plans.plan.value());
    EXPECT_EQ(said(), "Rewrote main.");
    EXPECT_EQ(store.window().selectedCommit.value(), repo.head()) << "it is the same commit, rewritten";
    EXPECT_EQ(repo.read({"log", "-g", "-1", "--format=%gs"}), "plovik: rewrite 3 commits");
}

TEST_F(PlansInWindow, SplitByLinesAtOnceAndKeepTheSplitWhereThatFails)
{
    const std::string windows = "a\r\nb\r\nc\r\nd\r\n";
    const std::string latin = "\xe9\nx\ny\nb";
    repo.write("windows", windows).write("latin", latin).write("moved", "1\n2\n3\n4\n5\n").commit("texts");
    repo.write("windows", "A\r\nb\r\nc\r\nD\r\n").write("latin", "\xe8\nx\ny\nb\nc").git({"mv", "moved", "to"});
    repo.write("new", "n\n").commit("many changes");
    repo.write("four", "local").write("new", "staged\n").git({"add", "new"});
    reload();
    const std::string commit = repo.head();
    const std::string before = wholeState(repo);
    SplitChoice choice(repo.repository().commitDetail(commit, gitkit::CommitKind::ordinary).files);
    EXPECT_EQ(choice.inSecond(), (SplitChoice::Extent{4, 0})) << "nothing was counted yet";
    std::vector<gitkit::ChangeCounts> counts;
    for (const gitkit::CommitFile& file : choice.files())
        counts.push_back({file.path, 1, 1});
    choice.setCounts(counts);
    for (std::size_t file = 0; file < choice.files().size(); ++file) {
        const gitkit::ParsedDiff diff = repo.repository().commitDiff(commit, choice.files()[file]);
        std::set<int> changes;
        for (const gitkit::DiffLine& line : diff.lines) {
            if (line.isChange())
                changes.insert(line.id);
        }
        const std::string& path = choice.files()[file].path;
        EXPECT_EQ(choice.canTakeLines(file, diff), path == "windows" || path == "latin") << path;
        choice.takeLines(file, diff, changes, SplitChoice::Into::first);
        EXPECT_EQ(choice.shareOf(file) == SplitChoice::Share::all, choice.canTakeLines(file, diff)) << path;
        // All but the first two changes go back.
        for (int kept = 0; kept < 2 && !changes.empty(); ++kept)
            changes.erase(changes.begin());
        choice.takeLines(file, diff, changes, SplitChoice::Into::second);
        if (path == "to")
            choice.take(file, SplitChoice::Into::first);
    }
    EXPECT_EQ(choice.inFirst(), (SplitChoice::Extent{3, 6}));
    EXPECT_EQ(choice.inSecond(), (SplitChoice::Extent{3, 7}));

    plans.split(commit, choice.part(), QStringLiteral("first"), QStringLiteral("second"));
    worker.finishAll();
    EXPECT_EQ(error(), "");
    EXPECT_FALSE(plans.plan.value());
    EXPECT_EQ(repo.read({"log", "-3", "--format=%s"}), "second\nfirst\ntexts");
    EXPECT_EQ(repo.read({"show", "HEAD~1:windows"}), "A\r\nb\r\nc\r\nd\r");
    EXPECT_EQ(repo.read({"show", "HEAD~1:latin"}), "\xe8\nx\ny\nb");
    EXPECT_EQ(repo.read({"diff", "--name-only", "--no-renames", "HEAD~2", "HEAD~1", "--", "moved", "to", "new"}),
              "moved\nto");
    EXPECT_EQ(repo.read({"rev-parse", "HEAD^{tree}"}), repo.read({"rev-parse", commit + "^{tree}"}));
    undo();
    EXPECT_EQ(wholeState(repo), before);

    // A hook that refuses loses no choice, and with a plan the split is a part of it.
    repo.write(".git/hooks/pre-rebase", "#!/bin/sh\nexit 1\n");
    std::filesystem::permissions(repo / ".git/hooks/pre-rebase", std::filesystem::perms::owner_all);
    plans.split(commit, choice.part(), QStringLiteral("first"), QStringLiteral("second"));
    worker.finishAll();
    EXPECT_NE(error(), "");
    EXPECT_EQ(repo.head(), commit);
    EXPECT_EQ(sentence(), "Plan: 1 split — no conflicts");
    std::filesystem::remove(repo / ".git/hooks/pre-rebase");
    store.window().dismissError();
    plans.split(hashes[2], {.files = {"three"}}, QStringLiteral("x"), QStringLiteral("y"));
    worker.finishAll();
    EXPECT_EQ(sentence(), "Plan: 2 split — no conflicts");
    EXPECT_EQ(repo.head(), commit) << "nothing is done before the plan is applied";
}

TEST_F(PlansInWindow, TellWhoElseHasTheCommitsAndWhatMovesAlong)
{
    repo.git({"update-ref", "refs/remotes/origin/main", hashes[1]}).git({"branch", "mid", hashes[2]});
    repo.git({"branch", "low", hashes[0]});
    const TemporaryFolder other;
    repo.git({"branch", "held", hashes[3]}).git({"worktree", "add", "-q", (other / "tree").string(), "held"});
    reload();
    plans.reword(hashes[2], QStringLiteral("x"));
    worker.finishAll();
    EXPECT_EQ(sentence(), "Plan: 1 reworded — no conflicts · 1 branch moves along · “held” stays: it is held by “" +
                              (other / "tree").string() + "”");
    EXPECT_EQ(plans.publishedSentence(), QString());
    plans.reword(hashes[0], QStringLiteral("y"));
    EXPECT_EQ(plans.publishedSentence().toStdString(),
              "2 of these commits are on origin/main. Others may have them; you will need to force-push.");
}

TEST_F(PlansInWindow, AreMadeAgainOrDroppedWhenHeadMoves)
{
    plans.moveDown({hashes[3]});
    worker.finishAll();
    repo.write("five", "5").commit("five");
    reload();
    ASSERT_TRUE(plans.plan.value());
    EXPECT_EQ(notice(), "The plan was made again on top of the new commits.");
    EXPECT_EQ(sentence(), "Plan: 1 moved — no conflicts");
    EXPECT_EQ(shown(), (Names{"five", "three", "four", "two", "one"}));

    // Somebody commits while it is being applied.
    repo.write("six", "6").commit("six");
    const std::string tip = repo.head();
    plans.apply();
    worker.finishAll();
    EXPECT_EQ(repo.head(), tip);
    EXPECT_NE(error(), "");
    store.window().dismissError();
    ASSERT_TRUE(plans.plan.value());
    plans.apply();
    worker.finishAll();
    EXPECT_EQ(subjects(), "one\ntwo\nfour\nthree\nfive\nsix");

    plans.drop({repo.head()});
    repo.git({"reset", "-q", "--hard", "HEAD~1"});
    reload();
    EXPECT_FALSE(plans.plan.value());
    EXPECT_EQ(notice(), "The plan was dropped: its commits are not on the branch any more.");
}

TEST_F(PlansInWindow, AreForTheBranchWhoseHistoryIsShown)
{
    repo.git({"checkout", "-q", "-b", "topic"}).write("five", "5").commit("five");
    const std::string five = repo.head();
    repo.write("five", "6").commit("six");
    const std::string six = repo.head();
    repo.git({"checkout", "-q", "main"}).write("one", "edited");
    reload();
    const std::string before = repo.read({"status", "--porcelain"}) + repo.head();
    store.window().select(SidebarItem::ref("refs/heads/topic"));
    EXPECT_EQ(plans.whyNot({five}).toStdString(), "The commits are still being read.");
    worker.finishAll();
    EXPECT_EQ(plans.whyNot({five}).toStdString(), "");
    plans.move({six}, hashes[3]);
    worker.finishAll();
    EXPECT_EQ(sentence(), "Plan for “topic”: 1 moved — conflicts in 1 file");
    plans.apply();
    worker.finishAll();
    EXPECT_EQ(notice(), "Check out “topic” first: git needs its files where commits conflict.");
    ASSERT_TRUE(plans.plan.value());
    plans.keep({six});
    plans.moveDown({six});
    plans.squash({six}, five, StepAct::fixUp);
    plans.reword(hashes[2], QStringLiteral("third"));
    worker.finishAll();
    EXPECT_EQ(sentence(), "Plan for “topic”: 1 squashed, 1 reworded — no conflicts · “main” stays: it is held by “" +
                              repo.path().string() + "”");
    store.window().select(SidebarItem::history());
    worker.finishAll();
    EXPECT_EQ(plans.movable.value().branch, "refs/heads/topic") << "the plan stays with its branch";
    plans.apply();
    worker.finishAll();
    EXPECT_EQ(error(), "");
    EXPECT_EQ(said(), "Rewrote topic.");
    EXPECT_EQ(repo.read({"log", "--reverse", "--format=%s", "topic"}), "one\ntwo\nthird\nfour\nfive");
    EXPECT_EQ(repo.read({"status", "--porcelain"}) + repo.head(), before);
    EXPECT_EQ(plans.movable.value().branch, "refs/heads/main") << "its history is shown";
    undo();
    EXPECT_EQ(repo.read({"rev-parse", "topic"}), six) << error();
    redo();
    EXPECT_EQ(repo.read({"log", "-1", "--format=%s", "topic"}), "five");
    EXPECT_EQ(repo.read({"status", "--porcelain"}) + repo.head(), before);
    undo();

    // Checked out meanwhile, it is planned for as what is checked out.
    store.window().select(SidebarItem::ref("refs/heads/topic"));
    worker.finishAll();
    plans.drop({six});
    repo.git({"checkout", "-q", "one"}).git({"checkout", "-q", "topic"});
    load();
    ASSERT_TRUE(plans.plan.value());
    EXPECT_FALSE(plans.plan.value()->isElsewhere);
    EXPECT_EQ(sentence(), "Plan: 1 dropped — no conflicts");
    plans.cancel();

    const TemporaryFolder folder;
    repo.git({"checkout", "-q", "main"}).git({"worktree", "add", "-q", (folder / "tree").string(), "topic"});
    load();
    EXPECT_EQ(plans.whyNot({six}).toStdString(), "“topic” is checked out in “" + (folder / "tree").string() + "”.");
}

TEST_F(PlansInWindow, PutCommitsOntoABranch)
{
    repo.git({"branch", "base", hashes[0]}).git({"branch", "mid", hashes[2]});
    repo.git({"checkout", "-q", "base"}).write("two", "other").commit("other two").git({"checkout", "-q", "main"});
    reload();
    const auto proposal = [&](const std::string& from) {
        return gitkit::rebaseProposal(repo.repository(), {.branch = "", .from = from, .onto = "refs/heads/base"});
    };
    plans.rebase(proposal(hashes[2]), QStringLiteral("base"));
    worker.finishAll();
    EXPECT_EQ(error(), "");
    EXPECT_EQ(said(), "Rebased main onto base. “mid” moved along.");
    EXPECT_EQ(subjects(), "one\nother two\nthree\nfour");
    EXPECT_EQ(repo.read({"rev-parse", "mid"}), repo.read({"rev-parse", "HEAD~1"}));
    undo();
    EXPECT_EQ(repo.head(), hashes[3]) << error();
    EXPECT_EQ(repo.read({"rev-parse", "mid"}), hashes[2]);
    EXPECT_EQ(repo.read({"status", "--porcelain"}), "");

    plans.rebase(proposal({}), QStringLiteral("base"));
    worker.finishAll();
    EXPECT_EQ(repo.read({"diff", "--name-only", "--diff-filter=U"}), "two") << "git has stopped there";
    EXPECT_EQ(repo.read({"rev-parse", "REBASE_HEAD"}), hashes[1]);
}

TEST_F(PlansInWindow, LetGitResolveWhatConflicts)
{
    repo.write("four", "changed\n").commit("five");
    const std::string five = repo.head();
    reload();
    plans.move({five}, hashes[0]);
    worker.finishAll();
    EXPECT_EQ(sentence(), "Plan: 1 moved — conflicts in 1 file");
    EXPECT_EQ(plans.markOf(five), (gitkit::RewriteMark{MarkKind::conflicts, {"four"}}));
    EXPECT_EQ(plans.markOf(hashes[2])->kind, MarkKind::unknown);
    EXPECT_EQ(plans.applyTitle().toStdString(), "Apply and Resolve");
    const std::string before = wholeState(repo);
    plans.apply();
    worker.finishAll();
    EXPECT_EQ(error(), "");
    EXPECT_TRUE(store.snapshot().inProgress.value());
    EXPECT_EQ(store.snapshot().conflictCount(), 1U);
    EXPECT_FALSE(plans.plan.value());
    undo();
    EXPECT_EQ(wholeState(repo), before);
}

TEST_F(PlansInWindow, StopToEditAndRefuseToLoseWhatIsNotCommitted)
{
    const auto goOn = [this] {
        store.window().dismissError();
        actions::continueOperation(store.actors());
        worker.finishAll();
    };
    const auto stop = [&] {
        plans.stopAt(hashes[2]);
        plans.reword(hashes[2], QStringLiteral("another three"));
        worker.finishAll();
        plans.apply();
        worker.finishAll();
    };
    stop();
    ASSERT_TRUE(store.snapshot().inProgress.value());
    EXPECT_EQ(store.snapshot().inProgress.value()->edits, repo.head());
    EXPECT_EQ(repo.read({"log", "-1", "--format=%s"}), "another three");
    EXPECT_EQ(actions::editedCommit(store.snapshot()).toStdString(), "“another three”");

    // Changed but not staged: git would speak of conflicts that are none.
    repo.write("two", "edited").write("untracked", "u");
    load();
    goOn();
    EXPECT_EQ(error(), "Stage what belongs to the commit, or discard it, before the rebase goes on. Changed but not "
                       "staged: “two”.");
    EXPECT_EQ(store.window().ways().size(), 1U);
    repo.git({"add", "two"});
    load();
    goOn();
    EXPECT_EQ(error(), "");
    EXPECT_FALSE(store.snapshot().inProgress.value());
    EXPECT_EQ(subjects(), "one\ntwo\nanother three\nfour");
    EXPECT_EQ(repo.read({"show", "HEAD~1:two"}), "edited");
    EXPECT_EQ(repo.read({"log", "-1", "--format=%B", "HEAD~1"}), "another three\n");

    // Taken apart, what is staged is not to become a part of something else.
    repo.git({"reset", "-q", "--hard", hashes[3]});
    load();
    stop();
    const std::string stopped = wholeState(repo);
    EXPECT_TRUE(actions::canBecomePart(store.snapshot()));
    actions::takeApart(store.actors());
    worker.finishAll();
    EXPECT_EQ(error(), "");
    EXPECT_EQ(repo.head(), hashes[1]);
    EXPECT_EQ(bytesAt(repo / "three"), "three");
    EXPECT_FALSE(actions::canBecomePart(store.snapshot()));
    repo.git({"commit", "-q", "--allow-empty", "-m", "one of two"}).git({"add", "three"});
    load();
    goOn();
    EXPECT_EQ(error(), "The commit was taken apart or changed, so what is staged needs a commit of its own before the "
                       "rebase goes on. Staged: “three”.");
    store.window().dismissError();
    repo.git({"reset", "-q", hashes[1]});
    load();
    undo();
    EXPECT_EQ(wholeState(repo), stopped);
    actions::abortOperation(store.actors());
    answer();
    EXPECT_EQ(repo.read({"rev-parse", "main", "HEAD"}), hashes[3] + '\n' + hashes[3]);
    EXPECT_EQ(repo.read({"status", "--porcelain"}), "?? untracked");
}

TEST_F(PlansInWindow, SquashFixupsAndAskBeforeNothingIsLeft)
{
    repo.git({"commit", "-q", "--allow-empty", "-m", "fixup! two"});
    reload();
    EXPECT_EQ(plans.fixups(), 1);
    plans.squashFixups();
    worker.finishAll();
    EXPECT_EQ(plans.fixups(), 0);
    EXPECT_EQ(shown().at(2), "fixup! two");
    plans.cancel();

    repo.git({"checkout", "-q", "-b", "side", hashes[1]}).git({"merge", "-q", "--no-ff", "-m", "merged", "main"});
    repo.write("own", "o").commit("own");
    const std::string own = repo.head();
    reload();
    EXPECT_NE(plans.whyNot({hashes[0]}), QString());
    plans.drop({own});
    worker.finishAll();
    plans.apply();
    ASSERT_TRUE(store.window().confirmation.value());
    EXPECT_EQ(store.window().confirmation.value()->title.toStdString(), "Drop all 1 commit?");
    EXPECT_EQ(repo.head(), own);
    answer();
    EXPECT_EQ(repo.read({"log", "-1", "--format=%s"}), "merged");
    undo();
    EXPECT_EQ(repo.head(), own);
}

TEST_F(PlansInWindow, TakeWhatIsStagedIntoACommitOrOfferAFixup)
{
    const auto into = [&](std::size_t commit, const char* subject) {
        actions::commitStagedInto(store.actors(), {.commit = hashes[commit], .subject = subject});
        worker.finishAll();
    };
    repo.write("two", "2").git({"add", "two"}).write("two", "unstaged");
    repo.write(".git/hooks/pre-commit", "#!/bin/sh\necho not like this\nexit 1\n");
    std::filesystem::permissions(repo / ".git/hooks/pre-commit", std::filesystem::perms::owner_all);
    reload();
    const std::string before = wholeState(repo);
    into(1, "two");
    EXPECT_NE(error().find("not like this"), std::string::npos) << error();
    EXPECT_EQ(wholeState(repo), before);
    ASSERT_EQ(store.window().ways().size(), 2U);
    store.window().takeWay(0); // without hooks
    worker.finishAll();
    EXPECT_EQ(error(), "");
    EXPECT_EQ(subjects(), "one\ntwo\nthree\nfour");
    EXPECT_EQ(repo.read({"show", "HEAD~2:two"}), "2");
    EXPECT_EQ(repo.read({"status", "--porcelain"}), " M two");
    EXPECT_EQ(said(), "Committed into “two”.");
    std::filesystem::remove(repo / ".git/hooks/pre-commit");
    undo();
    EXPECT_EQ(repo.head(), hashes[3]);

    // The oldest one does not have the file yet.
    into(0, "one");
    ASSERT_TRUE(store.window().confirmation.value()) << error();
    EXPECT_EQ(store.window().confirmation.value()->actionTitle.toStdString(), "Make a Fixup Commit Instead");
    EXPECT_EQ(repo.head(), hashes[3]) << "nothing has happened yet";
    answer();
    EXPECT_EQ(repo.read({"log", "-1", "--format=%s"}), "fixup! one");
    EXPECT_EQ(plans.fixups(), 1);

    // While the plan is open, it would be lost.
    EXPECT_EQ(actions::whyNotInto(store.changes(), store.snapshot(), plans), QString());
    plans.squashFixups();
    EXPECT_EQ(actions::whyNotInto(store.changes(), store.snapshot(), plans).toStdString(),
              "Apply or cancel the plan first");
}

TEST_F(PlansInWindow, AreNotTouchedByAnAbsorbingThatComesTooLate)
{
    repo.write("two", "2").git({"add", "two"});
    const gitkit::AbsorbProposal proposal = gitkit::absorbProposal(repo.repository());
    repo.write("three", "3").git({"add", "three"});
    const auto isRefused = [&] {
        const std::string before = wholeState(repo);
        store.window().dismissError();
        actions::absorb(store.actors(), proposal);
        worker.finishAll();
        EXPECT_EQ(wholeState(repo), before);
        return !error().empty();
    };
    EXPECT_TRUE(isRefused()) << "more is staged";
    repo.git({"reset", "-q", "three"});
    repo.git({"commit", "-q", "--allow-empty", "-m", "meanwhile"});
    EXPECT_TRUE(isRefused()) << "somebody has committed";
    repo.git({"update-ref", "refs/heads/main", "HEAD~"}).write(".git/refs/heads/main.lock", "");
    EXPECT_TRUE(isRefused()) << "somebody writes the branch";
    std::filesystem::remove(repo / ".git/refs/heads/main.lock");
    store.window().dismissError();
    actions::absorb(store.actors(), proposal);
    worker.finishAll();
    EXPECT_EQ(error(), "");
    EXPECT_EQ(repo.read({"show", "HEAD~2:two"}), "2");
}

} // namespace
} // namespace plovik
