// SPDX-License-Identifier: GPL-3.0-or-later
#include "GitKit/records/Autosquash.h"
#include "GitKit/records/RewritePlan.h"
#include "GitKit/repository/Folders.h"
#include "GitKit/repository/Operations.h"
#include "GitKit/rewrite/MovableReading.h"
#include "GitKit/rewrite/Rebasing.h"
#include "GitKit/rewrite/Rehearsal.h"
#include "GitKit/rewrite/Rewriting.h"
#include "GitKit/runner/GitError.h"
#include "GitKit/runner/GitVersion.h"
#include "tests/support/TemporaryFolder.h"
#include "tests/support/TestRepository.h"
#include "tests/support/WholeState.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <random>

namespace gitkit {
namespace {

namespace fs = std::filesystem;
using Act = RewriteStep::Act;
using Kind = RewriteMark::Kind;
using Result = RewriteOutcome::Result;

/// What a plan of the commits "a", "b" … comes to, in one line, the oldest first.
std::string shown(const RewritePlan& plan)
{
    std::string line;
    for (const RewriteStep& step : plan.steps) {
        const char sign = " +~-/!"[static_cast<int>(step.act)];
        line += (line.empty() ? "" : " ") + (sign == ' ' ? std::string() : std::string(1, sign)) + step.commit;
        if (step.message)
            line += "=" + *step.message;
    }
    return line;
}

TEST(RewritePlans, KeepTogetherWhatIsSquashed)
{
    const RewritePlan plan = untouchedPlan("refs/heads/main", "base", {"a", "b", "c", "d"});
    EXPECT_TRUE(isUntouched(plan));
    EXPECT_EQ(shown(movedUp(plan, {"a", "b"})), "c a b d");
    EXPECT_EQ(shown(movedDown(plan, {"a", "d"})), "a b d c");
    EXPECT_EQ(shown(moved(plan, {"d", "b"}, {})), "b d a c");
    EXPECT_EQ(shown(moved(plan, {"a"}, "a")), "a b c d");
    EXPECT_EQ(movedCommits(moved(plan, {"a"}, "c")), Hashes{"a"});
    EXPECT_EQ(countsOf(moved(plan, {"a"}, "d")), (RewriteCounts{.moved = 1}));
    // Of two that change places, the one that was meant has moved.
    EXPECT_EQ(movedCommits(movedUp(plan, {"b"})), Hashes{"b"});
    EXPECT_EQ(movedCommits(movedDown(plan, {"c"})), Hashes{"c"});

    // What was squashed goes along, and becomes one of its own where its commit goes.
    const RewritePlan joined = squashed(plan, {"c"}, "a", Act::squash);
    EXPECT_EQ(shown(joined), "a +c b d");
    EXPECT_EQ(squashedInto(joined, "c"), "a");
    EXPECT_EQ(shown(movedUp(joined, {"a"})), "b a +c d");
    EXPECT_EQ(shown(moved(joined, {"d"}, "a")), "a +c d b");
    EXPECT_EQ(shown(squashed(joined, {"a"}, "d", Act::fixUp)), "b d ~a +c");
    EXPECT_EQ(shown(squashed(joined, {"d"}, "c", Act::fixUp)), "a +c ~d b");
    EXPECT_EQ(shown(dropped(joined, {"a"})), "c -a b d");
    EXPECT_EQ(shown(dropped(joined, {"c"})), "a -c b d");
    EXPECT_EQ(shown(kept(dropped(joined, {"c"}), {"c"})), "a c b d");
    EXPECT_EQ(shown(movedDown(joined, {"c"})), "c a b d");
    EXPECT_EQ(shown(kept(joined, {"c"})), "a c b d");
    EXPECT_EQ(shown(reworded(joined, "c", "new")), "a=new ~c b d");
    EXPECT_EQ(shown(squashedIntoParent(plan, {"c", "d"}, Act::fixUp)), "a b ~c ~d");
    EXPECT_EQ(shown(squashedIntoParent(dropped(plan, {"b"}), {"c"}, Act::squash)), "a +c -b d");
    EXPECT_EQ(shown(squashedIntoParent(plan, {"a"}, Act::squash)), "a b c d") << "there is nothing beneath";
    EXPECT_EQ(shown(dropped(squashed(plan, {"b"}, "c", Act::squash), {"a"})), "-a c +b d");
    EXPECT_EQ(affectedCommits(joined), (Hashes{"a", "b", "c", "d"}));
    EXPECT_EQ(affectedCommits(reworded(plan, "c", "x")), (Hashes{"c", "d"}));
    EXPECT_TRUE(dropsAll(dropped(plan, {"a", "b", "c", "d"})));
}

TEST(RewritePlans, PutFixupCommitsWhereTheyBelong)
{
    const RewritePlan plan = untouchedPlan("refs/heads/main", "base", {"aaaa", "b", "c", "d", "e", "f"});
    EXPECT_EQ(shown(autosquashed(plan, {"one\n", "two\n\nbody\n", "fixup! one\n", "squash! fixup! two\n\nmore\n",
                                        "amend! two\n\nsecond\n\nwords\n", "fixup! nowhere\n"})),
              "aaaa ~c b=second\n\nwords\n ~d ~e f");
    EXPECT_EQ(shown(autosquashed(plan, {"one", "two", "fixup! aaaa", "fixup! tw", "x", "squash! three"})),
              "aaaa ~c b ~d e f");
    EXPECT_EQ(joinedMessages("one\n\nbody\n\n", "squash! one\n\nmore\n"), "one\n\nbody\n\nmore\n");
    EXPECT_EQ(joinedMessages("one", "fixup! one\n"), "one\n");
}

/// main has the commits 1 to 5, each of which changes a file of its own, and "log", to which each adds a line far from the
/// others.
struct Rewrites : testing::Test {
    Rewrites()
    {
        if (!can(Ability::mergesInMemory))
            return;
        std::string lines;
        for (int number = 1; number <= 60; ++number)
            lines += "line " + std::to_string(number) + '\n';
        repo.write("log", lines).commit("base");
        base = repo.head();
        for (int number = 1; number <= 5; ++number) {
            const std::string name = std::to_string(number);
            const std::size_t place = lines.find("line " + std::to_string(number * 10) + '\n');
            lines.insert(place, "added " + name + '\n');
            repo.write("log", lines).write(name, name + '\n').commit("commit " + name + "\n\nBody " + name + ".\n");
            commits.push_back(repo.head());
        }
    }
    void SetUp() override
    {
        if (!can(Ability::mergesInMemory))
            GTEST_SKIP() << "this git cannot merge in memory";
    }
    RewritePlan plan() const { return untouchedPlan("refs/heads/main", base, commits); }
    RewriteOutcome apply(const RewritePlan& what)
    {
        const GitRepository door = repo.repository();
        const RewriteOutcome outcome = prepareRewrite(door, what);
        applyRewrite(door, what, outcome, "plovik: test");
        return outcome;
    }
    template <typename Run>
    ErrorKind refusal(Run run)
    {
        try {
            run();
        } catch (const GitError& error) {
            said = error.what();
            return error.kind();
        }
        ADD_FAILURE() << "it was done";
        return ErrorKind::other;
    }
    std::string subjects() const { return repo.read({"log", "--reverse", "--format=%s", base + "..HEAD"}); }
    void hook(const std::string& name, const std::string& script)
    {
        repo.write(".git/hooks/" + name, "#!/bin/sh\n" + script);
        fs::permissions(repo / (".git/hooks/" + name), fs::perms::owner_all);
    }

