// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "app/services/ai/CommitMessageAI.h"

#include <QByteArray>
#include <QNetworkRequest>

namespace plovik {

/// How each provider wants to be asked. Any thread.

/// Returns the address and the headers. One of them holds the key.
QNetworkRequest headOf(const commitMessageAI::Request& request, const QByteArray& key);

/// Returns the JSON to post.
QByteArray bodyOf(const commitMessageAI::Request& request);

} // namespace plovik
