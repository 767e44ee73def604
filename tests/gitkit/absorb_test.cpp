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
    EXPECT_EQ(proposal.others, 1);
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

TEST(Absorb, GivesTheTreeThatWasStagedWhateverIsEdited)
{
    int absorbedHunks = 0;
    for (unsigned seed = 1; seed <= 10; ++seed) {
        SCOPED_TRACE(seed);
        std::mt19937 dice(seed);
        TestRepository repo;
        Text lines;
        for (int number = 0; number < 20; ++number)
            lines.push_back(std::to_string(number % 7));
        const auto change = [&] {
            const std::size_t place = dice() % lines.size();
            if (dice() % 3 == 0)
                lines.insert(lines.begin() + static_cast<std::ptrdiff_t>(place), "in " + std::to_string(dice() % 100));
            else if (dice() % 4 == 0 && lines.size() > 5)
                lines.erase(lines.begin() + static_cast<std::ptrdiff_t>(place));
            else
                lines[place] += "x" + std::to_string(dice() % 3);
        };
        repo.write("f", joined(lines)).commit("base").git({"update-ref", "refs/remotes/origin/main", "HEAD"});
        for (int commit = 0; commit < 4; ++commit) {
            change();
            change();
            repo.write("f", joined(lines)).commit(std::to_string(commit));
        }
        for (int edit = 0; edit < 4; ++edit)
            change();
        repo.write("f", joined(lines)).git({"add", "f"});
        AbsorbProposal proposal = absorbProposal(repo.repository());
        const auto belongs = [](const AbsorbHunk& hunk) { return !hunk.target.empty(); };
        const auto count = std::ranges::count_if(proposal.hunks, belongs);
        if (count == 0)
            continue;
        absorbedHunks += static_cast<int>(count);
        const std::string staged = repo.read({"write-tree"});
        absorbAll(repo, proposal);
        EXPECT_EQ(repo.read({"write-tree"}), staged);
        const bool isAll = count == static_cast<std::ptrdiff_t>(proposal.hunks.size());
        EXPECT_EQ(repo.read({"rev-parse", "HEAD^{tree}"}) == staged, isAll);
        EXPECT_EQ(repo.read({"rev-list", "--count", "HEAD"}), "5");
    }
    EXPECT_GT(absorbedHunks, 10);
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
}

} // namespace
} // namespace gitkit
