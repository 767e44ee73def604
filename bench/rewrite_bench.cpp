// SPDX-License-Identifier: GPL-3.0-or-later
// What a plan of 50 commits costs in a repository of 100,000 files: to find out what becomes of it, and to write it.

#include "GitKit/records/RewritePlan.h"
#include "GitKit/repository/GitRepository.h"
#include "GitKit/rewrite/MovableReading.h"
#include "GitKit/rewrite/Rehearsal.h"
#include "GitKit/rewrite/Rewriting.h"
#include "bench/GitComparison.h"

namespace {

using namespace gitkit;
using namespace gitkit::comparison;

constexpr int rewriteFiles = 100'000;
constexpr int rewriteCommits = 50;

std::string streamedFile(int number, const std::string& text)
{
    return "M 100644 inline module" + std::to_string(number / 1000) + "/part" + std::to_string(number / 100) + "/file" +
           std::to_string(number) + "\ndata " + std::to_string(text.size()) + '\n' + text + '\n';
}

std::string streamedCommit(int number, const std::string& files)
{
    return "commit refs/heads/main\ncommitter c <c@x> " + std::to_string(1'500'000'000 + number) +
           " +0000\ndata 2\nx\n" + files + '\n';
}

/// Every commit changes two files, so the newest can go beneath the oldest.
const GitRepository& longBranch()
{
    static const GitRepository repo = [] {
        std::string files;
        for (int number = 0; number < rewriteFiles; ++number)
            files += streamedFile(number, "file " + std::to_string(number) + '\n');
        std::string stream = streamedCommit(0, files);
        for (int number = 1; number <= rewriteCommits; ++number)
            stream +=
                streamedCommit(number, streamedFile(number * 1900, "changed\n") + streamedFile(number * 7, "too\n"));
        const fs::path root = workshop().makeRepository("plan", stream);
        const GitRunner git(root);
        git.run({"config", "user.name", "c"});
        git.run({"config", "user.email", "c@x"});
        git.run({"reset", "-q", "--hard"});
        return GitRepository(root);
    }();
    return repo;
}

RewritePlan turnedRound()
{
    const MovableCommits found = movableCommits(longBranch(), {.limit = rewriteCommits});
    Hashes hashes;
    for (const MovableCommit& commit : found.commits)
        hashes.push_back(commit.hash);
    return moved(untouchedPlan(found.branch, found.base, hashes), {hashes.back()}, {});
}

void BM_ReadMovableCommits(benchmark::State& state)
{
    longBranch();
    for ([[maybe_unused]] auto _ : state)
        benchmark::DoNotOptimize(movableCommits(longBranch(), {.limit = rewriteCommits}));
}
BENCHMARK(BM_ReadMovableCommits)->Unit(benchmark::kMillisecond)->UseRealTime()->Iterations(9);

void BM_RehearsePlan(benchmark::State& state)
{
    const RewritePlan plan = turnedRound();
    for ([[maybe_unused]] auto _ : state) {
        if (rehearsed(longBranch(), plan).result != RewriteOutcome::Result::clean)
            state.SkipWithError("the plan conflicts");
    }
}
BENCHMARK(BM_RehearsePlan)->Unit(benchmark::kMillisecond)->UseRealTime()->Iterations(5);

/// What the rows show first, while the rest is found out.
void BM_RehearseFirstSteps(benchmark::State& state)
{
    const RewritePlan first = firstSteps(turnedRound(), 4);
    for ([[maybe_unused]] auto _ : state) {
        if (rehearsed(longBranch(), first).marks.size() != 4)
            state.SkipWithError("other steps");
    }
}
BENCHMARK(BM_RehearseFirstSteps)->Unit(benchmark::kMillisecond)->UseRealTime()->Iterations(9);

void BM_ApplyPlan(benchmark::State& state)
{
    for ([[maybe_unused]] auto _ : state) {
        state.PauseTiming();
        const RewritePlan plan = turnedRound();
        state.ResumeTiming();
        applyRewrite(longBranch(), plan, prepareRewrite(longBranch(), plan), "plan");
    }
}
BENCHMARK(BM_ApplyPlan)->Unit(benchmark::kMillisecond)->UseRealTime()->Iterations(5);

} // namespace
