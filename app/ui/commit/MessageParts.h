// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>
#include <QStringList>

#include <string_view>

namespace plovik {

/// A commit's message prepared for display: limited to what can be laid out at once, with visible signs in place of
/// characters that are invisible or change the direction of text. A value.
struct MessageParts {
    static constexpr qsizetype longestSubject = 1'000;
    static constexpr qsizetype longestBody = 40'000;
    static constexpr int mostLines = 2'000;

    QString subject; ///< the first paragraph, joined to one line as git does it
    QString body;    ///< with its full lines joined to paragraphs, without the trailers
    QString note;    ///< the sentence that a part is left out; empty when none is
    QStringList trailers = {};

    static MessageParts of(std::string_view message);

    bool operator==(const MessageParts&) const = default;
};

} // namespace plovik
