// SPDX-License-Identifier: GPL-3.0-or-later
// What reading a repository costs beside git's own time to print it, both measured in this one run.
//
// The counter to_git is the parser's fastest time divided by git's; git writes to the null device for it. History is
// read from the repository that PLOVIK_BENCH_REPOSITORY names, or from one of 100,000 commits that is made here.

#include "GitKit/CommitGraph.h"
#include "GitKit/parsers/LogParser.h"
#include "GitKit/parsers/RefParser.h"
#include "GitKit/parsers/StatusParser.h"
#include "bench/GitComparison.h"

#include <cstdlib>
#include <fstream>
#include <utility>

namespace {

using namespace gitkit;
using namespace gitkit::comparison;

constexpr int commitCount = 100'000;
constexpr int entryCount = 100'000;
constexpr int refCount = 20'000;

/// Eight branches side by side that merge into the first now and then.
fs::path makeHistory()
{
    std::string stream;
    std::vector<int> tips(8, 0);
    for (int mark = 1; mark <= commitCount; ++mark) {
        const std::size_t lane = static_cast<std::size_t>(mark * 7 / 3) % tips.size();
        Strings parents;
        if (tips[lane] != 0 || tips[0] != 0)
            parents.push_back(":" + std::to_string(tips[lane] != 0 ? tips[lane] : tips[0]));
        if (lane == 0 && mark % 5 == 0) {
            const std::size_t other = 1 + static_cast<std::size_t>(mark) % 7;
            if (tips[other] != 0)
                parents.push_back(":" + std::to_string(tips[other]));
        }
        stream += commitText(lane == 0 ? "main" : "branch" + std::to_string(lane), mark,
                             "Change number " + std::to_string(mark) + " of the cache's reading order", parents);
        tips[lane] = mark;
    }
    return workshop().makeRepository("history", stream);
}

const fs::path& historyRepository()
{
    static const fs::path path = [] {
        const char* given = std::getenv("PLOVIK_BENCH_REPOSITORY");
        return given != nullptr && *given != '\0' ? fs::path(given) : makeHistory();
    }();
    return path;
}

std::string fileName(int number)
{
    return "module" + std::to_string(number / 1000) + "/part" + std::to_string(number / 100) + "/Source file " +
           std::to_string(number) + ".cpp";
}

/// Half the entries are changed files, half new ones.
const fs::path& statusRepository()
{
    static const fs::path path = [] {
        std::string stream = commitText("main", 1, "one", {});
        stream.pop_back();
        for (int number = 0; number < entryCount; number += 2)
            stream += "M 100644 inline \"" + fileName(number) + "\"\ndata 2\nx\n\n";
        const fs::path made = workshop().makeRepository("status", stream + "\n");
        for (int number = 0; number < entryCount; ++number) {
            const fs::path file = made / fileName(number);
            if (number % 100 == 0)
                fs::create_directories(file.parent_path());
            std::ofstream(file) << number;
        }
        GitRunner(made).run({"read-tree", "HEAD"});
        return made;
    }();
    return path;
}

const fs::path& refRepository()
{
    static const fs::path path = [] {
        std::string stream = commitText("main", 1, "one", {});
        for (int number = 1; number < refCount; ++number) {
            const char* group = number % 3 == 0   ? "tags/release-"
                                : number % 3 == 1 ? "heads/topic/"
                                                  : "remotes/origin/topic/";
            stream += "reset refs/" + std::string(group) + std::to_string(number) + "\nfrom :1\n\n";
        }
        const fs::path made = workshop().makeRepository("refs", stream);
        GitRunner(made).run({"pack-refs", "--all"});
        return made;
    }();
    return path;
}

const Strings logArguments = [] {
    Strings arguments{"log", "--date-order"};
    arguments.insert(arguments.end(), LogParser::decorationArguments.begin(), LogParser::decorationArguments.end());
    arguments.insert(arguments.end(), {"-z", "-n", std::to_string(commitCount), LogParser::listFormat, "--branches",
                                       "--remotes", "--tags", "HEAD", "--"});
    return arguments;
}();

const Printed& printedLog()
{
    static const Printed printed = print(historyRepository(), logArguments);
    return printed;
}

void parseLog(benchmark::State& state)
{
    const Printed& printed = printedLog();
    compareWithGit(state, printed.seconds, [&] { return LogParser::parse(printed.bytes); });
}

void layOutGraph(benchmark::State& state)
{
    const Printed& printed = printedLog();
    const auto commits = LogParser::parse(printed.bytes);
    int lanes = 0;
    compareWithGit(state, printed.seconds, [&] {
        auto graph = CommitGraph::layout(commits);
        lanes = graph.laneCount;
        return std::move(graph.rows);
    });
    state.counters["lanes"] = lanes;
}

void parseStatus(benchmark::State& state)
{
    static const Printed printed =
        print(statusRepository(), {StatusParser::arguments.begin(), StatusParser::arguments.end()});
    compareWithGit(state, printed.seconds, [&] { return StatusParser::parse(printed.bytes).files; });
}

void parseRefs(benchmark::State& state)
{
    static const Printed printed =
        print(refRepository(), {"for-each-ref", RefParser::format, "refs/heads", "refs/remotes", "refs/tags"});
    compareWithGit(state, printed.seconds, [&] { return RefParser::parse(printed.bytes); });
}

/// 20,000 commits on as many branches as the argument says, side by side all the way down.
void layOutLanes(benchmark::State& state)
{
    const auto lanes = static_cast<std::size_t>(state.range(0));
    const auto name = [](std::size_t index) {
        const std::string digits = std::to_string(index);
        return std::string(40 - digits.size(), '0') + digits;
    };
    std::vector<Commit> commits(20'000);
    for (std::size_t index = 0; index < commits.size(); ++index) {
        commits[index].hash = name(index);
        commits[index].parents = {name(index + lanes)};
    }
    for (auto round : state)
        benchmark::DoNotOptimize(CommitGraph::layout(commits));
    state.SetComplexityN(state.range(0));
}

BENCHMARK(parseLog)->UseManualTime()->Unit(benchmark::kMillisecond);
BENCHMARK(layOutGraph)->UseManualTime()->Unit(benchmark::kMillisecond);
BENCHMARK(parseStatus)->UseManualTime()->Unit(benchmark::kMillisecond);
BENCHMARK(parseRefs)->UseManualTime()->Unit(benchmark::kMillisecond);
BENCHMARK(layOutLanes)->RangeMultiplier(4)->Range(1, 1024)->Unit(benchmark::kMillisecond)->Complexity(benchmark::oN);

} // namespace

BENCHMARK_MAIN();
