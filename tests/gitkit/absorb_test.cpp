// SPDX-License-Identifier: GPL-3.0-or-later
// Staged changes that go into commits which are there already.

#include "GitKit/records/RewritePlan.h"
#include "GitKit/rewrite/Absorbing.h"
#include "GitKit/rewrite/MovableReading.h"
#include "GitKit/runner/GitError.h"
#include "GitKit/runner/GitVersion.h"
#include "tests/support/TestRepository.h"
#include "tests/support/WholeState.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <map>
#include <random>

namespace gitkit {
namespace {

using Text = std::vector<std::string>;

std::string joined(const Text& lines)
{
    std::string text;
    for (const std::string& line : lines)
        text += line + '\n';
    return text;
}

RewritePlan planFor(const AbsorbProposal& proposal)
{
    return untouchedPlan(proposal.branch, proposal.base, proposal.commits);
}

void absorbAll(const TestRepository& repo, const AbsorbProposal& proposal)
{
    const GitRepository door = repo.repository();
    applyStagedInto(door, planFor(proposal), absorbed(door, proposal), "plovik: absorb");
}

TEST(Absorb, PutsLinesIntoTheCommitsThatTouchedThemLast)
{
    TestRepository repo;
    Text lines;
    for (int number = 1; number <= 30; ++number)
        lines.push_back("line " + std::to_string(number));
    repo.write("a b", joined(lines)).write("whole", "1\n").commit("base");
    repo.git({"update-ref", "refs/remotes/origin/main", "HEAD"});
    lines[4] = "five by two";
    repo.write("a b", joined(lines)).commit("two\n\nBody\n");
    const std::string two = repo.head();
    lines[5] = "six by three";
    lines.insert(lines.begin(), "new first");
    repo.write("a b", joined(lines)).commit("three");
    const std::string three = repo.head();
    // Lines that stand side by side, one that is older, one between two, and a whole file.
    lines[5] = "five mended";
    lines[6] = "six mended\nand more";
    lines[20] = "older, mended";
    repo.write("a b", joined(lines)).write("new", "n").git({"add", "-A"}).write("a b", joined(lines) + "unstaged\n");
    repo.write(".git/revs", three + "\n")
        .git({"config", "blame.ignoreRevsFile", ".git/revs"})
        .git({"config", "diff.context", "9"});

    AbsorbProposal proposal = absorbProposal(repo.repository());
    ASSERT_EQ(proposal.hunks.size(), 2U);
    EXPECT_EQ(proposal.hunks[0].target, three) << "the youngest of its lines";
    EXPECT_EQ(proposal.hunks[1].target, "");
    EXPECT_EQ(proposal.others, (std::vector<AbsorbRest>{{"new", StaysStaged::newFile}}));
    EXPECT_EQ(proposal.subjects, (Text{"two", "three"}));
    const std::string index = repo.read({"ls-files", "-s"});
    const std::string staged = repo.read({"write-tree"});
    const std::string work = bytesAt(repo / "a b");
    absorbAll(repo, proposal);
    EXPECT_EQ(repo.read({"ls-files", "-s"}), index);
    EXPECT_EQ(bytesAt(repo / "a b"), work);
    EXPECT_EQ(repo.read({"rev-parse", "HEAD~1"}), two);
    EXPECT_EQ(repo.read({"log", "-1", "--format=%s %an %at"}), repo.read({"log", "-1", "--format=%s %an %at", three}));
    EXPECT_EQ(repo.read({"diff", "--cached", "--stat", "--", "a b"}),
              " a b | 2 +-\n 1 file changed, 1 insertion(+), 1 deletion(-)");
    EXPECT_EQ(repo.read({"write-tree"}), staged);

    // What others have is left alone, and so is what has changed meanwhile.
    proposal = absorbProposal(repo.repository());
    repo.git({"reset", "-q", "--soft", "HEAD~1"});
    EXPECT_THROW(absorbed(repo.repository(), proposal), GitError);
    repo.git({"update-ref", "refs/remotes/origin/main", "HEAD"});
    EXPECT_TRUE(absorbProposal(repo.repository()).commits.empty());
}

/// Returns HEAD's text after the changes that go into a commit.
std::string withChosen(const TestRepository& repo, const AbsorbProposal& proposal, const std::string& path)
{
    const std::string before = repo.repository().runner().bytes({"cat-file", "blob", "HEAD:" + path});
    std::string text;
    std::size_t next = 0;
    int line = 1;
    const auto copyUpTo = [&](int end) {
        for (; line < end && next < before.size(); ++line) {
            const std::size_t stop = std::min(before.find('\n', next), before.size() - 1) + 1;
            text += before.substr(next, stop - next);
            next = stop;
        }
    };
    for (const AbsorbHunk& hunk : proposal.hunks) {
        if (hunk.path != path || hunk.target.empty())
            continue;
        copyUpTo(hunk.gone.empty() ? hunk.line + 1 : hunk.line);
        for (const std::string& come : hunk.come)
            text += come;
        for (const std::string& gone : hunk.gone)
            next += gone.size();
        line += static_cast<int>(hunk.gone.size());
    }
    return text + before.substr(next);
}

/// Changes lines of a file at random. The last one may have no end.
struct RandomFile {
    std::mt19937& dice;
    Text lines = {};
    bool hasEnd = true;

