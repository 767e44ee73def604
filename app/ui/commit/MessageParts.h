// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

#include <string_view>

namespace plovik {

/// A commit's message made ready to be read: no more than can be laid out at once, and what would be invisible or would
/// change the direction of the text as signs of its own. Value.
struct MessageParts {
    static constexpr qsizetype longestSubject = 1'000;
    static constexpr qsizetype longestBody = 40'000;
    static constexpr int mostLines = 2'000;

    QString subject; ///< the first paragraph on one line, as git has it
    QString body;
    QString note; ///< says that something is left out; empty otherwise

    static MessageParts of(std::string_view message);

    bool operator==(const MessageParts&) const = default;
};

} // namespace plovik
