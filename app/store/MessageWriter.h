// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "GitKit/records/StagedChanges.h"

#include <QCoroTask>
#include <QString>

#include <functional>
#include <stop_token>

namespace plovik {

/// What is sent to the service that writes a commit message, without the key, to be shown to the user.
struct MessageRequest {
    QString service = {}; ///< its displayed name
    QString address = {};
    QString model = {};
    QString prompt = {};
    QString changes = {};
    bool operator==(const MessageRequest&) const = default;
};

/// Writes commit messages for staged changes. Both functions are called on the main thread, and throw std::exception
/// with a text for the user.
struct MessageWriter {
    using Changes = gitkit::StagedChanges;

    /// Returns the message. Ends soon after a stop is requested, with any exception.
    std::function<QCoro::Task<QString>(Changes changes, std::stop_token stop)> write;
    /// Returns what `write` would send.
    std::function<MessageRequest(const Changes& changes)> describe;
};

} // namespace plovik
