// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QCoreApplication>
#include <QTimer>

#include <chrono>

namespace plovik::test {

/// Runs the event loop, asleep between events, until `done()` holds; false when it still does not after `deadline`.
template <typename Condition>
bool waitUntil(Condition done, std::chrono::milliseconds deadline = std::chrono::seconds(10))
{
    QTimer timer;
    timer.setSingleShot(true);
    timer.start(deadline);
    while (!done()) {
        if (!timer.isActive())
            return false;
        QCoreApplication::processEvents(QEventLoop::AllEvents | QEventLoop::WaitForMoreEvents);
    }
    return true;
}

} // namespace plovik::test
