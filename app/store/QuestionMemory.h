// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

#include <functional>

namespace plovik {

/// Remembers which questions the user does not want to be asked again. Its functions may be empty; main thread.
struct QuestionMemory {
    std::function<bool(const QString& key)> isSettled = {};
    std::function<void(const QString& key)> settle = {};
};

} // namespace plovik
