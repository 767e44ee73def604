// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "app/await/Worker.h"

#include <QCoroTask>

#include <coroutine>
#include <exception>
#include <functional>
#include <memory>
#include <optional>
#include <type_traits>
#include <utility>
#include <variant>

namespace plovik {

/// Unwinds a coroutine whose owner is gone. No std::exception on purpose: no handler for failures catches it, so
/// nothing between the await and launch() touches the dead owner.
struct OwnerGone {};

/// Held by an owner; what it awaits asks whether it still stands.
using AliveToken = std::shared_ptr<const std::monostate>;

/// Awaits a blocking call. Resumes on the main thread with its value or its exception, or with OwnerGone when the
/// token's owner was destroyed meanwhile.
template <typename Result>
class [[nodiscard]] BlockingCall {
public:
    BlockingCall(Worker& worker, Worker::Lane lane, const AliveToken& alive, std::function<Result()> call)
        : worker_(worker), lane_(lane), alive_(alive), outcome_(std::make_shared<Outcome>(std::move(call)))
    {}

    bool await_ready() const noexcept { return false; }

    void await_suspend(std::coroutine_handle<> waiting)
    {
        // Nothing of this object may be used once the work is posted: it may resume, and end, the coroutine at once.
        worker_.post(lane_, [outcome = outcome_] { outcome->run(); }, [waiting] { waiting.resume(); });
    }

    Result await_resume()
    {
        if (alive_.expired())
            throw OwnerGone{};
        if (outcome_->error)
            std::rethrow_exception(std::exchange(outcome_->error, nullptr));
        if constexpr (!std::is_void_v<Result>)
            return std::move(*outcome_->value);
    }

private:
    struct Outcome {
        explicit Outcome(std::function<Result()> function) : call(std::move(function)) {}

        void run()
        {
            try {
                if constexpr (std::is_void_v<Result>)
                    call();
                else
                    value.emplace(call());
            } catch (...) {
                error = std::current_exception();
            }
            call = nullptr;
        }

        std::function<Result()> call;
        std::optional<std::conditional_t<std::is_void_v<Result>, std::monostate, Result>> value;
        std::exception_ptr error;
    };

    Worker& worker_;
    Worker::Lane lane_;
    std::weak_ptr<const std::monostate> alive_;
    std::shared_ptr<Outcome> outcome_;
};

/// Starts a task that nobody awaits. What escapes from it is reported on standard error; an owner that is gone is no
/// failure.
void launch(QCoro::Task<> task);

} // namespace plovik
