// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "GitKit/records/ErrorKind.h"
#include "app/store/CommandLog.h"

#include <QString>

#include <exception>
#include <optional>

namespace plovik {

/// Why something could not be done. `message` is ready to be shown and contains no secrets.
struct Failure {
    gitkit::ErrorKind kind = gitkit::ErrorKind::other;
    QString message;
    gitkit::Speaker speaker = gitkit::Speaker::plovik; ///< whose words the message is
    std::optional<CommandLog::Number> command = {};    ///< the command that failed, if any

    bool operator==(const Failure&) const = default;
};

/// Returns the failure that an exception describes. Every failure passes through here on its way to the user, so
/// secrets are masked here.
Failure failureOf(const std::exception& thrown);

} // namespace plovik
