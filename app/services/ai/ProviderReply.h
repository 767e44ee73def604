// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "app/services/ai/AIProvider.h"
#include "app/services/http/HttpPost.h"

#include <QString>

namespace plovik {

/// What the model wrote, which may be nothing. Throws CommitMessageAI::Failure with what went wrong: on the way, with
/// the provider, or because the model refused. `key` is kept out of that. Any thread.
QString replyText(AIProvider provider, const HttpAnswer& answer, const QString& key);

/// The text without white space at its ends and without the code fence around it.
QString withoutCodeFence(const QString& text);

} // namespace plovik
