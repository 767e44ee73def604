// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "bench/window/OpenWindow.h"

#include <QApplication>

#include <algorithm>
#include <utility>

namespace plovik {

/// An application that notes how long it deals with one event and hears no other. Queued calls and timers are events, too.
class ListeningApplication : public QApplication {
public:
    using QApplication::QApplication;

    struct Longest {
        double elapsed = 0; ///< milliseconds by the clock
        double used = 0;    ///< milliseconds of a processor; other programs do not count
    };
    /// Returns the longest times since this was asked last. They may be of two events.
    static Longest takeLongest()
    {
        return std::exchange(static_cast<ListeningApplication&>(*QCoreApplication::instance()).longest_, {});
    }

    bool notify(QObject* receiver, QEvent* event) override
    {
        if (depth_ > 0)
            return QApplication::notify(receiver, event);
        ++depth_;
        const auto start = Clock::now();
        const double before = usedMilliseconds();
        const bool result = QApplication::notify(receiver, event);
        longest_.elapsed = std::max(longest_.elapsed, millisecondsSince(start));
        longest_.used = std::max(longest_.used, usedMilliseconds() - before);
        --depth_;
        return result;
    }

private:
    Longest longest_;
    int depth_ = 0;
};

} // namespace plovik
