// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <coroutine>
#include <deque>
#include <memory>

namespace plovik {

/// Lets coroutines of the main thread through in the order of their arrival, so many at a time as it has places: one, so
/// that two of our coroutines never write to a repository's index at the same time, or a few, so that walks of the
/// history do not take all processors.
class Turnstile {
    struct State {
        int places = 1;
        bool closed = false;
        std::deque<std::coroutine_handle<>> waiting;
    };

public:
    explicit Turnstile(int places = 1) : state_(std::make_shared<State>()) { state_->places = places; }
    /// Unwinds the coroutines that still wait with OwnerGone.
    ~Turnstile();
    Turnstile(const Turnstile&) = delete;
    Turnstile& operator=(const Turnstile&) = delete;

    /// Lets the next coroutine through when it is destroyed. May outlive the turnstile.
    class Pass {
    public:
        explicit Pass(std::shared_ptr<State> state) : state_(std::move(state)) {}
        Pass(Pass&&) = default;
        Pass& operator=(Pass&&) = delete;
        ~Pass();

    private:
        std::shared_ptr<State> state_;
    };

    class [[nodiscard]] Turn {
    public:
        explicit Turn(std::shared_ptr<State> state) : state_(std::move(state)) {}

        bool await_ready() const noexcept { return state_->places > 0; }
        void await_suspend(std::coroutine_handle<> waiting)
        {
            hasWaited_ = true;
            state_->waiting.push_back(waiting);
        }
        /// Throws OwnerGone when the turnstile is gone.
        Pass await_resume();

    private:
        std::shared_ptr<State> state_;
        bool hasWaited_ = false;
    };

    /// Awaits a turn: `const Turnstile::Pass pass = co_await turnstile.enter();`
    Turn enter() { return Turn(state_); }

private:
    std::shared_ptr<State> state_;
};

} // namespace plovik
