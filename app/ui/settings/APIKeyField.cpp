// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/ui/settings/APIKeyField.h"

#include <QKeyEvent>
#include <QLabel>
#include <QPointer>

namespace plovik {

namespace {

// After this pause a pasted key is stored without another key stroke.
constexpr std::chrono::milliseconds rest{1000};

} // namespace

APIKeyField::APIKeyField(const AIChoices& choices, QLabel& note, QWidget* parent)
    : QLineEdit(parent), choices_(choices), note_(note)
{
    setEchoMode(QLineEdit::Password);
    setClearButtonEnabled(true);
    setInputMethodHints(Qt::ImhHiddenText | Qt::ImhSensitiveData | Qt::ImhNoPredictiveText | Qt::ImhNoAutoUppercase);
    pause_.setSingleShot(true);
    pause_.setInterval(rest);
    connect(&pause_, &QTimer::timeout, this, [this] { save(Attempt::firstOnly); });
    connect(this, &QLineEdit::textEdited, this, &APIKeyField::take);
    connect(this, &QLineEdit::returnPressed, this, [this] { save(Attempt::again); });
    connect(this, &QLineEdit::editingFinished, this, [this] { save(Attempt::firstOnly); });
}

APIKeyField::~APIKeyField()
{
    if (!provider_.name.isEmpty())
        save(Attempt::firstOnly);
}

void APIKeyField::show(const AIChoices::Provider& provider)
{
    if (!provider_.name.isEmpty())
        leave();
    provider_ = provider;
    showKey();
    read();
}

void APIKeyField::leave()
{
    save(Attempt::firstOnly);
    Key& key = current();
    ++key.reads; // an answer that is still to come is ignored
    key.stored.reset();
    key.before.reset();
    showKey();
}

void APIKeyField::keyPressEvent(QKeyEvent* event)
{
    // A password field of Qt is emptied by "Undo", which would remove the key.
    if (event->matches(QKeySequence::Undo)) {
        if (const auto before = current().before; before && text() != *before) {
            setText(*before);
            take(*before);
        }
        return;
    }
    QLineEdit::keyPressEvent(event);
}

void APIKeyField::read()
{
    const int number = ++current().reads;
    choices_.readKey(provider_.name,
                     [self = QPointer(this), name = provider_.name, number](const std::optional<QString>& found) {
                         if (!self || self->keys_[name].reads != number)
                             return;
                         Key& key = self->keys_[name];
                         key.stored = key.before = found.value_or(QString());
                         if (name == self->provider_.name)
                             self->showKey();
                     });
}

void APIKeyField::take(const QString& text)
{
    Key& key = current();
    key.hasFailed = false;
    // Nothing is typed any more and the key store has not answered yet, so its answer may fill the field.
    const bool saysNothing = text.isEmpty() && !key.stored && !key.sent;
    key.typed = saysNothing ? std::nullopt : std::optional(text);
    pause_.start();
    tell();
}

void APIKeyField::save(Attempt attempt)
{
    pause_.stop();
    Key& key = current();
    if (!key.typed || (key.hasFailed && attempt == Attempt::firstOnly))
        return;
    const QString text = key.typed->trimmed();
    if (key.sent == text)
        return;
    if (!key.sent && key.stored == text) {
        key.typed.reset();
        tell();
        return;
    }
    key.sent = text;
    key.hasFailed = false;
    ++key.reads; // an answer to an earlier read is out of date
    const int number = ++key.saves;
    choices_.saveKey(provider_.name, text, [self = QPointer(this), name = provider_.name, text, number](bool isSaved) {
        if (self && self->keys_[name].saves == number)
            self->saved(name, text, isSaved);
    });
    tell();
}

void APIKeyField::saved(const QString& provider, const QString& text, bool isSaved)
{
    Key& key = keys_[provider];
    key.sent.reset();
    if (isSaved)
        key.stored = text;
    // A key that was typed meanwhile is saved by a later call.
    if (key.typed && key.typed->trimmed() == text) {
        key.hasFailed = !isSaved;
        if (isSaved)
            key.typed.reset();
    }
    if (provider == provider_.name)
        tell();
}

void APIKeyField::showKey()
{
    const Key& key = current();
    const QString shown = key.typed.value_or(key.stored.value_or(QString()));
    if (text() != shown)
        setText(shown);
    tell();
}

void APIKeyField::tell()
{
    const Key& key = current();
    const QString text = statement(key);
    note_.setText(text);
    note_.setForegroundRole(key.hasFailed ? QPalette::BrightText : QPalette::PlaceholderText);
    setAccessibleDescription(text);
}

QString APIKeyField::statement(const Key& key) const
{
    if (key.hasFailed)
        return tr("The key could not be saved in the keyring.");
    if (key.typed || key.sent || !key.stored)
        return {};
    if (!key.stored->isEmpty())
        return tr("The key is stored in your keyring.");
    if (choices_.hasKeyInEnvironment(provider_.name))
        return tr("Without a stored key, %1 from the environment is used.").arg(provider_.keyVariable);
    return tr("No key was found in your keyring.");
}

} // namespace plovik

#include "moc_APIKeyField.cpp"
