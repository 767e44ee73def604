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

/// Returns the name in settings and in the key store.
QString rawValue(AIProvider provider);
/// Returns Anthropic for an unknown name.
AIProvider fromRawValue(const QString& name);
/// Returns the name for people.
QString displayName(AIProvider provider);
QString defaultModel(AIProvider provider);
/// Returns the environment variable for a key, which is read when the key store has none.
const char* keyVariable(AIProvider provider);
/// Returns the environment variable that may replace the provider's own address.
const char* addressVariable(AIProvider provider);

} // namespace aiProvider

} // namespace plovik
