// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "app/await/Outcome.h"
#include "app/await/Wakeup.h"
#include "app/await/Worker.h"

#include <QCoroTask>

#include <exception>
#include <functional>
#include <memory>
#include <stop_token>
#include <utility>

namespace plovik {

/// Thrown to unwind a coroutine after a stop was requested. It means that nobody wants the result; it is no failure.
class Cancelled : public std::exception {
public:
    const char* what() const noexcept override { return "cancelled"; }
};

/// Each function below throws Cancelled soon after a stop is requested. Work that has begun goes on, and its result is
/// dropped. Main thread.

QCoro::Task<> wakeOrStop(Wakeup wakeup, std::stop_token stop);

/// Returns the result of `work`, which runs on a thread of the application's pool and may block.
template <typename Result>
QCoro::Task<Result> inBackground(std::function<Result()> work, std::stop_token stop)
{
    const auto outcome = std::make_shared<Outcome<Result>>();
    const Wakeup done;
    Worker::pool().post(
        Worker::Lane::network, [outcome, work = std::move(work)] { outcome->fill(work); }, [done] { done.wake(); });
    co_await wakeOrStop(done, std::move(stop));
    co_return outcome->take();
}

template <typename Result>
QCoro::Task<> follow(std::function<QCoro::Task<Result>()> start, std::shared_ptr<Outcome<Result>> outcome, Wakeup done)
{
    try {
        outcome->value.emplace(co_await start());
    } catch (...) {
        outcome->error = std::current_exception();
    }
    done.wake();
}

/// Returns the result of the task that `start` makes. `start` is kept while the task runs.
template <typename Result>
QCoro::Task<Result> unlessStopped(std::function<QCoro::Task<Result>()> start, std::stop_token stop)
{
    const auto outcome = std::make_shared<Outcome<Result>>();
    const Wakeup done;
    follow(std::move(start), outcome, done);
    co_await wakeOrStop(done, std::move(stop));
    co_return outcome->take();
}

} // namespace plovik