    std::string text() const
    {
        const std::string all = joined(lines);
        return hasEnd ? all : all.substr(0, all.size() - 1);
    }
    void change()
    {
        const std::size_t place = dice() % lines.size();
        if (dice() % 3 == 0)
            lines.insert(lines.begin() + static_cast<std::ptrdiff_t>(place), "in " + std::to_string(dice() % 100));
        else if (dice() % 4 == 0 && lines.size() > 5)
            lines.erase(lines.begin() + static_cast<std::ptrdiff_t>(place));
        else if (dice() % 12 == 0)
            hasEnd = !hasEnd;
        else
            lines[place] += "x" + std::to_string(dice() % 3);
    }
};

TEST(Absorb, GivesTheTreeThatWasChosenWhateverIsEdited)
{
    int absorbedHunks = 0;
    int sentElsewhere = 0;
    const char* const wanted = std::getenv("PLOVIK_ACTIONS");
    const unsigned rounds = wanted ? static_cast<unsigned>(std::atoi(wanted)) : 4;
    for (unsigned seed = 1; seed <= rounds; ++seed) {
        SCOPED_TRACE(seed);
        std::mt19937 dice(seed);
        TestRepository repo;
        std::map<std::string, RandomFile> files{{"f", {dice}}, {"sub/g h", {dice}}};
        for (auto& [path, file] : files) {
            for (int number = 0; number < 20; ++number)
                file.lines.push_back(std::to_string(number % 7));
            repo.write(path, file.text());
        }
        repo.commit("base").git({"update-ref", "refs/remotes/origin/main", "HEAD"});
        for (int commit = 0; commit < 4; ++commit) {
            for (auto& [path, file] : files) {
                file.change();
                repo.write(path, file.text());
            }
            repo.write("always", std::to_string(commit)).commit(std::to_string(commit));
        }
        const auto edit = [&] {
            for (auto& [path, file] : files) {
                for (int change = 0; change < 6; ++change)
                    file.change();
                repo.write(path, file.text());
            }
        };
        edit();
        repo.write("new", "n").git({"add", "-A"});
        edit();
        AbsorbProposal proposal = absorbProposal(repo.repository());
        // Some stay, and some go into another commit that they fit into.
        for (AbsorbHunk& hunk : proposal.hunks) {
            const std::size_t fitting = proposal.commits.size() - hunk.oldest;
            if (dice() % 5 == 0) {
                hunk.target.clear();
            } else if (dice() % 3 == 0 && fitting > 0) {
                hunk.target = proposal.commits[hunk.oldest + dice() % fitting];
                ++sentElsewhere;
            }
        }
        const auto count = std::ranges::count_if(proposal.hunks, [](const auto& hunk) { return !hunk.target.empty(); });
        if (count == 0)
            continue;
        absorbedHunks += static_cast<int>(count);
        std::map<std::string, std::string> texts;
        for (const auto& [path, file] : files)
            texts[path] = withChosen(repo, proposal, path);
        const std::string staged = repo.read({"write-tree"});
        absorbAll(repo, proposal);
        EXPECT_EQ(repo.read({"write-tree"}), staged);
        for (const auto& [path, file] : files) {
            EXPECT_EQ(repo.repository().runner().bytes({"cat-file", "blob", "HEAD:" + path}), texts[path]) << path;
            EXPECT_EQ(bytesAt(repo / path), file.text());
        }
        EXPECT_EQ(repo.read({"log", "--format=%s"}), "3\n2\n1\n0\nbase");
        EXPECT_EQ(repo.read({"ls-tree", "-r", "--name-only", "HEAD"}), "always\nf\nsub/g h") << "nothing else came";
    }
    EXPECT_GT(absorbedHunks, 10);
    EXPECT_GT(sentElsewhere, 3);
}

TEST(Absorb, LeavesStagedWhatItsCommitDoesNotHaveAndTakesTheRest)
{
    TestRepository repo;
    repo.write("f", "1\n").write("old", "1\n2\n3\n4\n").commit("base");
    repo.git({"update-ref", "refs/remotes/origin/main", "HEAD"});
    repo.write("f", "p\nq\nr\n5\n6\n7\nend").write("old", "1\n2\n3 by two\n4\n").commit("two");
    repo.write("f", "p\nr\n5\n6\n7\nend").git({"mv", "old", "renamed"}).commit("three");
    repo.write("intended", "i").git({"add", "-N", "intended"});
    // Lines that another one stood between, a last line without an end, and a file that had another name.
    repo.write("f", "P\nR\n5\n6\n7\nEnd").write("renamed", "1\n2\n3 mended\n4\n").git({"add", "f", "renamed"});
    repo.git({"update-index", "--chmod=+x", "renamed"});
    AbsorbProposal proposal = absorbProposal(repo.repository());
    EXPECT_EQ(proposal.others, (std::vector<AbsorbRest>{{"renamed", StaysStaged::notLines}}));
    repo.git({"update-index", "--chmod=-x", "renamed"});
    EXPECT_THROW(absorbed(repo.repository(), proposal), GitError) << "something else is staged by now";

    proposal = absorbProposal(repo.repository());
    ASSERT_EQ(proposal.hunks.size(), 3U);
    EXPECT_EQ(proposal.publishedOn, "origin/main");
    EXPECT_EQ(proposal.hunks[0].reason, StaysStaged::misplaced);
    EXPECT_EQ(proposal.hunks[0].oldest, 1U);
    EXPECT_EQ(proposal.hunks[1].target, proposal.commits[0]);
    EXPECT_EQ(proposal.hunks[2].reason, StaysStaged::misplaced);
    absorbAll(repo, proposal);
    EXPECT_EQ(repo.repository().runner().bytes({"cat-file", "blob", "HEAD~1:f"}), "p\nq\nr\n5\n6\n7\nEnd");
    EXPECT_EQ(repo.read({"diff", "--cached", "--numstat"}), "2\t2\tf\n1\t1\trenamed");
    // What stays can be sent to where it fits.
    proposal = absorbProposal(repo.repository());
    for (AbsorbHunk& hunk : proposal.hunks)
        hunk.target = proposal.commits[hunk.oldest];
    absorbAll(repo, proposal);
    EXPECT_EQ(repo.read({"status", "--porcelain"}), " A intended");
    EXPECT_EQ(repo.read({"log", "--format=%s"}), "three\ntwo\nbase");
}

TEST(Absorb, AsksTheHooksThatMayRefuse)
{
    TestRepository repo;
    repo.write("f", "1\n2\n3\n").commit("one").write("f", "1\ntwo\n3\n").commit("two");
    repo.write("f", "1\nTWO\n3\n").git({"add", "f"});
    const AbsorbProposal proposal = absorbProposal(repo.repository());
    const auto refusal = [&](CommitHooks hooks = CommitHooks::run) -> std::string {
        const std::string before = wholeState(repo);
        try {
            absorbed(repo.repository(), proposal, hooks);
        } catch (const GitError& error) {
            EXPECT_EQ(wholeState(repo), before);
            return error.kind() == ErrorKind::rejectedByHook ? error.message() : "changed";
        }
        return "";
    };
    for (const std::string name : {"pre-rebase", "pre-commit"}) {
        const std::string hook = ".git/hooks/" + name;
        repo.write(hook, "#!/bin/sh\necho no to $1 $(git diff --cached --name-only)\nexit 1\n");
        std::filesystem::permissions(repo / hook, std::filesystem::perms::owner_all);
        EXPECT_EQ(refusal(), name == "pre-rebase" ? "no to --root f" : "no to f");
        EXPECT_EQ(refusal(CommitHooks::skip), "");
        std::filesystem::remove(repo / hook);
    }
    repo.write(".git/hooks/pre-commit", "#!/bin/sh\necho 4 >> f; git add f\n");
    std::filesystem::permissions(repo / ".git/hooks/pre-commit", std::filesystem::perms::owner_all);
    const std::string head = repo.head();
    EXPECT_THROW(absorbed(repo.repository(), proposal), GitError) << "it has staged more than was shown";
    EXPECT_EQ(repo.head(), head);
}

TEST(Absorb, PutsAllThatIsStagedIntoACommitOfChoice)
{
    if (!can(Ability::mergesInMemory))
        GTEST_SKIP() << "this git cannot merge in memory";
    TestRepository repo;
    repo.write("a", "1\n").commit("one").write("b", "1\n").commit("two").write("a", "2\n").commit("three");
    const MovableCommits movable = movableCommits(repo.repository());
    Hashes hashes;
    for (const MovableCommit& commit : movable.commits)
        hashes.push_back(commit.hash);
    const RewritePlan plan = untouchedPlan(movable.branch, movable.base, hashes);
    const auto fold = [&](const std::string& commit) {
        applyStagedInto(repo.repository(), plan, withStagedIn(repo.repository(), plan, commit), "plovik: fix up");
    };
    EXPECT_THROW(fold(hashes[1]), GitError) << "nothing is staged";
    repo.write("c", "new\n").write("a", "3\n").git({"add", "-A"}).write("b", "unstaged\n");
    EXPECT_THROW(fold(hashes[1]), GitError) << "it conflicts with what comes after";
    EXPECT_EQ(repo.head(), hashes[2]);
    repo.write("a", "2\n").git({"add", "a"});
    fold(hashes[1]);
    EXPECT_EQ(repo.read({"show", "--format=%s", "--name-only", "HEAD~1"}), "two\n\nb\nc");
    EXPECT_EQ(repo.read({"status", "--porcelain"}), " M b");
    EXPECT_EQ(repo.read({"log", "--format=%s"}), "three\ntwo\none");

    // Other words alone are enough, and a hook has a say in them.
    repo.write(".git/hooks/commit-msg", "#!/bin/sh\necho Body >> \"$1\"\n");
    std::filesystem::permissions(repo / ".git/hooks/commit-msg", std::filesystem::perms::owner_all);
    const MovableCommits now = movableCommits(repo.repository());
    const RewritePlan other =
        untouchedPlan(now.branch, now.base, {now.commits[0].hash, now.commits[1].hash, now.commits[2].hash});
    const RewriteOutcome reworded = withStagedIn(repo.repository(), other, other.commits[1], {.message = "deux\n\n"});
    applyStagedInto(repo.repository(), other, reworded, "plovik: fix up");
    EXPECT_EQ(repo.read({"log", "--format=%B", "-1", "HEAD~1"}), "deux\n\nBody\n");
    EXPECT_EQ(repo.read({"status", "--porcelain"}), " M b");
}

} // namespace
} // namespace gitkit