    TestRepository repo;
    std::string base;
    Hashes commits;
    std::string said;
};

TEST_F(Rewrites, TellWhatBecomesOfEachCommitAndLeaveNothingBehind)
{
    const std::string objects = repo.read({"count-objects", "-v"});
    const GitRepository door = repo.repository();
    RewriteOutcome found = rehearsed(door, dropped(moved(plan(), {commits[4]}, commits[1]), {commits[3]}));
    EXPECT_EQ(found.result, Result::clean);
    using Marks = std::vector<RewriteMark>;
    EXPECT_EQ(found.marks,
              (Marks{{Kind::unchanged}, {Kind::unchanged}, {Kind::rewritten}, {Kind::rewritten}, {Kind::dropped}}));
    EXPECT_EQ(found.rewritten.size(), 2U);

    // What was untouched stays the very same commit, and all is known without a merge.
    found = rehearsed(door, plan());
    EXPECT_EQ(found.tip, commits[4]);
    EXPECT_TRUE(found.rewritten.empty());
    EXPECT_EQ(repo.read({"count-objects", "-v"}), objects);

    repo.write("1", "one\n").commit("changes 1").write("1", "two\n").commit("changes it again");
    Hashes more = commits;
    more.push_back(repo.read({"rev-parse", "HEAD~1"}));
    more.push_back(repo.head());
    const RewritePlan clashing = moved(untouchedPlan("refs/heads/main", base, more), {more[6]}, more[1]);
    found = rehearsed(door, clashing);
    EXPECT_EQ(found.result, Result::conflicts);
    EXPECT_EQ(found.marks[2], (RewriteMark{Kind::conflicts, {"1"}}));
    EXPECT_EQ(found.marks[3], RewriteMark());
    EXPECT_EQ(found.tip, "");
    EXPECT_EQ(refusal([&] { apply(clashing); }), ErrorKind::conflicts);
    EXPECT_EQ(repo.head(), more[6]);
}

TEST_F(Rewrites, KeepAuthorsAndWordsByteForByte)
{
    const std::string tree = repo.read({"rev-parse", "HEAD^{tree}"});
    const std::string odd = "author J\xf6rg O'X <j@x> 1500000000 -0330\n";
    const std::string old =
        repo.storeCommit("tree " + tree + "\nparent " + commits[4] + '\n' + odd +
                         "committer c <c@x> 1500000001 +0100\nencoding ISO-8859-1\n" +
                         "gpgsig -----BEGIN\n \n lines\n -----END\nkept further\n\n\n caf\xe9 \n\n# x");
    repo.git({"reset", "-q", "--hard", old});
    Hashes all = commits;
    all.push_back(old);
    RewritePlan next = dropped(untouchedPlan("refs/heads/main", base, all), {commits[1]});
    apply(next);
    std::string bytes = repo.read({"cat-file", "commit", "HEAD"});
    EXPECT_NE(bytes.find(odd), std::string::npos) << bytes;
    EXPECT_TRUE(bytes.ends_with("\nencoding ISO-8859-1\nkept further\n\n\n caf\xe9 \n\n# x")) << bytes;
    EXPECT_EQ(bytes.find("gpgsig"), std::string::npos);
    EXPECT_EQ(bytes.find("committer c <c@x>"), std::string::npos);

    // New words are UTF-8, and so is the name beside them then.
    all = {repo.head()};
    next = reworded(untouchedPlan("refs/heads/main", repo.read({"rev-parse", "HEAD~1"}), all), all[0], "na\xc3\xafve");
    apply(next);
    bytes = repo.read({"cat-file", "commit", "HEAD"});
    EXPECT_NE(bytes.find("author J\xc3\xb6rg O'X <j@x> 1500000000 -0330\n"), std::string::npos) << bytes;
    EXPECT_EQ(bytes.find("encoding"), std::string::npos);
    EXPECT_TRUE(bytes.ends_with("\n\nna\xc3\xafve")) << bytes;
}

TEST_F(Rewrites, SignAnewWhereTheUserSigns)
{
    const fs::path program = repo / ".git/sign";
    writeFile(program,
              "#!/bin/sh\ncat >/dev/null\necho '[GNUPG:] SIG_CREATED ' >&2\necho '-----BEGIN PGP SIGNATURE-----'\n"
              "echo made\necho '-----END PGP SIGNATURE-----'\n");
    fs::permissions(program, fs::perms::owner_all);
    repo.git({"config", "commit.gpgSign", "yes"}).git({"config", "gpg.program", program.string()});
    apply(reworded(plan(), commits[4], "signed"));
    const std::string bytes = repo.read({"cat-file", "commit", "HEAD"});
    EXPECT_NE(bytes.find("\ngpgsig -----BEGIN PGP SIGNATURE-----\n made\n"), std::string::npos) << bytes;
    EXPECT_EQ(repo.read({"log", "-1", "--format=%an %ae %at%n%B"}),
              repo.read({"log", "-1", "--format=%an %ae %at", commits[4]}) + "\nsigned\n");
}

TEST_F(Rewrites, LeaveFilesAndIndexAsTheyAre)
{
    repo.write("2", "edited\n").write("log", repo.read({"show", "HEAD:log"}) + "\nstaged\n").git({"add", "log"});
    repo.write("log", "unstaged\n").write("new", "n").git({"add", "-N", "new"}).write("untracked", "u");
    repo.git({"update-index", "--assume-unchanged", "3"}).write("3", "hidden\n");
    const auto local = [this] {
        return repo.read({"status", "--porcelain=v2", "-z"}) + repo.read({"ls-files", "-s", "-v"}) +
               bytesAt(repo / "2") + bytesAt(repo / "3") + bytesAt(repo / "log") + bytesAt(repo / "new");
    };
    const std::string before = local();
    RewritePlan next = squashed(moved(plan(), {commits[0]}, commits[3]), {commits[2]}, commits[1], Act::squash);
    apply(next);
    EXPECT_EQ(subjects(), "commit 2\ncommit 4\ncommit 1\ncommit 5");
    EXPECT_EQ(repo.read({"log", "-1", "--format=%B", "HEAD~3"}), "commit 2\n\nBody 2.\n\ncommit 3\n\nBody 3.\n");
    EXPECT_EQ(local(), before);
    EXPECT_EQ(repo.read({"rev-parse", "HEAD^{tree}"}), repo.read({"rev-parse", commits[4] + "^{tree}"}));

    // Of a dropped commit the files go, unless they were edited.
    const std::string tip = repo.head();
    next =
        untouchedPlan("refs/heads/main", repo.read({"rev-parse", "HEAD~2"}), {repo.read({"rev-parse", "HEAD~1"}), tip});
    EXPECT_EQ(refusal([&] { apply(dropped(next, {tip})); }), ErrorKind::wouldOverwriteLocalChanges) << said;
    EXPECT_EQ(repo.head(), tip);
    repo.git({"reset", "-q", "log"}).git({"checkout", "-q", "log"});
    apply(dropped(next, {tip}));
    EXPECT_FALSE(fs::exists(repo / "5"));
    EXPECT_EQ(bytesAt(repo / "2"), "edited\n");
    EXPECT_EQ(bytesAt(repo / "3"), "hidden\n");
}

TEST_F(Rewrites, MoveTheBranchesAlongThatNothingHolds)
{
    repo.git({"branch", "mid", commits[1]}).git({"branch", "low", commits[0]}).git({"branch", "held", commits[2]});
    repo.git({"symbolic-ref", "refs/heads/alias", "refs/heads/mid"});
    const TemporaryFolder other;
    repo.git({"worktree", "add", "-q", (other / "tree").string(), "held"});
    const MovableCommits found = movableCommits(repo.repository());
    ASSERT_EQ(found.branches.size(), 4U);
    EXPECT_EQ(found.branches[0].heldBy, "refs/heads/mid");
    EXPECT_NE(found.branches[1].heldBy, "");
    EXPECT_EQ(found.commits.size(), 6U) << "the root can move, too";
    EXPECT_EQ(found.commits.back().message, "commit 5\n\nBody 5.\n");
    apply(dropped(reworded(plan(), commits[0], "first"), {commits[1]}));
    EXPECT_EQ(repo.read({"log", "-1", "--format=%s", "low"}), "first");
    EXPECT_EQ(repo.read({"rev-parse", "mid"}), repo.read({"rev-parse", "low"})) << "its own commit is gone";
    EXPECT_EQ(repo.read({"symbolic-ref", "refs/heads/alias"}), "refs/heads/mid");
    EXPECT_EQ(repo.read({"rev-parse", "held"}), commits[2]);
    EXPECT_EQ(repo.read({"log", "-g", "-1", "--format=%gs", "mid"}), "plovik: test");
}

TEST_F(Rewrites, ReachBranchesThatAreNotCheckedOut)
{
    repo.git({"branch", "mid", commits[1]}).git({"checkout", "-q", "-b", "here", base});
    repo.write("log", "edited\n").write("5", "untracked here, tracked there\n");
    const GitRepository door = repo.repository();
    const MovableCommits found = movableCommits(door, {.branch = "refs/heads/main"});
    EXPECT_TRUE(found.isElsewhere);
    EXPECT_EQ(found.heldBy, "");
    EXPECT_EQ(found.commits.size(), 6U);
    EXPECT_FALSE(movableCommits(door, {.branch = "refs/heads/here"}).isElsewhere);
    EXPECT_TRUE(movableCommits(door, {.branch = "refs/heads/none"}).commits.empty());

    hook("pre-rebase", "echo \"$1 $2\" > .git/asked\n");
    const std::string status = repo.read({"status", "--porcelain", "-z"});
    RewritePlan other = plan();
    other.isElsewhere = true;
    apply(dropped(squashed(other, {commits[1]}, commits[0], Act::squash), {commits[4]}));
    EXPECT_EQ(repo.read({"log", "--reverse", "--format=%s", base + "..main"}), "commit 1\ncommit 3\ncommit 4");
    EXPECT_EQ(repo.read({"rev-parse", "mid"}), repo.read({"rev-parse", "main~2"}));
    EXPECT_EQ(repo.head(), base);
    EXPECT_EQ(repo.read({"status", "--porcelain", "-z"}), status);
    EXPECT_EQ(bytesAt(repo / ".git/asked"), base + " main\n");
    EXPECT_EQ(repo.read({"log", "-g", "-1", "--format=%gs", "main"}), "plovik: test");

    // It has moved, conflicts, or is checked out somewhere.
    EXPECT_EQ(refusal([&] { apply(reworded(other, commits[4], "x")); }), ErrorKind::changedMeanwhile);
    other = untouchedPlan("refs/heads/main", base, {repo.read({"rev-parse", "main~2"})});
    other.isElsewhere = true;
    repo.git({"branch", "-q", "-f", "main", other.tip()});
    EXPECT_EQ(refusal([&] { rewriteByGit(door, stoppingAt(other, other.tip())); }), ErrorKind::other);
    const TemporaryFolder folder;
    repo.git({"worktree", "add", "-q", (folder / "tree").string(), "main"});
    EXPECT_EQ(movableCommits(door, {.branch = "refs/heads/main"}).heldBy, (folder / "tree").string());
    EXPECT_EQ(refusal([&] { apply(reworded(other, other.tip(), "x")); }), ErrorKind::checkedOutElsewhere);
    EXPECT_EQ(said, "“main” is checked out in “" + (folder / "tree").string() + "”.");
    EXPECT_EQ(repo.read({"rev-parse", "main"}), other.tip());
}

/// What git itself makes of branches on the way, which it lists when asked to.
TEST_F(Rewrites, TakeBranchesAlongAsGitDoes)
{
    if (!can(Ability::movesBranchesInRebase))
        GTEST_SKIP() << "this git moves no branches";
    const TemporaryFolder folder;
    for (int number = 0; number < 4; ++number)
        repo.git({"branch", "at" + std::to_string(number + 1), commits[static_cast<std::size_t>(number)]});
    repo.git({"branch", "twin", commits[2]}).git({"branch", "held", commits[2]});
    repo.git({"worktree", "add", "-q", (folder / "tree").string(), "held"});
    const auto branches = [this] {
        return repo.read({"for-each-ref", "--format=%(refname) %(tree) %(subject)", "refs/heads"});
    };
    const std::string before = repo.read({"for-each-ref", "--format=update %(refname) %(objectname)", "refs/heads"});
    struct Case {
        RewritePlan plan;
        std::string edit; ///< of the list, by sed
    };
    const auto edit = [this](std::size_t commit, const std::string& word) {
        return "s/^pick \\(" + commits[commit].substr(0, 7) + "\\)/" + word + " \\1/;";
    };
    const std::vector<Case> cases{
        {dropped(plan(), {commits[1]}), edit(1, "drop")},
        {dropped(plan(), {commits[2]}), edit(2, "drop")},
        {dropped(plan(), {commits[0]}), edit(0, "drop")},
        {dropped(plan(), {commits[1], commits[2]}), edit(1, "drop") + edit(2, "drop")},
        {dropped(plan(), {commits[4]}), edit(4, "drop")},
    };
    for (const Case& each : cases) {
        SCOPED_TRACE(each.edit);
        repo.git({"-c", "sequence.editor=sed -i '" + each.edit + "'", "rebase", "-q", "-i", "--update-refs", base});
        const std::string byGit = branches();
        repo.git({"reset", "-q", "--hard", commits[4]}).git({"update-ref", "--stdin"}, before + '\n');
        apply(each.plan);
        EXPECT_EQ(branches(), byGit);
        repo.git({"reset", "-q", "--hard", commits[4]}).git({"update-ref", "--stdin"}, before + '\n');
        rewriteByGit(repo.repository(), each.plan);
        EXPECT_EQ(branches(), byGit) << "and where git does it by our list";
        repo.git({"reset", "-q", "--hard", commits[4]}).git({"update-ref", "--stdin"}, before + '\n');
    }
}

TEST_F(Rewrites, ArePutOntoAnotherCommit)
{
    repo.git({"branch", "mid", commits[2]}).git({"branch", "low", commits[0]});
    repo.git({"checkout", "-q", "-b", "target", base}).write("new", "n").commit("target");
    const std::string target = repo.head();
    repo.git({"checkout", "-q", "main"}).write("1", "edited\n");
    RewritePlan onto = untouchedPlan("refs/heads/main", commits[0], {commits.begin() + 1, commits.end()});
    onto.onto = target;
    EXPECT_FALSE(isUntouched(onto));
    EXPECT_EQ(rehearsed(repo.repository(), onto).result, Result::clean);
    // Its commit 1, and so the file with it, stays behind.
    EXPECT_EQ(refusal([&] { apply(onto); }), ErrorKind::wouldOverwriteLocalChanges);
    EXPECT_EQ(refusal([&] { rewriteByGit(repo.repository(), onto); }), ErrorKind::wouldOverwriteLocalChanges);
    repo.git({"checkout", "-q", "1"});
    apply(dropped(onto, {commits[4]}));
    const auto made = [this] {
        return repo.read({"log", "--format=%T %an %at %B", base + "..main"}) + repo.read({"rev-parse", "mid^{tree}"});
    };
    const std::string inMemory = made();
    EXPECT_EQ(subjects(), "target\ncommit 2\ncommit 3\ncommit 4");
    EXPECT_EQ(repo.read({"rev-parse", "mid"}), repo.read({"rev-parse", "HEAD~1"}));
    EXPECT_EQ(repo.read({"rev-parse", "low"}), commits[0]) << "it stays beneath";
    EXPECT_FALSE(fs::exists(repo / "1"));
    EXPECT_EQ(bytesAt(repo / "new"), "n");
    repo.git({"reset", "-q", "--hard", commits[4]}).git({"branch", "-f", "mid", commits[2]});
    rewriteByGit(repo.repository(), dropped(onto, {commits[4]}));
    EXPECT_EQ(made(), inMemory);
}

TEST_F(Rewrites, AreProposedAsGitWouldRebaseThem)
{
    // The target has commit 2 already, and commit 3 in a commit with more.
    repo.git({"checkout", "-q", "-b", "target", base}).git({"cherry-pick", commits[1]});
    repo.git({"cherry-pick", "-n", commits[2]}).write("more", "m").commit("more");
    repo.git({"checkout", "-q", "main"}).write("4", "fixed\n").commit("fixup! commit 4\n");
    const std::string tip = repo.head();
    repo.git({"checkout", "-q", "target"});
    const GitRepository door = repo.repository();
    for (const bool squashes : {false, true}) {
        SCOPED_TRACE(squashes);
        const RebaseProposal found = rebaseProposal(
            door, {.branch = "refs/heads/main", .onto = "refs/heads/target", .squashesFixups = squashes});
        EXPECT_EQ(found.commits.size(), 6U);
        EXPECT_EQ(found.fixups, 1);
        EXPECT_TRUE(found.plan.isElsewhere);
        apply(found.plan);
        const std::string made = repo.read({"log", "--format=%T %an %at %B", base + "..main"});
        repo.git({"checkout", "-q", "-B", "byhand", tip});
        repo.git({"-c", "sequence.editor=true", "rebase", "-q", "-i", squashes ? "--autosquash" : "--no-autosquash",
                  "--empty=drop", "target"});
        EXPECT_EQ(made, repo.read({"log", "--format=%T %an %at %B", base + "..byhand"}));
        repo.git({"checkout", "-q", "target"}).git({"branch", "-f", "main", tip});
    }

    // From a commit on, as it is.
    RebaseProposal found = rebaseProposal(
        door, {.branch = "refs/heads/main", .from = commits[3], .onto = repo.read({"rev-parse", "target"})});
    EXPECT_EQ(found.plan.base, commits[2]);
    EXPECT_EQ(found.commits.size(), 3U);
    EXPECT_EQ(found.outcome.result, Result::clean);
    const auto refused = [&](const RebaseQuestion& question) {
        return refusal([&] { rebaseProposal(door, question); });
    };
    EXPECT_EQ(refused({.branch = "refs/heads/main", .onto = base}), ErrorKind::nothingToDo);
    EXPECT_EQ(refused({.branch = "refs/heads/main", .from = commits[3], .onto = tip}), ErrorKind::nothingToDo);
    EXPECT_EQ(refused({.branch = "refs/heads/main", .onto = "refs/heads/gone"}), ErrorKind::noSuchRef);
    repo.git({"checkout", "-q", "-b", "merged", commits[0]}).git({"merge", "-q", "--no-ff", "-m", "merge", "target"});
    repo.write("x", "x").commit("above");
    EXPECT_EQ(refused({.branch = "", .onto = base}), ErrorKind::other);
    EXPECT_EQ(said, "There is a merge among the commits, or there are too many of them.");
}

TEST_F(Rewrites, TellWhichBranchHasMovedMeanwhile)
{
    if (!can(Ability::movesBranchesInRebase))
        GTEST_SKIP() << "this git moves no branches";
    // Somebody moves a branch while git rebases.
    repo.git({"branch", "mid", commits[1]});
    hook("post-commit", "git update-ref refs/heads/mid " + commits[4] + '\n');
    const RewritePlan next = reworded(plan(), commits[0], "first");
    EXPECT_EQ(refusal([&] { rewriteByGit(repo.repository(), next); }), ErrorKind::changedMeanwhile);
    EXPECT_EQ(said, "The commits were rewritten, but “mid” has moved meanwhile and stays where it is.");
    EXPECT_EQ(subjects(), "first\ncommit 2\ncommit 3\ncommit 4\ncommit 5");
    EXPECT_EQ(repo.read({"rev-parse", "mid"}), commits[4]);
}

TEST_F(Rewrites, NeverTakeAMergeIntoAPlan)
{
    repo.git({"checkout", "-q", "-b", "side", commits[2]}).write("s", "s").commit("side");
    repo.git({"checkout", "-q", "main"}).git({"merge", "-q", "--no-ff", "-m", "merge", "side"}).write("t", "t");
    repo.commit("above");
    const MovableCommits found = movableCommits(repo.repository());
    ASSERT_EQ(found.commits.size(), 1U);
    EXPECT_EQ(found.commits[0].hash, repo.head());
    EXPECT_EQ(found.base, repo.read({"rev-parse", "HEAD~1"}));
    EXPECT_FALSE(found.hasMessageHook);
    hook("prepare-commit-msg", "echo appended >> \"$1\"\n");
    EXPECT_TRUE(movableCommits(repo.repository()).hasMessageHook);
    // In memory no such hook runs: the words stay as they are.
    const RewritePlan next = reworded(untouchedPlan(found.branch, found.base, {repo.head()}), repo.head(), "words");
    apply(next);
    EXPECT_EQ(repo.read({"log", "-1", "--format=%B"}), "words\n");
    // A plan that changes nothing does nothing.
    const std::string before = wholeState(repo);
    apply(untouchedPlan(found.branch, found.base, {repo.head()}));
    EXPECT_EQ(wholeState(repo), before);
}

TEST_F(Rewrites, AskAndTellTheHooks)
{
    hook("pre-rebase", "echo \"no, $1\" >&2; exit 1\n");
    EXPECT_EQ(refusal([&] { apply(reworded(plan(), commits[4], "x")); }), ErrorKind::rejectedByHook);
    EXPECT_EQ(said, "no, " + base);
    EXPECT_EQ(repo.head(), commits[4]);
    hook("pre-rebase", "exit 0\n");
    hook("post-rewrite", "echo \"$1\" > told; cat >> told\n");
    repo.git({"config", "notes.rewriteRef", "refs/notes/*"}).git({"notes", "add", "-m", "remember", commits[3]});
    const RewriteOutcome outcome = apply(squashed(plan(), {commits[4]}, commits[3], Act::fixUp));
    EXPECT_EQ(bytesAt(repo / "told"),
              "rebase\n" + commits[3] + ' ' + outcome.tip + '\n' + commits[4] + ' ' + outcome.tip + '\n');
    EXPECT_EQ(repo.read({"notes", "show", "HEAD"}), "remember");
    if (can(Ability::readsHooksFromConfiguration)) {
        repo.git({"config", "hook.tell.event", "post-rewrite"}).git({"config", "hook.tell.command", "cat > also"});
        repo.git({"config", "hook.guard.event", "pre-rebase"}).git({"config", "hook.guard.command", "test ! -e no"});
        const std::string now = repo.head();
        const RewritePlan newest = untouchedPlan("refs/heads/main", commits[2], {now});
        repo.write("no", "");
        EXPECT_EQ(refusal([&] { apply(reworded(newest, now, "x")); }), ErrorKind::rejectedByHook);
        fs::remove(repo / "no");
        apply(reworded(newest, now, "x"));
        EXPECT_EQ(bytesAt(repo / "also"), now + ' ' + repo.head() + '\n');
    }
    // A hook that guards refs says no before a file is touched.
    hook("reference-transaction", "exit 1\n");
    const std::string before = wholeState(repo);
    const RewritePlan last = untouchedPlan("refs/heads/main", commits[2], {repo.head()});
    EXPECT_NE(refusal([&] { apply(dropped(last, {repo.head()})); }), ErrorKind::changedMeanwhile);
    fs::remove(repo / ".git/hooks/reference-transaction");
    EXPECT_EQ(wholeState(repo), before);
}

TEST_F(Rewrites, RefuseWhereSomethingHasMovedMeanwhile)
{
    const RewritePlan next = reworded(plan(), commits[4], "x");
    const RewriteOutcome outcome = prepareRewrite(repo.repository(), next);
    repo.git({"commit", "-q", "--allow-empty", "-m", "in a terminal"});
    const std::string tip = repo.head();
    EXPECT_EQ(refusal([&] { applyRewrite(repo.repository(), next, outcome, "r"); }), ErrorKind::changedMeanwhile);
    EXPECT_EQ(refusal([&] { prepareRewrite(repo.repository(), next); }), ErrorKind::changedMeanwhile);
    repo.git({"reset", "-q", "--hard", commits[4]}).git({"checkout", "-q", "-b", "other"});
    EXPECT_EQ(refusal([&] { applyRewrite(repo.repository(), next, outcome, "r"); }), ErrorKind::changedMeanwhile);
    EXPECT_EQ(repo.read({"rev-parse", "main"}), commits[4]);
}

TEST_F(Rewrites, WriteOverNothingThatGitDoesNotKnow)
{
    repo.write(".gitignore", "gone\n").write("gone", "1").git({"add", "-f", "gone"}).commit("adds it");
    const std::string added = repo.head();
    repo.git({"rm", "-q", "gone"}).commit("takes it away").write("gone", "the user's");
    const RewritePlan next = untouchedPlan("refs/heads/main", commits[4], {added, repo.head()});
    EXPECT_EQ(refusal([&] { apply(dropped(next, {next.tip()})); }), ErrorKind::wouldOverwriteUnknownFiles);
    EXPECT_EQ(bytesAt(repo / "gone"), "the user's");
    EXPECT_EQ(repo.head(), next.tip());
}

TEST_F(Rewrites, ChangeRootsAndKeepWhatWasEmpty)
{
    repo.git({"commit", "-q", "--allow-empty", "-m", "was empty"}).write("5", "again\n").commit("changes 5");
    repo.git({"revert", "--no-edit", "HEAD"});
    Hashes all = commits;
    all.insert(all.begin(), base);
    for (const char* name : {"HEAD~2", "HEAD~1", "HEAD"})
        all.push_back(repo.read({"rev-parse", name}));
    const RewritePlan whole = untouchedPlan("refs/heads/main", "", all);
    const RewriteOutcome found = rehearsed(repo.repository(), dropped(reworded(whole, base, "root"), {all[7]}));
    EXPECT_EQ(found.result, Result::clean);
    EXPECT_EQ(found.marks[6].kind, Kind::rewritten) << "it was empty before";
    EXPECT_EQ(found.marks[8].kind, Kind::emptied);
    apply(reworded(whole, base, "root"));
    EXPECT_EQ(repo.read({"log", "--format=%s", "--max-parents=0"}), "root");
    EXPECT_EQ(
        refusal([&] {
            apply(dropped(untouchedPlan("refs/heads/main", repo.read({"rev-parse", "HEAD~1"}), {all[8]}), {all[8]}));
        }),
        ErrorKind::changedMeanwhile);

    // A file that no root has can be picked onto nothing.
    repo.git({"checkout", "-q", "--orphan", "apart"}).git({"rm", "-rfq", "."});
    repo.write("x", "x").commit("x").write("y", "y").commit("y");
    const std::string y = repo.head();
    const std::string x = repo.read({"rev-parse", "HEAD~1"});
    apply(moved(untouchedPlan("refs/heads/apart", "", {x, y}), {y}, ""));
    EXPECT_EQ(repo.read({"log", "--format=%s"}), "x\ny");
    EXPECT_EQ(repo.read({"ls-tree", "--name-only", "HEAD~1"}), "y");
}

TEST_F(Rewrites, SplitACommitWithoutAConflictWhateverComesAfter)
{
    const std::string tree = repo.read({"rev-parse", "HEAD^{tree}"});
    const std::string part = repo.read({"diff", commits[1], commits[2], "--", "log"}) + '\n';
    apply(split(plan(), commits[2], {part}, "the log", "the rest"));
    EXPECT_EQ(subjects(), "commit 1\ncommit 2\nthe log\nthe rest\ncommit 4\ncommit 5");
    EXPECT_EQ(repo.read({"rev-parse", "HEAD^{tree}"}), tree);
    EXPECT_EQ(repo.read({"diff", "--name-only", "HEAD~4", "HEAD~3"}), "log");
    EXPECT_EQ(repo.read({"diff", "--name-only", "HEAD~3", "HEAD~2"}), "3");
    EXPECT_EQ(repo.read({"log", "-1", "--format=%an %at", "HEAD~3"}),
              repo.read({"log", "-1", "--format=%an %at", commits[2]}));
}

TEST_F(Rewrites, SplitOffWholeFilesOfEveryKind)
{
    const std::string binary("\0\1\2", 3);
    const auto isSplit = [&](const RewritePlan& next, const std::string& changed) {
        const std::string tip = repo.head();
        const std::string tree = repo.read({"rev-parse", "HEAD^{tree}"});
        apply(next);
        EXPECT_EQ(repo.read({"rev-parse", "HEAD^{tree}"}), tree);
        const std::string first = repo.read({"rev-parse", "HEAD~1^{tree}"});
        EXPECT_EQ(repo.read({"log", "-1", "--root", "--format=", "--name-status", "--no-renames", "HEAD~1"}), changed);
        // Git's own road leads to the same.
        repo.git({"reset", "-q", "--hard", tip});
        rewriteByGit(repo.repository(), next);
        EXPECT_EQ(repo.read({"rev-parse", "HEAD^{tree}"}), tree);
        EXPECT_EQ(repo.read({"rev-parse", "HEAD~1^{tree}"}), first);
    };
    repo.write("binary", binary).write("mode", "m").write("old name", "the same\nlines\n").write("gone", "g");
    repo.write("folder/file", "f").commit("kinds");
    const std::string before = repo.head();
    repo.write("binary", binary + binary).git({"mv", "old name", "n\xe9w"}).write("new", "n").write("other", "o");
    repo.git({"rm", "-q", "-r", "gone", "folder"}).write("folder", "a file now").write("1", "one\r\n");
    fs::permissions(repo / "mode", fs::perms::owner_all);
    repo.commit("all kinds");
    isSplit(split(untouchedPlan("refs/heads/main", before, {repo.head()}), repo.head(),
                  {.files = {"binary", "mode", "old name", "n\xe9w", "new", "gone", "folder", "folder/file", "1"}},
                  "most", "the other"),
            "M\t1\nM\tbinary\nA\tfolder\nD\tfolder/file\nD\tgone\nM\tmode\nA\tnew\nA\t\"n\\351w\"\nD\told name");
    // A root has nothing beneath it.
    repo.git({"checkout", "-q", "--orphan", "roots"}).commit("root");
    isSplit(split(untouchedPlan("refs/heads/roots", "", {repo.head()}), repo.head(), {.files = {"new"}}, "a", "b"),
            "A\tnew");
}

TEST_F(Rewrites, GoThroughGitWhereTheyConflictOrStop)
{
    const std::string tip = repo.head();
    repo.git({"branch", "mid", commits[1]}).git({"config", "rebase.missingCommitsCheck", "error"});
    repo.git({"config", "rebase.autoSquash", "true"}).git({"config", "commit.cleanup", "strip"});
    const std::string part = repo.read({"diff", commits[2], commits[3], "--", "log"}) + '\n';
    RewritePlan next = reworded(plan(), commits[1], "# kept\n\n\nwords of 2");
    next = split(squashed(next, {commits[4]}, commits[2], Act::squash), commits[3], {part}, "first", "second");
    next = dropped(next, {commits[0]});
    const RewriteOutcome expected = rehearsed(repo.repository(), next);
    rewriteByGit(repo.repository(), next);
    EXPECT_EQ(subjects(), "# kept\ncommit 3\nfirst\nsecond");
    EXPECT_EQ(repo.read({"log", "-1", "--format=%B", "HEAD~3"}), "# kept\n\n\nwords of 2\n");
    EXPECT_EQ(repo.read({"log", "-1", "--format=%B", "HEAD~2"}), "commit 3\n\nBody 3.\n\ncommit 5\n\nBody 5.\n");
    EXPECT_EQ(repo.read({"rev-parse", "HEAD^{tree}"}), expected.tree);
    EXPECT_EQ(repo.read({"rev-parse", "mid"}), repo.read({"rev-parse", "HEAD~3"}));

    // It stops where the plan says so, with changes that stand apart kept.
    repo.git({"reset", "-q", "--hard", tip}).write("1", "edited\n");
    RewritePlan stops = stoppingAt(plan(), commits[3]);
    EXPECT_TRUE(needsGit(repo.repository(), stops));
    EXPECT_FALSE(needsGit(repo.repository(), plan()));
    rewriteByGit(repo.repository(), stops);
    EXPECT_EQ(repo.head(), commits[3]);
    EXPECT_TRUE(operationInProgress(repo.repository(), gitDirectories(repo.repository()).own));
    repo.git({"rebase", "--abort"});
    EXPECT_EQ(bytesAt(repo / "1"), "edited\n");
    stops = stoppingAt(plan(), commits[0]);
    EXPECT_EQ(refusal([&] { rewriteByGit(repo.repository(), stops); }), ErrorKind::wouldOverwriteLocalChanges);
    EXPECT_EQ(said, "“1” is changed here and in those commits.");
}

} // namespace
} // namespace gitkit
