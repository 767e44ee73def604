// SPDX-License-Identifier: GPL-3.0-or-later
// Opening the blame of a long file: what it takes beside git's own time to print it, and how much of that the window's
// thread is held up.

#include "GitKit/repository/GitRepository.h"
#include "app/store/RepositoryStore.h"
#include "app/ui/inspector/BlameList.h"
#include "app/ui/inspector/BlameReading.h"
#include "bench/GitComparison.h"

#include <benchmark/benchmark.h>

#include <QApplication>
#include <QImage>
#include <QScrollBar>

namespace {

using namespace plovik;
using namespace gitkit::comparison;

constexpr int lineCount = 20'000;
constexpr int commitCount = 40;

std::string lines(int round)
{
    std::string text;
    for (int line = 0; line < lineCount; ++line) {
        // Each commit rewrites a line here and there, so that runs are short.
        const int written = (line * 7919 % commitCount) <= round ? line * 7919 % commitCount : 0;
        text +=
            "\tconst auto value" + std::to_string(line) + " = parser.read(input, " + std::to_string(written) + ");\n";
    }
    return text;
}

const fs::path& repository()
{
    static const fs::path path = [] {
        std::string stream;
        for (int round = 0; round < commitCount; ++round) {
            const std::string text = lines(round);
            const std::string who =
                " A U Thor <a@example.org> " + std::to_string(1'600'000'000 + round * 86'400) + " +0000\n";
            stream += "commit refs/heads/main\nauthor" + who + "committer" + who +
                      "data 5\nround\nM 100644 inline long.cpp\ndata " + std::to_string(text.size()) + "\n" + text +
                      "\n";
        }
        return workshop().makeRepository("blamed", stream);
    }();
    return path;
}

double gitSeconds()
{
    static const double seconds = print(repository(), {"blame", "--porcelain", "HEAD", "--", "long.cpp"}).seconds;
    return seconds;
}

struct Screen {
    Screen() : image(640, 1000, QImage::Format_ARGB32_Premultiplied)
    {
        list.resize(640, 1000);
        list.show();
        QApplication::processEvents();
    }

    void draw()
    {
        list.render(&image);
        benchmark::DoNotOptimize(image.constBits());
    }

    BlameList list;
    QImage image;
};

BlameReading readLongFile()
{
    static const gitkit::GitRepository git(repository());
    const BlameRequest request{{"long.cpp", "HEAD", {}, {}}, nullptr, {}};
    return blameReading(readBlame(git, request), request);
}

void report(benchmark::State& state, const std::vector<double>& times)
{
    state.counters["git_ms"] = 1000 * gitSeconds();
    state.counters["to_git"] = fastest(times) / gitSeconds();
}

/// From the request to the first picture, git's run included.
void BM_OpenBlame20000(benchmark::State& state)
{
    gitSeconds();
    Screen screen;
    std::vector<double> times;
    for ([[maybe_unused]] auto iteration : state) {
        const auto start = Clock::now();
        screen.list.setDocument(readLongFile().document, {});
        screen.draw();
        times.push_back(secondsSince(start));
        state.SetIterationTime(times.back());
    }
    report(state, times);
}
BENCHMARK(BM_OpenBlame20000)->UseManualTime()->Unit(benchmark::kMillisecond);

/// The part of it that the window's thread does, another blame of 20,000 lines standing there before.
void BM_OpenBlame20000_WindowThread(benchmark::State& state)
{
    Screen screen;
    const BlameReading readings[]{readLongFile(), readLongFile()};
    std::vector<double> times;
    std::size_t round = 0;
    for ([[maybe_unused]] auto iteration : state) {
        const auto start = Clock::now();
        screen.list.setDocument(readings[round++ % 2].document, {});
        screen.draw();
        times.push_back(secondsSince(start));
        state.SetIterationTime(times.back());
    }
    report(state, times);
}
BENCHMARK(BM_OpenBlame20000_WindowThread)->UseManualTime()->Unit(benchmark::kMillisecond);

/// Page Down held: every frame shows lines that no frame before has shown.
void BM_BlameFrame_FreshLines(benchmark::State& state)
{
    Screen screen;
    screen.list.setDocument(readLongFile().document, {});
    QScrollBar* const bar = screen.list.verticalScrollBar();
    for ([[maybe_unused]] auto iteration : state) {
        bar->setValue(bar->value() == bar->maximum() ? 0 : bar->value() + bar->pageStep());
        screen.draw();
    }
}
BENCHMARK(BM_BlameFrame_FreshLines)->Unit(benchmark::kMillisecond);

} // namespace
