// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <coroutine>
#include <deque>
#include <memory>

namespace plovik {

/// Lets coroutines of the main thread through one at a time, in the order of their arrival, so that two of our
/// coroutines never write to a repository's index at the same time.
class Turnstile {
    struct State {
        bool taken = false;
        bool closed = false;
        std::deque<std::coroutine_handle<>> waiting;
    };

public:
    Turnstile() : state_(std::make_shared<State>()) {}
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

        bool await_ready() const noexcept { return !state_->taken; }
        void await_suspend(std::coroutine_handle<> waiting) { state_->waiting.push_back(waiting); }
        /// Throws OwnerGone when the turnstile is gone.
        Pass await_resume();

    private:
        std::shared_ptr<State> state_;
    };

    /// Awaits a turn: `const Turnstile::Pass pass = co_await turnstile.enter();`
    Turn enter() { return Turn(state_); }

private:
    std::shared_ptr<State> state_;
};

} // namespace plovik
