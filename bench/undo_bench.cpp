// SPDX-License-Identifier: GPL-3.0-or-later
// What keeping a step costs before and after the action, in a working tree of 100,000 files of which 200 are changed. The
// counter to_status is its fastest time divided by that of git's own status, measured in this one run.

#include "GitKit/repository/Folders.h"
#include "GitKit/repository/GitRepository.h"
#include "GitKit/undo/TakeBack.h"
#include "GitKit/undo/UndoJournal.h"
#include "bench/GitComparison.h"

#include <fstream>

namespace {

using namespace gitkit;
using namespace gitkit::comparison;

constexpr int fileCount = 100'000;
constexpr int changedCount = 200;

std::string fileName(int number)
{
    return "module" + std::to_string(number / 1000) + "/part" + std::to_string(number / 100) + "/Source file " +
           std::to_string(number) + ".cpp";
}

void write(const fs::path& file, const std::string& bytes)
{
    fs::create_directories(file.parent_path());
    std::ofstream(file, std::ios::binary) << bytes;
}

class BusyTree {
public:
    BusyTree() : root_(workshop().makeRepository("busy", commitText("main", 1, "one", {}))), repo_(root_)
    {
        for (int number = 0; number < fileCount; ++number)
            write(root_ / fileName(number), "file " + std::to_string(number) + '\n');
        repo_.git({"add", "-A"});
        repo_.git({"-c", "user.name=a", "-c", "user.email=a", "commit", "-q", "-m", "two"});
        for (int number = 0; number < changedCount; ++number) {
            changed_.push_back(fileName(number * (fileCount / changedCount)));
            write(root_ / changed_.back(), "changed\n");
        }
        repo_.status();
    }

    const GitRepository& repo() const { return repo_; }
    const Strings& changed() const { return changed_; }

private:
    fs::path root_;
    GitRepository repo_;
    Strings changed_;
};

const BusyTree& busyTree()
{
    static const BusyTree tree;
    return tree;
}

/// What each kind of action keeps.
UndoScope scopeOf(std::int64_t kind)
{
    switch (kind) {
    case 0:
        return {.kind = "commit", .title = "commit"};
    case 1:
        return {.kind = "stage", .title = "stage", .movesIndex = true};
    case 2:
        return {.kind = "merge", .title = "merge", .movesFiles = true, .movesIndex = true};
    default:
        return {.kind = "discard", .title = "discard", .movesIndex = true, .overwrites = busyTree().changed()};
    }
}

void BM_KeepStep(benchmark::State& state)
{
    const GitRepository& repo = busyTree().repo();
    const fs::path directory = gitDirectories(repo).own;
    std::vector<double> before;
    std::vector<double> after;
    std::vector<double> status;
    for ([[maybe_unused]] auto _ : state) {
        const auto start = Clock::now();
        repo.status();
        status.push_back(secondsSince(start));
        const auto begin = Clock::now();
        UndoRecording recording(repo, directory, scopeOf(state.range(0)));
        before.push_back(secondsSince(begin));
        const auto end = Clock::now();
        recording.finish(repo);
        after.push_back(secondsSince(end));
    }
    state.SetLabel(scopeOf(state.range(0)).title);
    state.counters["before_first_ms"] = before.front() * 1000;
    state.counters["before_ms"] = fastest(before) * 1000;
    state.counters["after_ms"] = fastest(after) * 1000;
    state.counters["to_status"] = fastest(before) / fastest(status);
}
BENCHMARK(BM_KeepStep)->DenseRange(0, 3)->Unit(benchmark::kMillisecond)->UseRealTime()->Iterations(9);

} // namespace
