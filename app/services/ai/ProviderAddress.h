// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "app/services/ai/AIProvider.h"

#include <QUrl>

namespace plovik {

/// Where a provider is asked for a message: its own host, or what its environment variable names. That has to be
/// HTTPS, or HTTP to this computer itself, without credentials, query and fragment. Throws CommitMessageAI::Failure for
/// anything else, without repeating it.
QUrl providerAddress(AIProvider provider);

/// Whether the host is this computer itself.
bool isLoopback(const QUrl& address);

} // namespace plovik
