// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "app/services/ai/AIProvider.h"

#include <QUrl>

namespace plovik {

/// Returns the address that a provider is asked at: its own host, or what its environment variable names. That has to
/// be HTTPS, or HTTP to this computer itself, without credentials, query and fragment. Throws commitMessageAI::Failure
/// for anything else, without repeating it.
QUrl providerAddress(AIProvider provider);

} // namespace plovik
