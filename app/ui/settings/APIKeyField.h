// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "app/ui/settings/AIChoices.h"

#include <QLineEdit>
#include <QTimer>

#include <map>
#include <optional>

class QLabel;

namespace plovik {

/// The field of a provider's API key. It asks the key store when a provider is shown, and saves when editing ends or
/// rests; what could not be saved stays in the field, and comes back with its provider. The key is never in sight, on
/// the clipboard or in an accessible text. Main thread.
class APIKeyField : public QLineEdit {
    Q_OBJECT

public:
    /// `choices` outlives the field; `note` is where it says how the key is kept.
    APIKeyField(const AIChoices& choices, QLabel& note, QWidget* parent);
    ~APIKeyField() override;

    /// Saves what was typed for another provider and asks for this one's key.
    void show(const AIChoices::Provider& provider);
    /// Saves what was typed, and forgets what need not be typed again.
    void leave();

protected:
    void keyPressEvent(QKeyEvent* event) override;

private:
    /// What is known of one provider's key.
    struct Key {
        std::optional<QString> typed;  ///< not known to be stored
        std::optional<QString> sent;   ///< being stored
        std::optional<QString> stored; ///< as last heard; nothing: not heard yet
        std::optional<QString> before; ///< what undoing goes back to
        bool hasFailed = false;        ///< to store what was typed
        int reads = 0;                 ///< so many asked, the last one counts
        int saves = 0;                 ///< likewise
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
