// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "app/services/ai/CommitMessageAI.h"

#include <QByteArray>
#include <QNetworkRequest>

namespace plovik {

/// How each provider wants to be asked. Any thread.

/// Address and headers, among them the key.
QNetworkRequest headOf(const CommitMessageAI::Request& request, const QByteArray& key);

/// The JSON to post.
QByteArray bodyOf(const CommitMessageAI::Request& request);

} // namespace plovik
