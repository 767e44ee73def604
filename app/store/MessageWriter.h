// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "GitKit/records/StagedChanges.h"

#include <QCoroTask>
#include <QString>

#include <functional>
#include <stop_token>

namespace plovik {

/// What is sent to the service that writes a commit message, without the key, for showing.
struct MessageRequest {
    QString service = {}; ///< its name for people
    QString address = {};
    QString model = {};
    QString prompt = {};
    QString changes = {};
    bool operator==(const MessageRequest&) const = default;
};

/// Writes commit messages for staged changes. Called on the main thread; both report failures as exceptions whose text
/// is for the user.
struct MessageWriter {
    using Changes = gitkit::StagedChanges;

    /// Ends soon once it is asked to stop, by any exception.
    std::function<QCoro::Task<QString>(Changes changes, std::stop_token stop)> write;
    /// What `write` would send now.
    std::function<MessageRequest(const Changes& changes)> describe;
};

} // namespace plovik
