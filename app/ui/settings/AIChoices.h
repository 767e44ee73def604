// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

#include <functional>
#include <optional>
#include <vector>

namespace plovik {

/// What the "AI" tab asks of whoever knows the providers and keeps their keys. All are called on the main thread.
struct AIChoices {
    struct Provider {
        QString name; ///< as settings and key store have it
        QString title;
        QString defaultModel;
        QString keyVariable; ///< of the environment
    };

    /// In the order to show them in; the first stands for a stored one that there is no more. Not empty.
    std::vector<Provider> providers;
    /// Asks for the stored key. Returns at once and calls `found`, however late, on the main thread; with nothing when
    /// there is none or the keychain does not give it.
    std::function<void(const QString& provider, std::function<void(std::optional<QString> key)> found)> readKey;
    /// Stores a key, or removes it for an empty one, in the order of the calls. Returns at once and calls `finished`.
    std::function<void(const QString& provider, const QString& key, std::function<void(bool isSaved)> finished)>
        saveKey;
    /// Whether the provider's environment variable holds a key.
    std::function<bool(const QString& provider)> hasKeyInEnvironment;
};

} // namespace plovik
