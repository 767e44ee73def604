// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// Compares what reading costs with what git itself takes to print, both measured in one run.

#include "GitKit/runner/GitEnvironment.h"
#include "GitKit/runner/GitExecutable.h"
#include "GitKit/runner/GitRunner.h"
#include "GitKit/runner/Process.h"

#include <benchmark/benchmark.h>

#include <algorithm>
#include <chrono>
#include <filesystem>
#include <string>
#include <unistd.h>
#include <vector>

namespace gitkit::comparison {

using Clock = std::chrono::steady_clock;
using Strings = std::vector<std::string>;
namespace fs = std::filesystem;

inline double secondsSince(Clock::time_point start)
{
    return std::chrono::duration<double>(Clock::now() - start).count();
}

/// The fastest of some rounds is the one that other programs disturbed least.
inline double fastest(const std::vector<double>& seconds)
{
    return seconds.empty() ? 0 : *std::ranges::min_element(seconds);
}

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

inline const Workshop& workshop()
{
    static const Workshop made;
    return made;
}

inline std::string commitText(const std::string& branch, int mark, const std::string& message, const Strings& parents)
{
    const std::string who = " Ada Example <ada@example.org> " + std::to_string(1'500'000'000 + 60 * mark) + " +0000\n";
    std::string text = "commit refs/heads/" + branch + "\nmark :" + std::to_string(mark) + "\nauthor" + who +
                       "committer" + who + "data " + std::to_string(message.size()) + "\n" + message + "\n";
    for (std::size_t index = 0; index < parents.size(); ++index)
        text += (index == 0 ? "from " : "merge ") + parents[index] + "\n";
    return text + "\n";
}

/// What git prints, and the fastest time that it takes to print it to nobody.
struct Printed {
    std::string bytes;
    double seconds = 0;
};

inline Printed print(const fs::path& repository, const Strings& arguments)
{
    Strings command{"-c",
                    "exec \"$0\" \"$@\" >/dev/null",
                    GitExecutable::path().string(),
                    "-c",
                    "core.quotepath=false",
                    "-c",
                    "color.ui=false"};
    command.insert(command.end(), arguments.begin(), arguments.end());
    const std::vector<std::string> own = applicationEnvironment();
    const ProcessRequest silent{.executable = "/bin/sh",
                                .arguments = command,
                                .directory = repository,
                                .environment =
                                    gitEnvironment(std::vector<std::string_view>(own.begin(), own.end()), {}, {}),
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

} // namespace gitkit::comparison
