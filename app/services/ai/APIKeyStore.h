// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "app/services/ai/AIProvider.h"

#include <QCoroTask>
#include <QString>

#include <optional>

namespace plovik::apiKeyStore {

/// The keys to the providers, in the keyring of the desktop's secret service and nowhere else: service
/// "app.plovik.Plovik.ai", account the provider's raw value. Main thread; the keyring may ask the user to unlock it
/// while these wait, and blocks nothing.

/// The stored key; nothing when there is none, the keyring cannot be reached or stays locked, or the bytes are no
/// UTF-8.
QCoro::Task<std::optional<QString>> key(AIProvider provider);

/// Stores or replaces a key; removes it for an empty one. Whether that has worked: removing what is not there has.
QCoro::Task<bool> setKey(AIProvider provider, QString key);

} // namespace plovik::apiKeyStore
