// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/ui/dialogs/PromptDialog.h"

#include "app/settings/CodeFont.h"
#include "app/ui/dialogs/DialogParts.h"

#include <QCheckBox>
#include <QFormLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QVBoxLayout>

#include <utility>

using namespace Qt::StringLiterals;

namespace plovik {

namespace {

using Kind = PromptText::Kind;

QString title(const PromptText& text)
{
    switch (text.kind) {
    case Kind::userName:
    case Kind::password:
        return text.host.isEmpty() ? u"Sign In"_s : u"Sign In to %1"_s.arg(text.host);
    case Kind::passphrase:
        return u"Unlock Key"_s;
    case Kind::pin:
        return u"Unlock Security Key"_s;
    case Kind::touch:
        return u"Touch Your Security Key"_s;
    case Kind::unknownHost:
        return u"Trust “%1”?"_s.arg(text.host);
    case Kind::permission:
        return u"A Question From Git"_s;
    case Kind::secret:
    case Kind::text:
        break;
    }
    return text.host.isEmpty() ? u"Git Asks"_s : u"Sign In to %1"_s.arg(text.host);
}

/// With places to break in words that no line could hold.
QString breakable(const QString& text)
{
    constexpr int longestWord = 52;
    QString result;
    int length = 0;
    for (const QChar character : text) {
        length = character.isSpace() ? 0 : length + 1;
        if (length > longestWord && !character.isLowSurrogate()) {
            result += QChar(0x200b);
            length = 1;
        }
        result += character;
    }
    return result;
}

/// Who asks, and for what.
QString sentence(const PromptText& text)
{
    switch (text.kind) {
    case Kind::userName:
        return u"%1 asks for your user name."_s.arg(text.host);
    case Kind::password:
        return text.user.isEmpty() ? u"%1 asks for your password."_s.arg(text.host)
                                   : u"%1 asks for the password of “%2”."_s.arg(text.host, text.user);
    case Kind::passphrase:
        return text.host.isEmpty()
                   ? u"The key %1 is locked with a passphrase."_s.arg(text.key)
                   : u"%1 asks for the key %2, which is locked with a passphrase."_s.arg(text.host, text.key);
    case Kind::pin:
        return text.host.isEmpty()
                   ? u"%1 asks for its PIN."_s.arg(text.key)
                   : u"%1 asks for the security key %2, which needs its PIN."_s.arg(text.host, text.key);
    case Kind::touch: {
        const QString key = text.key.isEmpty() ? text.question : u"Confirm with the key %1."_s.arg(text.key);
        return text.host.isEmpty() ? key : u"%1 waits for your confirmation. %2"_s.arg(text.host, key);
    }
    case Kind::unknownHost:
        return u"This computer has never connected to this host, so nothing shows yet that it is the one it says it is."_s;
    case Kind::permission:
    case Kind::secret:
    case Kind::text:
        break;
    }
    return text.question;
}

QString fieldName(Kind kind)
{
    switch (kind) {
    case Kind::userName:
        return u"User Name"_s;
    case Kind::password:
        return u"Password"_s;
    case Kind::passphrase:
        return u"Passphrase"_s;
    case Kind::pin:
        return u"PIN"_s;
    default:
        return u"Answer"_s;
    }
}

QString confirmTitle(Kind kind)
{
    switch (kind) {
    case Kind::password:
        return u"Sign In"_s;
    case Kind::passphrase:
    case Kind::pin:
        return u"Unlock"_s;
    case Kind::unknownHost:
        return u"Connect"_s;
    case Kind::permission:
        return u"Yes"_s;
    default:
        return u"Continue"_s;
    }
}

bool isSecret(Kind kind)
{
    return kind == Kind::password || kind == Kind::passphrase || kind == Kind::pin || kind == Kind::secret;
}

bool hasField(Kind kind) { return isSecret(kind) || kind == Kind::userName || kind == Kind::text; }

/// What is under way, and what becomes of the answer.
QString waiting(const SignInPrompt& prompt, Kind kind)
{
    QString action = prompt.action;
    if (action.endsWith(u'…'))
        action.chop(1);
    if (action.isEmpty())
        return isSecret(kind) ? u"Plovik does not keep the answer."_s : QString();
    return isSecret(kind) ? u"%1 waits for the answer. Plovik does not keep it."_s.arg(action)
                          : u"%1 waits for this."_s.arg(action);
}

/// Git tries one password for each remote; what asks again is ssh, three times for each.
bool isRefusal(const SignInPrompt& prompt, const PromptText& text) { return prompt.isRepeated && isSecret(text.kind); }

} // namespace

PromptDialog::PromptDialog(const SignInPrompt& prompt, QWidget* parent)
    : PromptDialog(prompt, promptText(prompt), parent)
{}

PromptDialog::PromptDialog(const SignInPrompt& prompt, PromptText text, QWidget* parent)
    : QDialog(parent), text_(std::move(text))
{
    dialogParts::prepare(*this, title(text_));
    QVBoxLayout& column = *dialogParts::column(*this);
    column.addWidget(dialogParts::heading(breakable(windowTitle()), this));
    QLabel* const asked = dialogParts::text(this);
    asked->setText(breakable(sentence(text_)));
    column.addWidget(asked);
    setAccessibleDescription(sentence(text_));
    if (isRefusal(prompt, text_)) {
        QLabel* const warning = dialogParts::text(this);
        warning->setForegroundRole(QPalette::BrightText);
        warning->setText(u"Asked again: the last answer was probably not accepted."_s);
        column.addWidget(warning);
    }
    if (text_.kind == Kind::unknownHost)
        addHostKey(column);
    if (hasField(text_.kind))
        addField(column);
    if (const QString during = waiting(prompt, text_.kind); !during.isEmpty())
        column.addWidget(dialogParts::secondaryText(during, this));
    addButtons(column);
    dialogParts::fit(*this);
}

void PromptDialog::addField(QVBoxLayout& column)
{
    const QString name = fieldName(text_.kind);
    field_ = new QLineEdit(this);
    field_->setAccessibleName(name);
    field_->setPlaceholderText(name);
    column.addSpacing(4);
    column.addWidget(field_);
    field_->setFocus();
    if (!isSecret(text_.kind))
        return;
    field_->setEchoMode(QLineEdit::Password);
    field_->setInputMethodHints(Qt::ImhHiddenText | Qt::ImhSensitiveData | Qt::ImhNoPredictiveText |
                                Qt::ImhNoAutoUppercase);
    auto* const show = new QCheckBox(text_.kind == Kind::secret ? u"Show"_s : u"Show %1"_s.arg(name), this);
    show->setAccessibleName(show->text());
    connect(show, &QCheckBox::toggled, field_,
            [this](bool isShown) { field_->setEchoMode(isShown ? QLineEdit::Normal : QLineEdit::Password); });
    column.addWidget(show);
}

void PromptDialog::addHostKey(QVBoxLayout& column)
{
    auto* const form = new QFormLayout;
    form->setHorizontalSpacing(12);
    form->setVerticalSpacing(4);
    const auto add = [&](const QString& name, const QString& value) {
        if (value.isEmpty())
            return;
        auto* const label = new QLabel(name, this);
        label->setForegroundRole(QPalette::PlaceholderText);
        QLabel* const shown = dialogParts::text(this);
        shown->setText(breakable(value));
        shown->setWordWrap(shown->text() != value);
        shown->setFont(CodeFont::current());
        shown->setAccessibleName(name);
        shown->setTextInteractionFlags(Qt::TextSelectableByMouse);
        form->addRow(label, shown);
    };
    add(u"Host"_s, text_.host);
    add(u"Key Type"_s, text_.keyType);
    add(u"Fingerprint"_s, text_.fingerprint);
    column.addSpacing(4);
    column.addLayout(form);
    column.addSpacing(4);
    column.addWidget(dialogParts::secondaryText(
        u"Connect only if this fingerprint is the one that the host's owner publishes: whoever answers in its "
        "place would have another."_s,
        this));
}

void PromptDialog::addButtons(QVBoxLayout& column)
{
    auto* const cancel = new QPushButton(text_.kind == Kind::permission ? u"No"_s : u"Cancel"_s, this);
    cancel->setAutoDefault(false);
    column.addSpacing(10);
    if (text_.kind == Kind::touch) {
        connect(cancel, &QPushButton::clicked, this, &QDialog::reject);
        column.addLayout(dialogParts::buttonRow({cancel}));
        return;
    }
    const bool isQuestion = !field_;
    auto* const confirm = new QPushButton(confirmTitle(text_.kind), this);
    confirm->setAutoDefault(false);
    connect(confirm, &QPushButton::clicked, this, [this, isQuestion] {
        yesOrNo_ = isQuestion ? u"yes"_s : QString();
        accept();
    });
    if (text_.kind == Kind::permission)
        connect(cancel, &QPushButton::clicked, this, [this] {
            yesOrNo_ = u"no"_s;
            accept();
        });
    else
        connect(cancel, &QPushButton::clicked, this, &QDialog::reject);
    column.addLayout(dialogParts::buttonRow({cancel, confirm}));
    if (isQuestion) {
        cancel->setFocus();
        return;
    }
    confirm->setDefault(true);
    // A name is never empty; a passphrase may be.
    const auto validate = [this, confirm] { confirm->setEnabled(isSecret(text_.kind) || !field_->text().isEmpty()); };
    connect(field_, &QLineEdit::textChanged, confirm, validate);
    validate();
}

QString PromptDialog::answer() const { return field_ ? field_->text() : yesOrNo_; }

void PromptDialog::keyPressEvent(QKeyEvent* event)
{
    // Without a field, the button that Return presses is always the one that shows the focus.
    auto* const button = qobject_cast<QPushButton*>(focusWidget());
    if (button && (event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter))
        button->click();
    else
        QDialog::keyPressEvent(event);
}

} // namespace plovik
