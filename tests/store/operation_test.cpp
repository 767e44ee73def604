// SPDX-License-Identifier: GPL-3.0-or-later
#include "tests/store/ManualWorker.h"
#include "tests/support/TestRepository.h"

#include "app/store/RepositoryStore.h"
#include "app/store/actions/Operation.h"

#include <gtest/gtest.h>

#include <chrono>
#include <filesystem>

namespace plovik {
namespace {

using gitkit::GitRepository;
using gitkit::OperationInProgress;
using Kind = OperationInProgress::Kind;
using Side = gitkit::ConflictSide;
using Mark = gitkit::BisectMark;
using Arguments = std::vector<std::string>;

struct StoreOperation : testing::Test {
    TestRepository repo;
    TemporaryFolder trash;
    ManualWorker worker;
    RepositoryStore store{repo.path(), worker, services()};

    StoreServices services()
    {
        StoreServices made;
        made.trash = [this](const auto& file) { std::filesystem::rename(file, trash.path() / file.filename()); };
        return made;
    }

    /// main and topic (t1, t2, t3) change the same line of f.
    void branches()
    {
        repo.write("f", "base\n").write("other", "1\n").commit("base").git({"checkout", "-q", "-b", "topic"});
        for (const char* step : {"t1", "t2", "t3"})
            repo.write("f", std::string(step) + "\n").commit(step);
        repo.git({"checkout", "-q", "main"}).write("f", "main\n").commit("on main");
    }

    /// Runs git as another client would; it may stop at a conflict.
    void attempt(const Arguments& arguments) const
    {
        int status = 0;
        runPlainGit(repo.path(), arguments, status, {}, {"GIT_EDITOR=true", "GIT_SEQUENCE_EDITOR=true"});
    }

