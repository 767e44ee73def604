// What reading a repository costs beside git's own time to print it, both measured in this one run.
//
// The counter to_git is the parser's fastest time divided by git's; git writes to the null device for it. History is
// read from the repository that PLOVIK_BENCH_REPOSITORY names, or from one of 100,000 commits that is made here.

#include "GitKit/CommitGraph.h"
#include "GitKit/parsers/LogParser.h"
#include "GitKit/parsers/RefParser.h"
#include "GitKit/parsers/StatusParser.h"
#include "GitKit/runner/GitEnvironment.h"
#include "GitKit/runner/GitExecutable.h"
#include "GitKit/runner/GitRunner.h"
#include "GitKit/runner/Process.h"

#include <benchmark/benchmark.h>

#include <algorithm>
#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <optional>
#include <string>
#include <unistd.h>
#include <utility>
#include <vector>

namespace {

using namespace gitkit;
using Clock = std::chrono::steady_clock;
using Strings = std::vector<std::string>;
namespace fs = std::filesystem;

constexpr int commitCount = 100'000;
constexpr int entryCount = 100'000;
constexpr int refCount = 20'000;

double secondsSince(Clock::time_point start) { return std::chrono::duration<double>(Clock::now() - start).count(); }

/// The fastest of some rounds is the one that other programs disturbed least.
double fastest(const std::vector<double>& seconds) { return seconds.empty() ? 0 : *std::ranges::min_element(seconds); }

/// The folder that all repositories made here live in; gone at the end.
class Workshop {
public:
    Workshop()
    {
        std::string pattern = (fs::temp_directory_path() / "plovik-bench-XXXXXX").string();
        path_ = ::mkdtemp(pattern.data());
    }
    ~Workshop()
    {
        std::error_code ignored;
        fs::remove_all(path_, ignored);
    }
    Workshop(const Workshop&) = delete;
    Workshop& operator=(const Workshop&) = delete;

    fs::path makeRepository(const std::string& name, const std::string& stream) const
    {
        const fs::path path = path_ / name;
        fs::create_directories(path);
        const GitRunner git(path);
        git.run({"init", "-q", "-b", "main"});
        git.run({"fast-import", "--quiet", "--force"}, {.input = stream, .accepting = {0}, .environment = {}});
        return path;
    }

private:
    fs::path path_;
};

const Workshop& workshop()
{
    static const Workshop made;
    return made;
}

std::string commitText(const std::string& branch, int mark, const std::string& message, const Strings& parents)
{
    const std::string who = " Ada Example <ada@example.org> " + std::to_string(1'500'000'000 + 60 * mark) + " +0000\n";
    std::string text = "commit refs/heads/" + branch + "\nmark :" + std::to_string(mark) + "\nauthor" + who +
                       "committer" + who + "data " + std::to_string(message.size()) + "\n" + message + "\n";
    for (std::size_t index = 0; index < parents.size(); ++index)
        text += (index == 0 ? "from " : "merge ") + parents[index] + "\n";
    return text + "\n";
}

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

/// What git prints, and the fastest time that it takes to print it to nobody.
struct Printed {
    std::string bytes;
    double seconds = 0;
};

Printed print(const fs::path& repository, const Strings& arguments)
{
    Strings command{"-c",
                    "exec \"$0\" \"$@\" >/dev/null",
                    GitExecutable::path().string(),
                    "-c",
                    "core.quotepath=false",
                    "-c",
                    "color.ui=false"};
    command.insert(command.end(), arguments.begin(), arguments.end());
    const ProcessRequest silent{.executable = "/bin/sh",
                                .arguments = command,
                                .directory = repository,
                                .environment = gitEnvironment(applicationEnvironment(), {}, {}),
                                .input = {}};
    Printed printed{GitRunner(repository).bytes(arguments), 0};
    std::vector<double> times;
    for (int round = 0; round < 7; ++round) {
        const auto start = Clock::now();
        if (runProcess(silent).status != 0)
            throw std::runtime_error("git failed");
        times.push_back(secondsSince(start));
    }
    printed.seconds = fastest(times);
    return printed;
}

const Strings logArguments = [] {
    Strings arguments{"log", "--date-order"};
    arguments.insert(arguments.end(), LogParser::decorationArguments.begin(), LogParser::decorationArguments.end());
    arguments.insert(arguments.end(), {"-n", std::to_string(commitCount), LogParser::listFormat, "--branches",
                                       "--remotes", "--tags", "HEAD", "--"});
    return arguments;
}();

const Printed& printedLog()
{
    static const Printed printed = print(historyRepository(), logArguments);
    return printed;
}

/// Runs `work`, which returns the list that it made, and compares its time with git's. Giving the list's memory back is
/// not counted.
template <typename Work>
void compareWithGit(benchmark::State& state, double gitSeconds, const Work& work)
{
    std::vector<double> times;
    std::size_t records = 0;
    for (auto round : state) {
        const auto start = Clock::now();
        const auto list = work();
        times.push_back(secondsSince(start));
        state.SetIterationTime(times.back());
        records = list.size();
    }
    state.counters["records"] = static_cast<double>(records);
    state.counters["git_ms"] = 1000 * gitSeconds;
    state.counters["to_git"] = fastest(times) / gitSeconds;
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
