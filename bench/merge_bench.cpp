// SPDX-License-Identifier: GPL-3.0-or-later
// What taking a merge apart costs beside the time in which git merges the same file.

#include "GitKit/MergeSegments.h"
#include "bench/GitComparison.h"

#include <fstream>

namespace {

using namespace gitkit;
using namespace gitkit::comparison;

/// A file of 20,000 lines in which one side has changed every `every`th line.
std::string side(const char* name, int every, int offset)
{
    std::string text;
    for (int number = 0; number < 20'000; ++number)
        text += "    const auto value" + std::to_string(number) + " = compute(" +
                (number % every == offset ? name : "old") + ");\n";
    return text;
}

/// 500 conflicts, and as many clean changes of each side.
MergeInput input()
{
    const auto changed = [](const char* name, int offset) {
        std::string text;
        const std::string both = side(name, 40, 0);
        const std::string own = side(name, 40, offset);
        MergeText first(both), second(own), base(side("", 40, -1));
        for (std::size_t line = 0; line < base.lineCount(); ++line)
            text += line % 40 == 0 ? first.line(line) : second.line(line);
        return text;
    };
    return {.base = side("", 40, -1), .left = changed("left", 15), .right = changed("right", 25)};
}

void takeMergeApart(benchmark::State& state)
{
    static const MergeInput sides = input();
    static const double merging = [] {
        const fs::path folder = workshop().makeRepository("merge", commitText("main", 1, "one", {}));
        std::ofstream(folder / "base") << *sides.base;
        std::ofstream(folder / "left") << sides.left;
        std::ofstream(folder / "right") << sides.right;
        const GitRunner git(folder);
        std::vector<double> seconds;
        for (int round = 0; round < 5; ++round) {
            const Clock::time_point start = Clock::now();
            git.output({"merge-file", "-p", "--diff3", "left", "base", "right"});
            seconds.push_back(secondsSince(start));
        }
        return fastest(seconds);
    }();
    if (mergedSides({}, sides).conflictCount() != 500)
        state.SkipWithError("not as many conflicts as there should be");
    compareWithGit(state, merging, [&] { return mergedSides({}, sides).segments; });
}

BENCHMARK(takeMergeApart)->UseManualTime()->Unit(benchmark::kMillisecond);

} // namespace