    void load()
    {
        store.snapshot().refresh(RefreshScope::full);
        worker.finishAll();
    }
    void begin(const Arguments& arguments)
    {
        attempt(arguments);
        load();
    }
    template <typename... Parameters>
    void act(void (*verb)(Actors, Parameters...), std::type_identity_t<Parameters>... arguments)
    {
        store.window().dismissError();
        verb(store.actors(), arguments...);
        worker.finishAll();
    }
    bool confirm()
    {
        if (!store.window().confirmation.value())
            return false;
        const Confirmation question = *store.window().confirmation.value();
        store.window().dismissQuestion();
        question.action();
        worker.finishAll();
        return true;
    }
    /// Aborts; whether it asked, in which words.
    std::string abort()
    {
        act(&actions::abortOperation);
        const std::string asked =
            store.window().confirmation.value() ? store.window().confirmation.value()->message.toStdString() : "";
        confirm();
        EXPECT_FALSE(store.snapshot().inProgress.value()) << error();
        return asked;
    }
    bool isIn(Kind kind) const
    {
        return store.snapshot().inProgress.value() && store.snapshot().inProgress.value()->kind == kind;
    }
    std::string error() const { return store.window().errorMessage.value().value_or(QString()).toStdString(); }
    std::string box() const
    {
        return (store.draft().commitSubject.value() + u'|' + store.draft().commitBody.value()).toStdString();
    }
    std::string subjects(const std::string& range) const { return repo.read({"log", "--format=%s", range}); }
    void takeAll(Side side)
    {
        store.window().dismissError();
        store.staging().takeSide(store.snapshot().status.value().files, side);
        worker.finishAll();
    }
};

struct Case {
    const char* name;
    Kind kind;
    Arguments command;
    const char* branch = "main"; ///< checked out before
    std::optional<gitkit::OperationProgress> progress = {};
    const char* subject = ""; ///< where git stopped
    const char* finished = "";
};

class EveryOperation : public StoreOperation, public testing::WithParamInterface<Case> {
protected:
    void start()
    {
        branches();
        repo.git({"format-patch", "-q", "-o", (trash / "patches").string(), "main..topic"});
        repo.git({"checkout", "-q", GetParam().branch});
        Arguments command = GetParam().command;
        for (std::string& argument : command) {
            if (argument == "PATCHES")
                argument = (trash / "patches/0001-t1.patch").string();
        }
        before = repo.head();
        begin(command);
        ASSERT_TRUE(isIn(GetParam().kind));
    }
    std::string before;
};

TEST_P(EveryOperation, IsRecognisedAndAborted)
{
    start();
    const OperationInProgress& now = *store.snapshot().inProgress.value();
    EXPECT_EQ(now.progress, GetParam().progress);
    EXPECT_EQ(now.stop ? now.stop->subject : "", GetParam().subject);
    EXPECT_FALSE(now.isIncomplete);
    EXPECT_EQ(store.snapshot().conflictCount(), 1);
    EXPECT_FALSE(actions::canContinueOperation(store.actors()));
    EXPECT_EQ(abort(), "") << "nothing was resolved yet";
    EXPECT_EQ(error(), "");
    EXPECT_FALSE(store.snapshot().inProgress.value());
    EXPECT_EQ(repo.head(), before);
    EXPECT_EQ(store.snapshot().headDescription().toStdString(), GetParam().branch);
    EXPECT_EQ(box(), "|");
}

TEST_P(EveryOperation, IsFinishedAndSkipped)
{
    start();
    for (int step = 0; step < 4 && store.snapshot().inProgress.value(); ++step) {
        takeAll(Side::theirs);
        ASSERT_EQ(store.snapshot().conflictCount(), 0);
        ASSERT_TRUE(actions::canContinueOperation(store.actors()));
        act(&actions::continueOperation);
    }
    EXPECT_FALSE(store.snapshot().inProgress.value()) << error();
    EXPECT_EQ(subjects(before + "..HEAD"), GetParam().finished);
    EXPECT_EQ(repo.read({"status", "--porcelain"}), "");
    EXPECT_EQ(repo.read({"log", "-1", "--format=%an"}), "Ada");
    EXPECT_EQ(box(), "|");

    if (GetParam().kind == Kind::merge || GetParam().kind == Kind::applyPatches)
        return;
    repo.git({"reset", "-q", "--hard", before});
    begin(GetParam().command);
    for (int step = 0; step < 4 && store.snapshot().inProgress.value(); ++step)
        act(&actions::skipOperation);
    EXPECT_FALSE(store.snapshot().inProgress.value()) << error();
}

INSTANTIATE_TEST_SUITE_P(
    StoreOperation, EveryOperation,
    testing::Values(
        Case{"merge", Kind::merge, {"merge", "topic"}, "main", {}, "", "Merge branch 'topic'\nt3\nt2\nt1"},
        Case{"rebase", Kind::rebase, {"rebase", "main"}, "topic", {{1, 3}}, "t1", "t3\nt2\nt1\non main"},
        Case{"interactive", Kind::rebase, {"rebase", "-i", "main"}, "topic", {{1, 3}}, "t1", "t3\nt2\nt1\non main"},
        Case{"applied", Kind::rebase, {"rebase", "--apply", "main"}, "topic", {{1, 3}}, "t1", "t3\nt2\nt1\non main"},
        Case{"patches", Kind::applyPatches, {"am", "-3", "PATCHES"}, "main", {{1, 1}}, "t1", "t1"},
        Case{"onePick", Kind::cherryPick, {"cherry-pick", "topic~1"}, "main", {}, "t2", "t2"},
        Case{"picks", Kind::cherryPick, {"cherry-pick", "topic~3..topic"}, "main", {{1, 3}}, "t1", "t3\nt2\nt1"},
        Case{"oneRevert", Kind::revert, {"revert", "--no-edit", "topic~1"}, "topic", {}, "t2", "Revert \"t2\""},
        Case{"reverts",
             Kind::revert,
             {"revert", "--no-edit", "topic~1", "topic~2"},
             "topic",
             {{1, 2}},
             "t2",
             "Revert \"t1\"\nRevert \"t2\""}),
    [](const auto& each) { return each.param.name; });

TEST_F(StoreOperation, BisectFindsTheFirstBadCommit)
{
    branches();
    repo.git({"checkout", "-q", "topic"});
    begin({"bisect", "start", "--term-old=fine", "--term-new=broken"});
    ASSERT_TRUE(isIn(Kind::bisect));
    EXPECT_FALSE(store.snapshot().inProgress.value()->bisect->isBadKnown);
    act(&actions::bisect, Mark::bad);
    EXPECT_TRUE(store.snapshot().inProgress.value()->bisect->isBadKnown &&
                !store.snapshot().inProgress.value()->bisect->isGoodKnown);
    repo.git({"checkout", "-q", "topic~3"});
    act(&actions::bisect, Mark::good);
    EXPECT_EQ(store.snapshot().inProgress.value()->bisect->stepsLeft, 1);
    EXPECT_EQ(store.snapshot().inProgress.value()->bisect->bad, "broken");
    act(&actions::bisect, Mark::bad);
    act(&actions::bisect, Mark::good);
    ASSERT_TRUE(store.snapshot().inProgress.value()->bisect->found);
    EXPECT_EQ(store.snapshot().inProgress.value()->bisect->found->hash, repo.read({"rev-parse", "topic~1"}));
    EXPECT_EQ(store.snapshot().inProgress.value()->bisect->found->subject, "t2");
    act(&actions::resetBisect);
    EXPECT_EQ(error(), "");
    EXPECT_FALSE(store.snapshot().inProgress.value());
    EXPECT_EQ(store.snapshot().headDescription(), QStringLiteral("topic"));

    // The branch that it began on may be gone by the end.
    begin({"bisect", "start", "HEAD", "HEAD~2"});
    EXPECT_EQ(store.snapshot().inProgress.value()->bisect->stepsLeft, 0);
    repo.git({"update-ref", "-d", "refs/heads/topic"});
    EXPECT_NE(abort(), "");
    EXPECT_FALSE(store.snapshot().inProgress.value());
}

TEST_F(StoreOperation, WhatIsHalfWrittenShowsAndEnds)
{
    struct Half {
        std::string file, bytes;
        Kind kind;
    };
    branches();
    const std::string hash = repo.head();
    const std::vector<Half> halves{
        {"rebase-merge/msgnum", "99999999999999999999", Kind::rebase},
        {"rebase-merge/done", std::string(3'000'000, '\0'), Kind::rebase},
        {"rebase-apply/next", "one\n", Kind::applyPatches},
        {"sequencer/todo", "frobnicate \n\xff\n", Kind::cherryPick},
        {"sequencer/later-file", "", Kind::cherryPick},
        {"MERGE_HEAD", "", Kind::merge},
        {"MERGE_HEAD", "not a hash\n" + hash + "\n", Kind::merge},
        {"BISECT_LOG", "git bisect start\n# bad: [", Kind::bisect},
    };
    for (const Half& half : halves) {
        SCOPED_TRACE(half.file);
        repo.write(".git/" + half.file, half.bytes);
        load();
        ASSERT_TRUE(isIn(half.kind));
        EXPECT_TRUE(store.snapshot().inProgress.value()->isIncomplete);
        EXPECT_EQ(store.snapshot().readProblem.value(), QString());
        EXPECT_FALSE(store.snapshot().inProgress.value()->progress &&
                     store.snapshot().inProgress.value()->progress->step > 0);
        abort();
        EXPECT_FALSE(store.snapshot().inProgress.value()) << error();
        EXPECT_EQ(repo.head(), hash);
        EXPECT_EQ(repo.read({"status", "--porcelain"}), "");
    }
}

TEST_F(StoreOperation, AMergeThatChangesNothingIsFinished)
{
    branches();
    begin({"merge", "topic"});
    EXPECT_EQ(box(), "Merge branch 'topic'|");
    EXPECT_TRUE(store.draft().holdsPreparedMessage());
    takeAll(Side::ours);
    EXPECT_TRUE(store.snapshot().status.value().files.empty());
    EXPECT_FALSE(store.draft().canCommit());
    act(&actions::continueOperation);
    EXPECT_EQ(error(), "");
    EXPECT_EQ(repo.read({"rev-list", "--count", "--merges", "--max-count=1", "HEAD^1..HEAD"}), "1");
    EXPECT_EQ(box(), "|");

    // With a message of one's own, too, which is recorded as it is.
    repo.git({"reset", "-q", "--hard", "HEAD^1"});
    begin({"merge", "topic"});
    store.draft().setSubject(QStringLiteral("#1 mine"));
    takeAll(Side::ours);
    act(&actions::continueOperation);
    EXPECT_EQ(repo.read({"log", "-1", "--merges", "--format=%s"}), "#1 mine");
    EXPECT_EQ(box(), "|");
}

TEST_F(StoreOperation, PreparedMessagesComeAndGoAndNeverOverwrite)
{
    branches();
    repo.git({"checkout", "-q", "topic"});
    begin({"rebase", "main"});
    EXPECT_EQ(box(), "t1|");
    takeAll(Side::theirs);
    store.draft().setSubject(QStringLiteral("t1, reworded"));
    act(&actions::continueOperation); // t2 and t3 follow without a conflict
    EXPECT_EQ(subjects("main..topic"), "t3\nt2\nt1, reworded");
    EXPECT_EQ(box(), "|");

    store.draft().setSubject(QStringLiteral("typed"));
    begin({"revert", "--no-edit", "HEAD~1"});
    EXPECT_EQ(box(), "typed|");
    abort();
    EXPECT_EQ(box(), "typed|");
    store.draft().setSubject(QString());
    repo.git({"config", "core.commentChar", ";"});
    begin({"revert", "--no-edit", "HEAD~1"});
    EXPECT_EQ(box().find("Conflicts"), std::string::npos) << box();
    EXPECT_EQ(store.draft().commitSubject.value(), QStringLiteral("Revert \"t2\""));
    abort();
    EXPECT_EQ(box(), "|");
    begin({"merge", "--squash", "main~1"});
    EXPECT_FALSE(store.snapshot().inProgress.value());
}

TEST_F(StoreOperation, ATemplateFillsEveryNewMessageAndIsNotOneItself)
{
    branches();
    repo.write(".git/template", "fix: \n\n# why\nWhy:\n").git({"config", "commit.template", ".git/template"});
    load();
    EXPECT_EQ(box(), "fix:|Why:");
    store.snapshot().refresh(RefreshScope::full);
    worker.finishAll();
    EXPECT_EQ(box(), "fix:|Why:");
    repo.write("new", "1\n").git({"add", "new"});
    load();
    store.draft().setSubject(QStringLiteral("fix: "));
    EXPECT_FALSE(store.draft().canCommit()) << "git refuses it, too";
    store.draft().setAmend(true);
    worker.finishAll();
    EXPECT_NE(box(), "fix:|Why:") << "it gives way to the message that is amended";
    store.draft().empty();

    store.draft().setSubject(QStringLiteral("fix: it"));
    load();
    EXPECT_EQ(box(), "fix: it|Why:");
    store.draft().commit();
    worker.finishAll();
    EXPECT_EQ(repo.read({"log", "-1", "--format=%B"}), "fix: it\n\nWhy:\n");
    EXPECT_EQ(box(), "fix:|Why:");

    // A message that git prepared comes instead, and the template after it.
    begin({"merge", "topic"});
    EXPECT_EQ(box(), "Merge branch 'topic'|");
    abort();
    EXPECT_EQ(box(), "fix:|Why:");
    store.draft().setSubject({});
    store.draft().setBody({});
    load();
    EXPECT_EQ(box(), "|") << "the user has emptied it";
}

TEST_F(StoreOperation, AnEmptyStepIsTheUsersToSkip)
{
    branches();
    begin({"cherry-pick", "topic"});
    takeAll(Side::ours);
    act(&actions::continueOperation);
    EXPECT_EQ(error(), "");
    ASSERT_TRUE(isIn(Kind::cherryPick));
    ASSERT_TRUE(store.window().confirmation.value());
    const std::string asked = store.window().confirmation.value()->message.toStdString();
    EXPECT_EQ(asked.find("This commit would change nothing here. It can be skipped."), 0U) << asked;
    EXPECT_NE(asked.find("“f”"), std::string::npos) << "the resolution goes";
    EXPECT_EQ(store.window().confirmation.value()->actionTitle, QStringLiteral("Skip"));
    EXPECT_TRUE(confirm());
    EXPECT_EQ(error(), "");
    EXPECT_FALSE(store.snapshot().inProgress.value());
    EXPECT_FALSE(store.window().confirmation.value()) << "it was asked once";
}

/// A window of its own inside a test.
struct OneOperation : StoreOperation {
    void TestBody() override {}
};

TEST(StoreOperations, GitsOwnMessageIsCommittedWithoutAHookThatRefuses)
{
    for (const char* const command : {"merge", "cherry-pick", "revert"}) {
        SCOPED_TRACE(command);
        const bool reverts = std::string_view(command) == "revert";
        OneOperation t;
        t.branches();
        t.repo.write(".git/hooks/commit-msg", "#!/bin/sh\necho no; exit 1\n");
        if (reverts) // what the last one but one has changed was changed since
            t.repo.write("f", "later\n").commit("later");
        t.begin(reverts ? std::vector<std::string>{"revert", "--no-edit", "HEAD~1"}
                        : std::vector<std::string>{command, "topic"});
        t.takeAll(Side::theirs);
        std::filesystem::permissions(t.repo / ".git/hooks/commit-msg", std::filesystem::perms::owner_all);
        const std::string before = t.repo.head();
        t.act(&actions::continueOperation);
        EXPECT_EQ(t.error(), "no");
        EXPECT_EQ(t.repo.head(), before);
        ASSERT_EQ(t.store.window().ways().size(), 2U);
        EXPECT_EQ(t.store.window().ways()[0].title, QStringLiteral("Continue Without Hooks"));
        t.store.window().takeWay(0);
        t.worker.finishAll();
        EXPECT_EQ(t.error(), "");
        EXPECT_FALSE(t.store.snapshot().inProgress.value());
        EXPECT_EQ(t.repo.read({"rev-parse", "HEAD^"}), before);
        EXPECT_EQ(t.repo.read({"log", "-1", "--format=%B"}).find('#'), std::string::npos);
    }
}

TEST_F(StoreOperation, AHookThatRefusesTheCommitOfAMergeCanBePassedOver)
{
    branches();
    begin({"merge", "topic"});
    takeAll(Side::theirs);
    repo.write(".git/hooks/pre-commit", "#!/bin/sh\necho no; exit 1\n");
    std::filesystem::permissions(repo / ".git/hooks/pre-commit", std::filesystem::perms::owner_all);
    store.draft().setSubject(QStringLiteral("in my words"));
    act(&actions::continueOperation);
    EXPECT_EQ(error(), "no");
    EXPECT_EQ(box(), "in my words|");
    ASSERT_EQ(store.window().ways().size(), 2U);
    store.window().takeWay(0);
    worker.finishAll();
    EXPECT_EQ(error(), "");
    EXPECT_FALSE(store.snapshot().inProgress.value());
    EXPECT_EQ(subjects("HEAD~1..HEAD").substr(0, 11), "in my words");
}

TEST_F(StoreOperation, SkippingAsksForWhatWouldBeLostAndKeepsIt)
{
    branches();
    repo.git({"checkout", "-q", "topic"});
    begin({"rebase", "main"});
    repo.write("f", "half resolved\n").write("other", "edited during the rebase\n");
    load();
    act(&actions::skipOperation);
    ASSERT_TRUE(store.window().confirmation.value());
    const std::string asked = store.window().confirmation.value()->message.toStdString();
    EXPECT_NE(asked.find("“f” and “other”"), std::string::npos) << asked;
    EXPECT_EQ(asked.find("undone"), std::string::npos) << "the steps that were done stay";
    EXPECT_TRUE(confirm());
    EXPECT_NE(readFile(repo / "other"), "edited during the rebase\n");
    store.undo().undo();
    worker.finishAll();
    EXPECT_EQ(readFile(repo / "other"), "edited during the rebase\n");
}

TEST_F(StoreOperation, WhatIsTypedWhileContinuingStays)
{
    branches();
    begin({"merge", "topic"});
    takeAll(Side::ours);
    store.draft().setSubject(QStringLiteral("recorded"));
    actions::continueOperation(store.actors());
    store.draft().setSubject(QStringLiteral("typed since"));
    worker.finishAll();
    EXPECT_EQ(error(), "");
    EXPECT_EQ(subjects("HEAD~1..HEAD").substr(0, 8), "recorded");
    EXPECT_EQ(box(), "typed since|");
}

TEST_F(StoreOperation, AbortingAsksForWhatWouldBeLost)
{
    branches();
    const std::string start = repo.head();
    begin({"merge", "topic"});
    repo.write("other", "edited before\n").write("untracked", "mine\n");
    EXPECT_EQ(abort(), "") << "git leaves that alone";
    EXPECT_EQ(readFile(repo / "other") + readFile(repo / "untracked"), "edited before\nmine\n");
    repo.git({"checkout", "-q", "--", "other"});

    begin({"merge", "topic"});
    repo.write("f", "by hand\n");
    EXPECT_NE(abort().find("“f”"), std::string::npos) << "edited";
    begin({"merge", "topic"});
    takeAll(Side::theirs);
    EXPECT_NE(abort().find("“f”"), std::string::npos) << "resolved";
    begin({"merge", "topic"});
    repo.write("added", "1").git({"add", "added"});
    EXPECT_NE(abort().find("“added”"), std::string::npos) << "staged besides";

    repo.git({"checkout", "-q", "topic"});
    begin({"rebase", "main"});
    repo.write("other", "edited during the rebase\n");
    EXPECT_NE(abort().find("“other”"), std::string::npos);
    begin({"rebase", "-x", "false", "main~1"}); // stops after the first commit
    EXPECT_NE(abort().find("was already done"), std::string::npos);
    EXPECT_EQ(readFile(repo / "untracked"), "mine\n");
    EXPECT_EQ(repo.read({"rev-parse", "main"}), start);

    // Without the tree that newer gits keep, the file's time tells.
    begin({"rebase", "--apply", "main"});
    EXPECT_EQ(abort(), "");
    begin({"rebase", "--apply", "main"});
    repo.write("f", "<<<<<<< x\n");
    std::filesystem::last_write_time(repo / "f", std::filesystem::file_time_type::clock::now() + std::chrono::hours(1));
    EXPECT_NE(abort().find("“f”"), std::string::npos);
}

TEST_F(StoreOperation, TakingASideLosesNothing)
{
    const std::string binary("\0\1\2", 3);
    repo.write("text", "base\n").write("*", "base\n").write("oursGone", "base\n").write("theirsGone", "base\n");
    repo.write("moved", "1\n2\n3\n4\n").write("bin", binary).commit("base").git({"checkout", "-q", "-b", "topic"});
    repo.write("text", "theirs\n").write("*", "theirs\n").write("oursGone", "theirs\n").remove("theirsGone");
    repo.write("bin", binary + "t").write("both", "theirs\n").git({"mv", "moved", "theirName"}).commit("theirs");
    repo.git({"checkout", "-q", "main"}).write("text", "ours\n").write("*", "ours\n").remove("oursGone");
    repo.write("theirsGone", "ours\n").write("bin", binary + "o").write("both", "ours\n");
    std::filesystem::create_symlink("text", repo / "link");
    repo.git({"mv", "moved", "ourName"}).commit("ours");
    begin({"merge", "topic"});
    ASSERT_EQ(store.snapshot().conflictCount(), 9);
    repo.write("text", "by hand\n");

    takeAll(Side::theirs);
    EXPECT_EQ(error(), "");
    EXPECT_EQ(repo.read({"diff", "--cached", "--name-status", "--no-renames", "topic"}), "A\tlink");
    EXPECT_EQ(repo.read({"status", "--porcelain"}).find("??"), std::string::npos);
    EXPECT_EQ(readFile(repo / "text") + readFile(repo / "*"), "theirs\ntheirs\n");
    EXPECT_EQ(readFile(trash / "text"), "by hand\n");
    EXPECT_EQ(readFile(trash / "theirsGone"), "ours\n");
    EXPECT_FALSE(std::filesystem::exists(repo / "theirsGone"));
    EXPECT_FALSE(std::filesystem::exists(trash / "*")) << "nobody had edited it";

    abort();
    begin({"merge", "topic"});
    takeAll(Side::ours);
    EXPECT_EQ(repo.read({"status", "--porcelain"}), "");
}

TEST_F(StoreOperation, SubmodulesAndWorktreesAreTold)
{
    branches();
    const std::string ours = repo.read({"rev-parse", "main"});
    const std::string theirs = repo.read({"rev-parse", "topic"});
    const auto link = [&](const std::string& commit) {
        repo.git({"update-index", "--add", "--cacheinfo", "160000," + commit + ",sub"});
        repo.git({"commit", "-q", "-m", "link"});
    };
    repo.git({"checkout", "-q", "-b", "a"});
    link(ours);
    repo.git({"checkout", "-q", "-f", "-b", "b", "main"});
    link(theirs);
    begin({"merge", "a"});
    ASSERT_EQ(store.snapshot().conflictCount(), 1);
    takeAll(Side::theirs);
    EXPECT_EQ(error(), "");
    EXPECT_EQ(repo.read({"rev-parse", ":sub"}), ours);
    repo.git({"merge", "--abort"}).git({"checkout", "-q", "-f", "main"});

    TemporaryFolder beside;
    repo.git({"worktree", "add", "-q", (beside / "tree").string(), "topic"});
    int status = 0;
    runPlainGit(beside / "tree", {"rebase", "main"}, status);
    RepositoryStore other(beside / "tree", worker);
    other.snapshot().refresh(RefreshScope::full);
    load();
    EXPECT_FALSE(store.snapshot().inProgress.value()) << "the other one's";
    ASSERT_TRUE(other.snapshot().inProgress.value());
    EXPECT_EQ(other.snapshot().inProgress.value()->branch, "topic");
    EXPECT_EQ(other.snapshot().inProgress.value()->others, std::vector{repo.read({"rev-parse", "main"})});
    actions::abortOperation(other.actors());
    worker.finishAll();
    EXPECT_FALSE(other.snapshot().inProgress.value());
}

TEST_F(StoreOperation, ASquashThatStoppedStaysAPartOfTheCommitBefore)
{
    branches();
    repo.git({"checkout", "-q", "topic"}).write("f", "more\n").commit("squash! t1");
    begin({"rebase", "-i", "--autosquash", "main"});
    for (int step = 0; step < 5 && store.snapshot().inProgress.value(); ++step) {
        takeAll(Side::theirs);
        if (store.snapshot().inProgress.value()->meldsInto)
            store.draft().setSubject(QStringLiteral("t1 and more"));
        act(&actions::continueOperation);
    }
    EXPECT_FALSE(store.snapshot().inProgress.value()) << error();
    EXPECT_EQ(subjects("main..topic"), "t3\nt2\nt1 and more");
}

} // namespace
} // namespace plovik
