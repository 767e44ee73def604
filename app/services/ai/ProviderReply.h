// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "app/services/ai/AIProvider.h"
#include "app/services/http/Http.h"

#include <QString>

namespace plovik {

/// Returns what the model wrote, which may be nothing. Throws commitMessageAI::Failure when the answer is not whole,
/// when the provider reports a failure, and when the model refuses. `key` never appears in it. Any thread.
QString replyText(AIProvider provider, const HttpAnswer& answer, const QString& key);

/// Returns the text without white space at its ends and without the code fence around it.
QString withoutCodeFence(const QString& text);

} // namespace plovik
