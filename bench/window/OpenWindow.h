// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "GitKit/runner/GitEnvironment.h"
#include "GitKit/runner/GitExecutable.h"
#include "GitKit/runner/Process.h"
#include "app/await/PoolWorker.h"
#include "app/ui/window/RepositoryView.h"

#include <QCoreApplication>
#include <QTimer>

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <filesystem>
#include <functional>
#include <string>
#include <vector>

/// What the benchmarks that measure from inside the window share.
namespace plovik {

using Clock = std::chrono::steady_clock;
using Strings = std::vector<std::string>;

inline double millisecondsSince(Clock::time_point start)
{
    return std::chrono::duration<double, std::milli>(Clock::now() - start).count();
}

/// What this thread has used of a processor; other programs do not count.
inline double usedMilliseconds()
{
    timespec used{};
    ::clock_gettime(CLOCK_THREAD_CPUTIME_ID, &used);
    return 1e3 * static_cast<double>(used.tv_sec) + 1e-6 * static_cast<double>(used.tv_nsec);
}

inline void row(const char* what, double milliseconds, const std::string& limit = {})
{
    std::printf("  %-58s%9.2f ms  %s\n", what, milliseconds, limit.c_str());
    std::fflush(stdout);
}

/// A pool that counts what it is given.
class CountingWorker : public PoolWorker {
public:
    void post(Lane lane, std::function<void()> job, std::function<void()> done) override
    {
        ++posted;
        ++underWay;
        walking += lane == Lane::longRead ? 1 : 0;
        PoolWorker::post(lane, std::move(job), [this, lane, done = std::move(done)] {
            --underWay;
            walking -= lane == Lane::longRead ? 1 : 0;
            done();
        });
    }
    int posted = 0;
    int underWay = 0;
    int walking = 0; ///< those of them that walk the history
};

/// Runs git as the application does, and takes what it prints.
inline void runGit(const std::filesystem::path& repository, const Strings& arguments, const std::string& input = {})
{
    const Strings own = gitkit::applicationEnvironment();
    gitkit::ProcessRequest request{
        .executable = gitkit::GitExecutable::path(),
        .arguments = arguments,
        .directory = repository,
        .environment = gitkit::gitEnvironment(std::vector<std::string_view>(own.begin(), own.end()), {}, {}),
        .input = {}};
    if (!input.empty())
        request.input = input;
    if (gitkit::runProcess(request).status != 0) {
        std::fprintf(stderr, "git %s failed\n", arguments.front().c_str());
        std::exit(1);
    }
}

/// A window's content over a repository. It reads nothing before it is asked to.
class OpenWindow : public QObject {
public:
    explicit OpenWindow(const std::filesystem::path& repository) : store(repository, worker), view(store)
    {
        view.resize(1240, 780);
        view.show();
    }

    template <typename Widget>
    Widget* named(const QString& name)
    {
        for (Widget* widget : view.findChildren<Widget*>()) {
            if (widget->accessibleName() == name && widget->isVisible())
                return widget;
        }
        std::fprintf(stderr, "There is no %s\n", qPrintable(name));
        std::exit(1);
    }

    template <typename Condition>
    static void spinUntil(const Condition& isTrue)
    {
        // Waits as the application does, and leaves the processors to git; the timer asks now and then.
        QTimer clock;
        clock.setTimerType(Qt::PreciseTimer);
        clock.start(1);
        const auto start = Clock::now();
        while (!isTrue()) {
            QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
            if (millisecondsSince(start) > 60'000) {
                std::fprintf(stderr, "nothing happened for a minute\n");
                std::exit(1);
            }
        }
    }

    /// Until nothing has been asked of git for a while.
    void settle()
    {
        int before = -1;
        auto since = Clock::now();
        spinUntil([&] {
            if (worker.posted != before || worker.underWay > 0) {
                before = worker.posted;
                since = Clock::now();
            }
            return millisecondsSince(since) > 400;
        });
    }

    CountingWorker worker;
    RepositoryStore store;
    RepositoryView view;
};

} // namespace plovik
