// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/await/Wakeup.h"

#include <QMetaObject>
#include <QObject>

#include <utility>

namespace plovik {

/// The fields are used only on the thread of the object.
struct Wakeup::State : QObject {
    bool woken = false;
    std::coroutine_handle<> waiting;
};

Wakeup::Wakeup() : state_(std::make_shared<State>()) {}

void Wakeup::wake() const
{
    const auto resume = [state = state_] {
        state->woken = true;
        if (const auto waiting = std::exchange(state->waiting, nullptr))
            waiting.resume();
    };
    QMetaObject::invokeMethod(state_.get(), resume, Qt::QueuedConnection);
}

bool Wakeup::await_ready() const noexcept { return state_->woken; }

void Wakeup::await_suspend(std::coroutine_handle<> waiting) const noexcept { state_->waiting = waiting; }

} // namespace plovik
