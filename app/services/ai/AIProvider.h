// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

#include <array>

namespace plovik {

/// A service that writes commit messages.
enum class AIProvider { anthropic, openAI };

namespace aiProvider {

/// All of them, in the order in which they are offered.
inline constexpr std::array all{AIProvider::anthropic, AIProvider::openAI};

/// The name in settings and in the key store.
QString rawValue(AIProvider provider);
/// Anthropic for a name that none of them has.
AIProvider fromRawValue(const QString& name);
/// The name for people.
QString displayName(AIProvider provider);
QString defaultModel(AIProvider provider);
/// The environment variable that a key is taken from when the key store has none.
const char* keyVariable(AIProvider provider);
/// The environment variable that names another address than the provider's own.
const char* addressVariable(AIProvider provider);

} // namespace aiProvider

} // namespace plovik
