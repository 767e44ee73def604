// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/await/Turnstile.h"

#include "app/await/Await.h"

#include <utility>

namespace plovik {

Turnstile::~Turnstile()
{
    state_->closed = true;
    // Closed first, because an unwinding coroutine could ask for another turn.
    while (!state_->waiting.empty()) {
        const std::coroutine_handle<> next = state_->waiting.front();
        state_->waiting.pop_front();
        next.resume();
    }
}

Turnstile::Pass Turnstile::Turn::await_resume()
{
    if (state_->closed)
        throw OwnerGone{};
    // A coroutine that waited got the place of the one that left.
    if (!hasWaited_)
        --state_->places;
    return Pass(std::move(state_));
}

Turnstile::Pass::~Pass()
{
    if (!state_)
        return;
    if (state_->closed || state_->waiting.empty()) {
        ++state_->places;
        return;
    }
    // The place goes to the resumed coroutine without becoming free, so that no other one can enter first.
    const std::coroutine_handle<> next = state_->waiting.front();
    state_->waiting.pop_front();
    next.resume();
}

} // namespace plovik
