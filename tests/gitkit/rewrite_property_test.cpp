// SPDX-License-Identifier: GPL-3.0-or-later
// Random histories and random plans: what is found in memory is what git's own rebase makes of the same list.

#include "GitKit/records/RewritePlan.h"
#include "GitKit/rewrite/Rehearsal.h"
#include "GitKit/rewrite/Rewriting.h"
#include "GitKit/runner/GitVersion.h"
#include "tests/support/TestRepository.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <cstdlib>
#include <iostream>
#include <random>
#include <sstream>

namespace gitkit {
namespace {

using Act = RewriteStep::Act;

class RewriteDice {
public:
    explicit RewriteDice(unsigned seed) : engine_(seed) {}
    std::size_t below(std::size_t count) { return engine_() % count; }
    bool chance(unsigned percent) { return below(100) < percent; }
    template <typename List>
    const auto& oneOf(const List& list)
    {
        return list[below(list.size())];
    }

private:
    std::mt19937 engine_;
};

/// A file of many lines, of which each commit changes, adds or removes a few.
void changeSomething(TestRepository& repo, RewriteDice& dice, std::vector<std::vector<std::string>>& files)
{
    const std::size_t which = dice.below(files.size());
    std::vector<std::string>& lines = files[which];
    const std::size_t place = dice.below(lines.size());
    if (dice.chance(40))
        lines[place] += " changed";
    else if (dice.chance(70))
        lines.insert(lines.begin() + static_cast<std::ptrdiff_t>(place), "line " + std::to_string(dice.below(1000)));
    else if (lines.size() > 5)
        lines.erase(lines.begin() + static_cast<std::ptrdiff_t>(place));
    std::string text;
    for (const std::string& line : lines)
        text += line + '\n';
    repo.write("file " + std::to_string(which), text);
}

RewritePlan randomlyChanged(RewriteDice& dice, const RewritePlan& plan)
{
    const Hashes some =
        dice.chance(70) ? Hashes{dice.oneOf(plan.commits)} : Hashes{dice.oneOf(plan.commits), dice.oneOf(plan.commits)};
    switch (dice.below(6)) {
    case 0:
        return moved(plan, some, dice.oneOf(plan.commits));
    case 1:
        return movedUp(plan, some);
    case 2:
        return squashed(plan, some, dice.oneOf(plan.commits), Act::squash);
    case 3:
        return squashed(plan, some, dice.oneOf(plan.commits), Act::fixUp);
    case 4:
        return dropped(plan, {some.front()});
    default:
        return reworded(plan, some.front(), "Other words\n\nof " + some.front() + '\n');
    }
}

std::string namedIn(const std::string& message)
{
    const std::size_t place = message.find("\n\nof ") + 5;
    return message.substr(place, message.find('\n', place) - place);
}

/// Returns the list as a person would write it. A stop is passed over, as if nothing was changed there.
std::string listOf(const RewritePlan& plan)
{
    std::string list;
    for (const RewriteStep& step : plan.steps) {
        const char* const words[] = {"pick", "squash", "fixup", "drop", "pick", "pick"};
        list += std::string(words[static_cast<int>(step.act)]) + ' ' + step.commit + '\n';
        if (step.act == Act::split)
            list += "exec git reset -q HEAD~ && git add '" + step.part.files.front() + "' && git commit -q -C " +
                    step.commit + " && git commit -q --amend -m 'first half' && git add -A && " + "git commit -q -C " +
                    step.commit + " && git commit -q --amend -m 'second half'\n";
        else if (step.message)
            list +=
                "exec git commit -q --amend --allow-empty -m 'Other words' -m 'of " + namedIn(*step.message) + "'\n";
    }
    return list;
}

/// Lets git rebase by a list. Returns its exit status.
int rebaseByHand(const TestRepository& repo, const RewritePlan& plan, std::string& said)
{
    writeFile(repo / ".git/list", listOf(plan));
    int status = 0;
    said = runPlainGit(repo.path(),
                       {"-c", "sequence.editor=cp .git/list", "-c", "core.editor=true", "rebase", "-q", "-i",
                        "--empty=keep", plan.base},
                       status);
    return status;
}

std::string contentsOf(const TestRepository& repo, const std::string& range)
{
    return repo.read({"log", "--format=%T%n%an %ae %at%n%B", range});
}

TEST(RewriteProperties, InMemoryEqualsARebaseByHand)
{
    if (!can(Ability::mergesInMemory))
        GTEST_SKIP() << "this git cannot merge in memory";
    const char* const wanted = std::getenv("PLOVIK_ACTIONS");
    const int rounds = wanted ? std::atoi(wanted) : 8;
    const char* const first = std::getenv("PLOVIK_SEED");
    int clean = 0;
    int conflicting = 0;
    for (int round = 0; round < rounds; ++round) {
        const unsigned seed = first ? static_cast<unsigned>(std::atoi(first)) : static_cast<unsigned>(round) + 1;
        SCOPED_TRACE("PLOVIK_SEED=" + std::to_string(seed));
        RewriteDice dice(seed);
        TestRepository repo;
        std::vector<std::vector<std::string>> files(3);
        for (auto& lines : files) {
            for (int number = 0; number < 40; ++number)
                lines.push_back("line " + std::to_string(number));
        }
        for (int number = 0; number < 6; ++number)
            changeSomething(repo, dice, files);
        repo.write("kept", "x").commit("base");
        const std::string base = repo.head();
        Hashes commits;
        for (std::size_t number = 0, count = 3 + dice.below(6); number < count; ++number) {
            changeSomething(repo, dice, files);
            repo.git({"config", "user.name", "Author " + std::to_string(dice.below(3))});
            repo.commit("commit " + std::to_string(number) + (dice.chance(50) ? "\n\nbody\n" : "\n"));
            commits.push_back(repo.head());
        }
        RewritePlan plan = untouchedPlan("refs/heads/main", base, commits);
        for (std::size_t number = 0, count = 1 + dice.below(4); number < count; ++number)
            plan = randomlyChanged(dice, plan);
        // By hand, a squash with words of its own is not written so simply.
        for (RewriteStep& step : plan.steps) {
            if (step.act == Act::squash)
                step.message.reset();
        }
        if (dropsAll(plan))
            continue;
        const RewriteOutcome foretold = rehearsed(repo.repository(), plan);
        const bool emptiesBySquash = [&] {
            for (std::size_t index = 0; index < plan.steps.size(); ++index) {
                const bool goesIn = plan.steps[index].act == Act::squash || plan.steps[index].act == Act::fixUp;
                if (goesIn && foretold.marks[index].kind == RewriteMark::Kind::emptied)
                    return true;
            }
            return false;
        }();
        if (emptiesBySquash) // where git stops and asks
            continue;

        repo.git({"checkout", "-q", "-B", "byhand", commits.back()});
        std::string said;
        const int status = rebaseByHand(repo, plan, said);
        if (foretold.result == RewriteOutcome::Result::conflicts) {
            ++conflicting;
            ASSERT_NE(status, 0) << listOf(plan);
            std::size_t at = 0;
            while (foretold.marks[at].kind != RewriteMark::Kind::conflicts)
                ++at;
            EXPECT_EQ(repo.read({"rev-parse", "REBASE_HEAD"}), plan.steps[at].commit) << listOf(plan);
            EXPECT_EQ(repo.read({"diff", "--name-only", "--diff-filter=U"}), foretold.marks[at].paths.front());
            continue;
        }
        ++clean;
        ASSERT_EQ(status, 0) << said << listOf(plan);
        repo.git({"checkout", "-q", "main"});
        const RewriteOutcome made = prepareRewrite(repo.repository(), plan);
        applyRewrite(repo.repository(), plan, made, "plan");
        EXPECT_EQ(made.marks, foretold.marks);
        EXPECT_EQ(contentsOf(repo, base + "..main"), contentsOf(repo, base + "..byhand")) << listOf(plan);
        EXPECT_EQ(repo.read({"status", "--porcelain"}), "");

        // The road through git gives the same, too.
        repo.git({"checkout", "-q", "-B", "again", commits.back()});
        plan.branch = "refs/heads/again";
        rewriteByGit(repo.repository(), plan);
        EXPECT_EQ(contentsOf(repo, base + "..again"), contentsOf(repo, base + "..byhand")) << listOf(plan);
    }
    EXPECT_TRUE(first || clean > rounds / 4) << clean << " of " << rounds << ", " << conflicting << " in conflict";
}

RewritePlan withAct(const RewritePlan& plan, std::size_t index, Act act)
{
    const std::string& commit = plan.commits[index];
    switch (act) {
    case Act::squash:
    case Act::fixUp:
        return squashedIntoParent(plan, {commit}, act);
    case Act::drop:
        return dropped(plan, {commit});
    case Act::split:
        return split(plan, commit, {.files = {"own " + std::to_string(index)}}, "first half\n", "second half\n");
    case Act::edit:
        return stoppingAt(plan, commit);
    case Act::pick:
        break;
    }
    return reworded(plan, commit, "Other words\n\nof " + commit + '\n');
}

TEST(RewriteProperties, EveryPairOfStepsEqualsARebaseByHand)
{
    if (!can(Ability::mergesInMemory))
        GTEST_SKIP() << "this git cannot merge in memory";
    TestRepository repo;
    const std::string base = repo.write("shared", "0\n").commit("base").head();
    Hashes commits;
    for (int number = 0; number < 4; ++number) {
        repo.write("own " + std::to_string(number), "x\n").write("also " + std::to_string(number), "y\n");
        repo.git({"config", "user.name", "Author " + std::to_string(number)});
        commits.push_back(repo.commit("commit " + std::to_string(number) + "\n\nbody\n").head());
    }
    const RewritePlan untouched = untouchedPlan("refs/heads/main", base, commits);
    // The untouched step is the one that both reword: pick.
    const std::vector<Act> acts{Act::pick, Act::squash, Act::fixUp, Act::drop, Act::split, Act::edit};
    for (const Act first : acts) {
        for (const Act second : acts) {
            for (const bool isTurned : {false, true}) {
                RewritePlan plan = withAct(withAct(untouched, 1, first), 2, second);
                if (isTurned)
                    plan = movedUp(plan, {commits[1]});
                repo.git({"checkout", "-q", "-B", "byhand", commits.back()});
                std::string said;
                ASSERT_EQ(rebaseByHand(repo, plan, said), 0) << said << listOf(plan);
                const RewriteOutcome found = written(repo.repository(), plan);
                ASSERT_EQ(found.result, RewriteOutcome::Result::clean) << listOf(plan);
                EXPECT_EQ(contentsOf(repo, base + ".." + found.tip), contentsOf(repo, base + "..byhand"))
                    << listOf(plan);
            }
        }
    }
}

/// Returns up to `most` commits in a line, the oldest first, down from a tip.
Hashes lineBeneath(const TestRepository& repo, const std::string& tip, std::size_t most)
{
    Hashes line;
    std::istringstream listed(repo.read({"rev-list", "--parents", "-n", std::to_string(most), tip}));
    std::string commit;
    std::string parents;
    while (listed >> commit && std::getline(listed, parents)) {
        if (parents.find(' ', 1) != std::string::npos || parents.empty())
            break;
        line.insert(line.begin(), commit);
    }
    return line;
}

/// Changes a plan in a few places, and says so that git can do the same by its list.
RewritePlan shuffled(RewriteDice& dice, RewritePlan plan)
{
    for (std::size_t number = 0, count = 1 + dice.below(3); number < count; ++number)
        plan = randomlyChanged(dice, plan);
    for (RewriteStep& step : plan.steps) {
        if (step.act == Act::squash)
            step.message.reset();
    }
    return plan;
}

/// Returns the bytes of the commits above a base without what the moment of writing them changes: the time of the committer,
/// and by that the hashes.
std::string bytesWithoutTime(const TestRepository& repo, const std::string& base)
{
    const std::string bytes = repo.read({"rev-list", "--reverse", "--header", base + "..HEAD"});
    std::string kept;
    std::istringstream lines(bytes);
    for (std::string line; std::getline(lines, line);) {
        const std::size_t nul = line.find('\0');
        if (line.starts_with("parent ") || (nul != std::string::npos && nul == 0) || line.size() == 40)
            continue;
        kept += line.starts_with("committer ") ? line.substr(0, line.find('>') + 1) : line;
        kept += '\n';
    }
    return kept;
}

/// 14 topics of 10 to 17 commits of a repository that PLOVIK_TOPICS names; PLOVIK_SEED chooses others. It is only read.
TEST(RewriteProperties, TopicsOfARealRepositoryBecomeTheSameByteForByte)
{
    const char* const source = std::getenv("PLOVIK_TOPICS");
    if (!source || !can(Ability::mergesInMemory))
        GTEST_SKIP() << "PLOVIK_TOPICS names no repository";
    using Clock = std::chrono::steady_clock;
    const auto millisecondsSince = [](Clock::time_point start) {
        return std::chrono::duration_cast<std::chrono::milliseconds>(Clock::now() - start).count();
    };
    const char* const seed = std::getenv("PLOVIK_SEED");
    RewriteDice dice(seed ? static_cast<unsigned>(std::atoi(seed)) : 14);
    TestRepository repo;
    repo.git({"fetch", "-q", source, "HEAD:refs/heads/source"});
    Hashes tips;
    std::istringstream listed(repo.read({"rev-list", "--no-merges", "source"}));
    for (std::string tip; listed >> tip;)
        tips.push_back(tip);
    int same = 0;
    int sameStops = 0;
    for (int topic = 0; topic < 14;) {
        const std::size_t size = 10 + dice.below(8);
        const Hashes line = lineBeneath(repo, dice.oneOf(tips), size + 1);
        if (line.size() < size + 1)
            continue;
        const RewritePlan plan =
            shuffled(dice, untouchedPlan("refs/heads/topic", line.front(), {line.begin() + 1, line.end()}));
        if (isUntouched(plan) || dropsAll(plan))
            continue;
        ++topic;
        SCOPED_TRACE(listOf(plan));
        repo.git({"checkout", "-q", "-f", "-B", "topic", plan.tip()}).write(".git/list", listOf(plan));
        int status = 0;
        auto start = Clock::now();
        const std::string said = runPlainGit(repo.path(),
                                             {"-c", "sequence.editor=cp .git/list", "-c", "core.editor=true", "rebase",
                                              "-q", "-i", "--empty=keep", plan.base},
                                             status);
        const auto byGit = millisecondsSince(start);
        const std::string expected =
            status == 0 ? bytesWithoutTime(repo, plan.base) : repo.read({"rev-parse", "REBASE_HEAD"});
        if (status != 0)
            repo.git({"rebase", "--abort"});
        repo.git({"checkout", "-q", "-f", "-B", "topic", plan.tip()});
        start = Clock::now();
        const RewriteOutcome outcome = prepareRewrite(repo.repository(), plan);
        if (outcome.result == RewriteOutcome::Result::clean)
            applyRewrite(repo.repository(), plan, outcome, "topic");
        const auto inMemory = millisecondsSince(start);
        const auto stop = std::ranges::find(outcome.marks, RewriteMark::Kind::conflicts, &RewriteMark::kind);
        const bool stops = stop != outcome.marks.end();
        const std::string found = stops ? plan.steps[static_cast<std::size_t>(stop - outcome.marks.begin())].commit
                                        : bytesWithoutTime(repo, plan.base);
        EXPECT_EQ(stops, status != 0) << said;
        EXPECT_EQ(found, expected) << said;
        same += !stops && found == expected ? 1 : 0;
        sameStops += stops && found == expected ? 1 : 0;
        std::cout << "topic " << topic << ": " << size << " commits, " << (stops ? "conflicts" : "clean") << ", git "
                  << byGit << " ms, in memory " << inMemory << " ms\n";
    }
    std::cout << same << " have the same bytes, " << sameStops << " stop at the same commit\n";
    EXPECT_EQ(same + sameStops, 14);
}

} // namespace
} // namespace gitkit
