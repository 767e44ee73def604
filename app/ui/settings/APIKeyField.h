// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "app/ui/settings/AIChoices.h"

#include <QLineEdit>
#include <QTimer>

#include <map>
#include <optional>

class QLabel;

namespace plovik {

/// The field of a provider's API key. It asks the key store for the key when a provider is shown, and saves it when
/// editing ends or pauses. A key that could not be saved stays in the field and is shown again with its provider. The
/// key is never visible, on the clipboard or in an accessible text. Main thread.
class APIKeyField : public QLineEdit {
    Q_OBJECT

public:
    /// `choices` must outlive the field. `note` shows how the key is stored.
    APIKeyField(const AIChoices& choices, QLabel& note, QWidget* parent);
    ~APIKeyField() override;

    /// Saves what was typed for the provider shown before, and asks for the key of this one.
    void show(const AIChoices::Provider& provider);
    /// Saves what was typed, and forgets the keys that the key store can give again.
    void leave();

protected:
    void keyPressEvent(QKeyEvent* event) override;

private:
    /// What the field knows about the key of one provider.
    struct Key {
        std::optional<QString> typed;  ///< in the field and not yet stored
        std::optional<QString> sent;   ///< being stored
        std::optional<QString> stored; ///< the last answer of the key store; nullopt before the first
        std::optional<QString> before; ///< restored by "Undo"
        bool hasFailed = false;        ///< the typed key could not be stored
        int reads = 0;                 ///< number of reads asked for; only the answer to the last one is used
        int saves = 0;                 ///< the same for saving
    };
    enum class Attempt { firstOnly, again };

    Key& current() { return keys_[provider_.name]; }
    void read();
    void take(const QString& text);
    void save(Attempt attempt);
    void saved(const QString& provider, const QString& text, bool isSaved);
    void showKey();
    void tell();
    QString statement(const Key& key) const;

    const AIChoices& choices_;
    QLabel& note_;
    AIChoices::Provider provider_;
    std::map<QString, Key> keys_;
    QTimer pause_;
};

} // namespace plovik
