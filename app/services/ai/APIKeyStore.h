// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "app/services/ai/AIProvider.h"

#include <QCoroTask>
#include <QString>

#include <optional>

namespace plovik::apiKeyStore {

/// The keys to the providers, in the keyring of the desktop's secret service and nowhere else: service
/// "app.plovik.Plovik.ai", account the provider's raw value. While these wait, the keyring may ask the user to unlock
/// it; nothing blocks. Main thread.

/// Returns the stored key; nullopt when there is none, when the keyring cannot be reached or stays locked, and when the
/// bytes are not UTF-8.
QCoro::Task<std::optional<QString>> key(AIProvider provider);

/// Stores or replaces a key; an empty key removes it. Returns whether that worked; removing a missing key works.
QCoro::Task<bool> setKey(AIProvider provider, QString key);

} // namespace plovik::apiKeyStore
