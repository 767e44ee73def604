// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "GitKit/records/ErrorKind.h"
#include "app/store/CommandLog.h"

#include <QString>

#include <exception>
#include <optional>

namespace plovik {

/// Why something could not be done, ready to be shown: `message` holds no secrets.
struct Failure {
    gitkit::ErrorKind kind = gitkit::ErrorKind::other;
    QString message;
    std::optional<CommandLog::Number> command = {}; ///< that failed, where there is one

    bool operator==(const Failure&) const = default;
};

/// Every failure passes through here on its way to the user, so this is where secrets are masked.
Failure failureOf(const std::exception& thrown);

} // namespace plovik
