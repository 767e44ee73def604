// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <coroutine>
#include <memory>

class QObject;

namespace plovik {

/// Lets one coroutine wait for wake(). The coroutine resumes from the event loop of the thread that made this object,
/// never inside wake(). Copies share one state. Must be made and awaited on the same thread; wake() may be called on
/// any thread and more than once.
class Wakeup {
public:
    Wakeup();

    void wake() const;

    bool await_ready() const noexcept;
    void await_suspend(std::coroutine_handle<> waiting) const noexcept;
    void await_resume() const noexcept {}

private:
    struct State;
    std::shared_ptr<State> state_;
};

} // namespace plovik
