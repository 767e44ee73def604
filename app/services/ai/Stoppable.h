// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "app/services/ai/CommitMessageAI.h"
#include "app/services/ai/Wakeup.h"

#include <QCoroTask>
#include <QThreadPool>

#include <exception>
#include <functional>
#include <memory>
#include <optional>
#include <stop_token>
#include <utility>

namespace plovik {

/// Waiting that a stop token ends: each throws CommitMessageAI::Cancelled soon after `stop` was requested, while what
/// was waited for comes to its end unheard. Main thread.

inline QCoro::Task<> wakeOrStop(Wakeup wakeup, std::stop_token stop)
{
    {
        const std::stop_callback onStop(stop, [wakeup] { wakeup.wake(); });
        co_await wakeup;
    }
    if (stop.stop_requested())
        throw CommitMessageAI::Cancelled();
}

/// Where work leaves its value or its exception.
template <typename Result>
struct Outcome {
    std::optional<Result> value;
    std::exception_ptr error;
    Wakeup done;

    Result take()
    {
        if (error)
            std::rethrow_exception(std::exchange(error, nullptr));
        return std::move(*value);
    }
};

/// The result of `work`, done on a thread of the pool.
template <typename Result>
QCoro::Task<Result> inBackground(std::function<Result()> work, std::stop_token stop)
{
    const auto outcome = std::make_shared<Outcome<Result>>();
    QThreadPool::globalInstance()->start([outcome, work = std::move(work)] {
        try {
            outcome->value.emplace(work());
        } catch (...) {
            outcome->error = std::current_exception();
        }
        outcome->done.wake();
    });
    co_await wakeOrStop(outcome->done, std::move(stop));
    co_return outcome->take();
}

template <typename Result>
QCoro::Task<> follow(std::function<QCoro::Task<Result>()> start, std::shared_ptr<Outcome<Result>> outcome)
{
    try {
        outcome->value.emplace(co_await start());
    } catch (...) {
        outcome->error = std::current_exception();
    }
    outcome->done.wake();
}

/// The result of the task that `start` makes. `start` is kept for as long as the task runs.
template <typename Result>
QCoro::Task<Result> unlessStopped(std::function<QCoro::Task<Result>()> start, std::stop_token stop)
{
    const auto outcome = std::make_shared<Outcome<Result>>();
    follow(std::move(start), outcome);
    co_await wakeOrStop(outcome->done, std::move(stop));
    co_return outcome->take();
}

} // namespace plovik
