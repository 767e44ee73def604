// SPDX-License-Identifier: GPL-3.0-or-later
// The history list: what a frame costs, and what taking over a longer page costs.

#include "app/ui/history/HistoryList.h"
#include "app/ui/widgets/Theme.h"
#include "tests/support/Given.h"

#include <benchmark/benchmark.h>

#include <QApplication>
#include <QImage>
#include <QScrollBar>

#include <string>

namespace {

using namespace plovik;

constexpr int usualLanes = 12;
constexpr int manyLanes = 40;
constexpr int rowsOnScreen = 60;
constexpr int rowHeight = 28;

gitkit::GraphRow graphRow(int number, int lanes)
{
    gitkit::GraphRow graph;
    graph.lane = number % lanes;
    graph.top = {graph.lane};
    graph.bottom = {graph.lane};
    if (number % 3 == 0)
        graph.bottom.push_back((graph.lane + 1 + number % 5) % lanes);
    if (number % 4 == 0)
        graph.top.push_back((graph.lane + 2) % lanes);
    for (int lane = 0; lane < lanes; ++lane) {
        if (lane != graph.lane)
            graph.pass.push_back(lane);
    }
    return graph;
}

HistoryRow historyRow(int number, int lanes)
{
    static const char* const authors[] = {"Ada Lovelace", "Grace Hopper", "Barbara Liskov", "Edsger Dijkstra"};
    using Kind = gitkit::RefLabel::Kind;
    gitkit::Commit commit;
    commit.hash = std::to_string(1'000'000 + number);
    commit.hash.resize(40, 'a');
    commit.parents = {std::string(40, 'b')};
    commit.authorName = authors[number % 4];
    commit.authorEmail = "someone@example.org";
    commit.date =
        std::chrono::floor<std::chrono::seconds>(std::chrono::system_clock::now()) - std::chrono::minutes(37 * number);
    commit.subject = "Teach part " + std::to_string(number) + " of the parser to read what it could not read before";
    if (number % 6 == 0)
        commit.refs = {{Kind::localBranch, "feature/part-" + std::to_string(number), false},
                       {Kind::remoteBranch, "origin/feature/part-" + std::to_string(number), false}};
    if (number % 10 == 0)
        commit.refs.push_back({Kind::tag, "v1." + std::to_string(number), false});
    return {std::move(commit), graphRow(number, lanes)};
}

std::vector<HistoryRow> page(int size, int lanes = usualLanes)
{
    std::vector<HistoryRow> rows;
    for (int number = 0; number < size; ++number)
        rows.push_back(historyRow(number, lanes));
    return rows;
}

/// A list of 60 rows on screen, and an image to draw them into.
struct Screen {
    explicit Screen(int rows, double scale, int lanes = usualLanes)
        : image(QSize(1240, rowsOnScreen * rowHeight) * scale, QImage::Format_ARGB32_Premultiplied)
    {
        image.setDevicePixelRatio(scale);
        given(store.history().graphLanes, lanes);
        given(store.history().history, page(rows, lanes));
        list.resize(1240, rowsOnScreen * rowHeight);
        list.show();
        QApplication::processEvents();
    }

    void draw()
    {
        list.viewport()->render(&image);
        benchmark::DoNotOptimize(image.constBits());
    }

    RepositoryStore store{"/nowhere"};
    HistoryList list{store};
    QImage image;
};

void BM_HistoryFrame_SameRows(benchmark::State& state)
{
    Screen screen(10'000, static_cast<double>(state.range(0)));
    for ([[maybe_unused]] auto iteration : state)
        screen.draw();
}
BENCHMARK(BM_HistoryFrame_SameRows)->Arg(1)->Arg(2)->Unit(benchmark::kMillisecond);

/// Page Down held: every frame shows rows that no frame before has shown.
void BM_HistoryFrame_FreshRows(benchmark::State& state)
{
    Screen screen(10'000, static_cast<double>(state.range(0)));
    QScrollBar* bar = screen.list.verticalScrollBar();
    for ([[maybe_unused]] auto iteration : state) {
        bar->setValue(bar->value() == bar->maximum() ? 0 : bar->value() + rowsOnScreen * rowHeight);
        screen.draw();
    }
}
BENCHMARK(BM_HistoryFrame_FreshRows)->Arg(1)->Arg(2)->Unit(benchmark::kMillisecond);

/// The same in a busy repository.
void BM_HistoryFrame_FortyLanes(benchmark::State& state)
{
    Screen screen(10'000, static_cast<double>(state.range(0)), manyLanes);
    QScrollBar* bar = screen.list.verticalScrollBar();
    for ([[maybe_unused]] auto iteration : state) {
        bar->setValue(bar->value() == bar->maximum() ? 0 : bar->value() + rowsOnScreen * rowHeight);
        screen.draw();
    }
}
BENCHMARK(BM_HistoryFrame_FortyLanes)->Arg(1)->Arg(2)->Unit(benchmark::kMillisecond);

/// Scrolled by one row, as a wheel or a finger does.
void BM_HistoryFrame_OneRowFurther(benchmark::State& state)
{
    Screen screen(10'000, static_cast<double>(state.range(0)));
    QScrollBar* bar = screen.list.verticalScrollBar();
    for ([[maybe_unused]] auto iteration : state) {
        bar->setValue(bar->value() == bar->maximum() ? 0 : bar->value() + rowHeight);
        screen.draw();
    }
}
BENCHMARK(BM_HistoryFrame_OneRowFurther)->Arg(1)->Unit(benchmark::kMillisecond);

/// What the main thread does when 500 commits more arrive, the list's layout included.
void BM_ApplyPage(benchmark::State& state)
{
    const std::vector<HistoryRow> shorter = page(10'000);
    const std::vector<HistoryRow> longer = page(10'500);
    Screen screen(1, 1);
    for ([[maybe_unused]] auto iteration : state) {
        state.PauseTiming();
        given(screen.store.history().history, shorter);
        QApplication::processEvents();
        std::vector<HistoryRow> arrived = longer;
        state.ResumeTiming();
        given(screen.store.history().history, std::move(arrived));
        QApplication::processEvents();
    }
}
BENCHMARK(BM_ApplyPage)->Unit(benchmark::kMillisecond);

} // namespace

int main(int argc, char** argv)
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication application(argc, argv);
    Theme::apply(Theme::light(), application);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
