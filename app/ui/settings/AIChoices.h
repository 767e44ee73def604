// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

#include <functional>
#include <optional>
#include <vector>

namespace plovik {

/// What the "AI" tab needs to know of the providers and to do with their keys. All functions are called on the main
/// thread.
struct AIChoices {
    struct Provider {
        QString name; ///< in the settings and in the key store
        QString title;
        QString defaultModel;
        QString keyVariable; ///< name of the environment variable that may hold a key
    };

    /// In the order in which they are shown; never empty. The first one is used where the settings name a provider that
    /// does not exist any more.
    std::vector<Provider> providers;
    /// Asks for the stored key. Returns at once and calls `found` later on the main thread; with nullopt when there is
    /// no key or the keyring refuses it.
    std::function<void(const QString& provider, std::function<void(std::optional<QString> key)> found)> readKey;
    /// Stores a key, or removes the stored one when `key` is empty. Calls are carried out in their order. Returns at
    /// once and calls `finished` later on the main thread.
    std::function<void(const QString& provider, const QString& key, std::function<void(bool isSaved)> finished)>
        saveKey;
    /// Returns whether the provider's environment variable holds a key.
    std::function<bool(const QString& provider)> hasKeyInEnvironment;
};

} // namespace plovik
