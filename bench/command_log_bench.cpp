// SPDX-License-Identifier: GPL-3.0-or-later
// The command log while a hook prints a lot, and the alert that tells of it: how long the window's thread is held.

#include "GitKit/runner/RunContext.h"
#include "app/store/RepositoryStore.h"
#include "app/ui/dialogs/ErrorAlert.h"
#include "app/ui/log/CommandLogPanel.h"

#include <benchmark/benchmark.h>

#include <QApplication>
#include <QImage>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <string>
#include <thread>

namespace {

using namespace plovik;
using Clock = std::chrono::steady_clock;

constexpr int lines = 100'000;

std::string line(int number) { return "hook: checked file number " + std::to_string(number) + " and found nothing\n"; }

/// One thread prints, as git's does, a line at a time for about two seconds; this one shows.
void BM_HookOutput100000(benchmark::State& state)
{
    RepositoryStore store{"/nonexistent"};
    const std::shared_ptr<gitkit::RunListener> log = store.changes().commandLog().listener();
    for (CommandLog::Number number = 1; number < 1000; ++number) {
        log->began(number, {"log", "--date-order", "--format=%H", std::to_string(number)}, "/nonexistent");
        log->ended(number, {});
    }
    CommandLogPanel panel{store};
    panel.resize(1200, 300);
    panel.show();
    QApplication::processEvents();
    CommandLog::Number number = 1000;
    double worst = 0;
    double busy = 0;
    for ([[maybe_unused]] auto iteration : state) {
        log->began(++number, {"push"}, "/nonexistent");
        store.window().showCommand(number);
        std::atomic<bool> isDone = false;
        std::thread hook([&] {
            for (int printed = 0; printed < lines; ++printed) {
                log->printed(number, gitkit::RunListener::Stream::error, line(printed));
                if (printed % 50 == 49)
                    std::this_thread::sleep_for(std::chrono::milliseconds(1));
            }
            log->ended(number, {});
            isDone = true;
        });
        while (!isDone) {
            const auto began = Clock::now();
            QApplication::processEvents();
            const double took = std::chrono::duration<double, std::milli>(Clock::now() - began).count();
            worst = std::max(worst, took);
            busy += took;
            std::this_thread::sleep_for(std::chrono::milliseconds(1));
        }
        hook.join();
    }
    state.counters["longestPauseMs"] = worst;
    state.counters["windowThreadMs"] = busy / static_cast<double>(state.iterations());
}
BENCHMARK(BM_HookOutput100000)->Unit(benchmark::kMillisecond)->UseRealTime()->Iterations(3);

void BM_ErrorAlert100000(benchmark::State& state)
{
    QString text;
    for (int number = 0; number < lines; ++number)
        text += QString::fromStdString(line(number));
    for ([[maybe_unused]] auto iteration : state) {
        ErrorAlert alert{{.message = text}, {}, nullptr};
        alert.setAttribute(Qt::WA_DeleteOnClose, false);
        QImage image(alert.size(), QImage::Format_RGB32);
        alert.render(&image);
    }
}
BENCHMARK(BM_ErrorAlert100000)->Unit(benchmark::kMillisecond);

} // namespace
