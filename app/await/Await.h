// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "app/await/Outcome.h"
#include "app/await/Worker.h"

#include <QCoroTask>

#include <coroutine>
#include <functional>
#include <memory>
#include <system_error>
#include <utility>
#include <variant>

namespace plovik {

/// Thrown to unwind a coroutine whose owner is gone. It is deliberately not derived from std::exception, so that no
/// handler for failures catches it and touches the destroyed owner.
struct OwnerGone {};

/// Held by the owner of coroutines. Calls that its coroutines await use it to see whether the owner still exists.
using AliveToken = std::shared_ptr<const std::monostate>;

/// Awaits a blocking call. Resumes on the main thread with its value or its exception, or with OwnerGone when the
/// token's owner was destroyed meanwhile.
template <typename Result>
class [[nodiscard]] BlockingCall {
public:
    BlockingCall(Worker& worker, Worker::Lane lane, const AliveToken& alive, std::function<Result()> call)
        : worker_(worker), lane_(lane), alive_(alive), call_(std::move(call))
    {}

    bool await_ready() const noexcept { return false; }

    bool await_suspend(std::coroutine_handle<> waiting)
    {
        // This object must not be used after post(), which may resume and end the coroutine at once.
        const std::shared_ptr<Outcome<Result>> outcome = outcome_;
        try {
            worker_.post(
                lane_, [outcome, call = std::move(call_)] { outcome->fill(call); }, [waiting] { waiting.resume(); });
            return true;
        } catch (const std::system_error&) {
            outcome->error = std::current_exception();
            return false;
        }
    }

    Result await_resume()
    {
        if (alive_.expired())
            throw OwnerGone{};
        return outcome_->take();
    }

private:
    Worker& worker_;
    Worker::Lane lane_;
    std::weak_ptr<const std::monostate> alive_;
    std::function<Result()> call_;
    std::shared_ptr<Outcome<Result>> outcome_ = std::make_shared<Outcome<Result>>();
};

/// Starts a task that nobody awaits. Reports an exception that escapes from it on standard error, except OwnerGone and
/// Cancelled, which are no failures.
void launch(QCoro::Task<> task);

} // namespace plovik
