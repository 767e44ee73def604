// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "app/await/Worker.h"

#include <QCoreApplication>
#include <QString>

#include <memory>

namespace plovik {

class GitAccess;
class Snapshot;
class WindowState;

/// Says in a notice what a status waits for that takes long, until it has been read. Owned by the store; main thread.
class SlowStatus {
    Q_DECLARE_TR_FUNCTIONS(plovik::SlowStatus)

public:
    SlowStatus(const GitAccess& git, WindowState& window, Snapshot& snapshot);
    SlowStatus(const SlowStatus&) = delete;
    SlowStatus& operator=(const SlowStatus&) = delete;

private:
    void ended();

    WindowState& window_;
    std::unique_ptr<Worker::Delay> untilSaid_;
    QString said_; ///< empty while nothing was said
};

} // namespace plovik
