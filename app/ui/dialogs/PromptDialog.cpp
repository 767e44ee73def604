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
        return text.host.isEmpty() ? PromptDialog::tr("Sign In") : PromptDialog::tr("Sign In to %1").arg(text.host);
    case Kind::passphrase:
        return PromptDialog::tr("Unlock Key");
    case Kind::pin:
        return PromptDialog::tr("Unlock Security Key");
    case Kind::touch:
        return PromptDialog::tr("Touch Your Security Key");
    case Kind::unknownHost:
        return PromptDialog::tr("Trust “%1”?").arg(text.host);
    case Kind::permission:
        return PromptDialog::tr("A Question From Git");
    case Kind::secret:
    case Kind::text:
        break;
    }
    return text.host.isEmpty() ? PromptDialog::tr("Git Asks") : PromptDialog::tr("Sign In to %1").arg(text.host);
}

/// Returns the text with places to wrap inside very long words.
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

/// Says who asks, and for what.
QString sentence(const PromptText& text)
{
    switch (text.kind) {
    case Kind::userName:
        return PromptDialog::tr("%1 asks for your user name.").arg(text.host);
    case Kind::password:
        return text.user.isEmpty() ? PromptDialog::tr("%1 asks for your password.").arg(text.host)
                                   : PromptDialog::tr("%1 asks for the password of “%2”.").arg(text.host, text.user);
    case Kind::passphrase:
        return text.host.isEmpty() ? PromptDialog::tr("The key %1 is locked with a passphrase.").arg(text.key)
                                   : PromptDialog::tr("%1 asks for the key %2, which is locked with a passphrase.")
                                         .arg(text.host, text.key);
    case Kind::pin:
        return text.host.isEmpty()
                   ? PromptDialog::tr("%1 asks for its PIN.").arg(text.key)
                   : PromptDialog::tr("%1 asks for the security key %2, which needs its PIN.").arg(text.host, text.key);
    case Kind::touch: {
        const QString key =
            text.key.isEmpty() ? text.question : PromptDialog::tr("Confirm with the key %1.").arg(text.key);
        return text.host.isEmpty() ? key : PromptDialog::tr("%1 waits for your confirmation. %2").arg(text.host, key);
    }
    case Kind::unknownHost:
        return PromptDialog::tr(
            "This computer has never connected to this host, so nothing shows yet that it is the one it says it is.");
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
        return PromptDialog::tr("User Name");
    case Kind::password:
        return PromptDialog::tr("Password");
    case Kind::passphrase:
        return PromptDialog::tr("Passphrase");
    case Kind::pin:
        return PromptDialog::tr("PIN");
    default:
        return PromptDialog::tr("Answer");
    }
}

/// Returns the title of the check box that shows the typed text.
QString showTitle(Kind kind)
{
    switch (kind) {
    case Kind::password:
        return PromptDialog::tr("Show Password");
    case Kind::passphrase:
        return PromptDialog::tr("Show Passphrase");
    case Kind::pin:
        return PromptDialog::tr("Show PIN");
    default:
        return PromptDialog::tr("Show");
    }
}

QString confirmTitle(Kind kind)
{
    switch (kind) {
    case Kind::password:
        return PromptDialog::tr("Sign In");
    case Kind::passphrase:
    case Kind::pin:
        return PromptDialog::tr("Unlock");
    case Kind::unknownHost:
        return PromptDialog::tr("Connect");
    case Kind::permission:
        return PromptDialog::tr("Yes");
    default:
        return PromptDialog::tr("Continue");
    }
}

bool isSecret(Kind kind)
{
    return kind == Kind::password || kind == Kind::passphrase || kind == Kind::pin || kind == Kind::secret;
}

bool hasField(Kind kind) { return isSecret(kind) || kind == Kind::userName || kind == Kind::text; }

/// Says which action waits, and that the answer is not stored.
QString waiting(const SignInPrompt& prompt, Kind kind)
{
    QString action = prompt.action;
    if (action.endsWith(u'…'))
        action.chop(1);
    if (action.isEmpty())
        return isSecret(kind) ? PromptDialog::tr("Plovik does not keep the answer.") : QString();
    if (!isSecret(kind))
        return PromptDialog::tr("%1 waits for this.", "the title of what runs").arg(action);
    return PromptDialog::tr("%1 waits for the answer. Plovik does not keep it.", "the title of what runs").arg(action);
}

/// Returns whether the last answer was refused. Git asks once for each remote; ssh asks up to three times.
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
        warning->setText(tr("Asked again: the last answer was probably not accepted."));
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
    auto* const show = new QCheckBox(showTitle(text_.kind), this);
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
        label->setTextFormat(Qt::PlainText);
        label->setForegroundRole(QPalette::PlaceholderText);
        QLabel* const shown = dialogParts::text(this);
        shown->setText(breakable(value));
        shown->setWordWrap(shown->text() != value);
        shown->setFont(CodeFont::current());
        shown->setAccessibleName(name);
        shown->setTextInteractionFlags(Qt::TextSelectableByMouse);
        form->addRow(label, shown);
    };
    add(tr("Host"), text_.host);
    add(tr("Key Type"), text_.keyType);
    add(tr("Fingerprint"), text_.fingerprint);
    column.addSpacing(4);
    column.addLayout(form);
    column.addSpacing(4);
    column.addWidget(dialogParts::secondaryText(
        tr("Connect only if this fingerprint is the one that the host's owner publishes: whoever answers in its "
           "place would have another."),
        this));
}

void PromptDialog::addButtons(QVBoxLayout& column)
{
    auto* const cancel = new QPushButton(text_.kind == Kind::permission ? tr("No") : tr("Cancel"), this);
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
    // A passphrase may be empty, a name may not.
    const auto validate = [this, confirm] { confirm->setEnabled(isSecret(text_.kind) || !field_->text().isEmpty()); };
    connect(field_, &QLineEdit::textChanged, confirm, validate);
    validate();
}

QString PromptDialog::answer() const { return field_ ? field_->text() : yesOrNo_; }

void PromptDialog::keyPressEvent(QKeyEvent* event)
{
    // Without a field, Return always presses the button that shows the focus.
    auto* const button = qobject_cast<QPushButton*>(focusWidget());
    if (button && (event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter))
        button->click();
    else
        QDialog::keyPressEvent(event);
}

} // namespace plovik

#include "moc_PromptDialog.cpp"
