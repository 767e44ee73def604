// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/await/Stop.h"

namespace plovik {

QCoro::Task<> wakeOrStop(Wakeup wakeup, std::stop_token stop)
{
    {
        const std::stop_callback onStop(stop, [wakeup] { wakeup.wake(); });
        co_await wakeup;
    }
    if (stop.stop_requested())
        throw Cancelled();
}

} // namespace plovik
