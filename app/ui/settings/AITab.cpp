// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/ui/settings/AITab.h"

#include "app/settings/Settings.h"
#include "app/ui/settings/APIKeyField.h"
#include "app/ui/settings/SettingsForm.h"

#include <QCheckBox>
#include <QComboBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QPlainTextEdit>
#include <QPushButton>

#include <algorithm>
#include <utility>

using namespace Qt::StringLiterals;

namespace plovik {

namespace {

constexpr int pickerWidth = 240;
constexpr int fieldWidth = 350;
constexpr QSize promptSize(480, 150);

QString modelKey(const AIChoices::Provider& provider) { return u"aiModel."_s + provider.name; }

QString storedModel(const AIChoices::Provider& provider)
{
    const QVariant stored = Settings::shared().value(modelKey(provider));
    return stored.typeId() == QMetaType::QString ? stored.toString() : QString();
}

QString defaultPrompt() { return QString::fromUtf8(settings::aiCommitPrompt.fallback); }

/// As an edit, so that it can be undone.
void replaceText(QPlainTextEdit& editor, const QString& text)
{
    QTextCursor all(editor.document());
    all.select(QTextCursor::Document);
    all.insertText(text);
}

} // namespace

AITab::AITab(AIChoices choices, QWidget* parent)
    : QWidget(parent), choices_(std::move(choices)),
      isEnabled_(new QCheckBox(u"Write Commit Messages with AI"_s, this)), provider_(new QComboBox(this))
{
    auto* const keyNote = noteLabel(QString(), this);
    keyNote->setAccessibleName(u"API Key Note"_s);
    key_ = new APIKeyField(choices_, *keyNote, this);
    model_ = new QLineEdit(this);
    prompt_ = new QPlainTextEdit(this);
    resetPrompt_ = new QPushButton(u"Reset Prompt"_s, this);

    isEnabled_->setAccessibleName(isEnabled_->text());
    for (const AIChoices::Provider& each : choices_.providers)
        provider_->addItem(each.title, each.name);
    prompt_->setAccessibleName(u"Commit Message Prompt"_s);
    prompt_->setTabChangesFocus(true);
    prompt_->document()->setDocumentMargin(8);
    prompt_->setPlaceholderText(u"Without a prompt, the default one is used."_s);
    resetPrompt_->setAccessibleName(resetPrompt_->text());
    layOut(keyNote);
    connectControls();
}

// The field's last save goes through the choices.
AITab::~AITab() { delete key_; }

void AITab::layOut(QLabel* keyNote)
{
    provider_->setFixedWidth(pickerWidth);
    key_->setFixedWidth(fieldWidth);
    model_->setFixedWidth(fieldWidth);
    keyNote->setFixedWidth(fieldWidth);
    keyNote->setMinimumHeight(keyNote->fontMetrics().lineSpacing());
    prompt_->setFixedSize(promptSize);

    auto* const form = new SettingsForm(*this);
    form->addRow(QString(), isEnabled_);
    form->addNote(u"Adds a button below the commit message that writes a message for the staged changes. "
                  "Their diff is sent to the provider."_s);
    form->addControl(u"Provider"_s, provider_);
    form->addControl(u"API Key"_s, key_);
    form->addRow(QString(), keyNote);
    form->addControl(u"Model"_s, model_);
    form->addItem(new QSpacerItem(0, 2 * form->verticalSpacing() / 3));
    form->addSection(u"Commit Message Prompt"_s);
    form->addRow(prompt_);
    auto* const below = new QHBoxLayout;
    below->addWidget(resetPrompt_);
    below->addStretch(1);
    form->addRow(below);
}

void AITab::connectControls()
{
    connect(isEnabled_, &QCheckBox::toggled, this, [](bool on) { Settings::shared().set(settings::aiEnabled, on); });
    connect(provider_, &QComboBox::activated, this,
            [this] { Settings::shared().set(settings::aiProvider, provider_->currentData().toString()); });
    connect(model_, &QLineEdit::textEdited, this,
            [this](const QString& model) { Settings::shared().set(modelKey(provider()), model); });
    connect(prompt_, &QPlainTextEdit::textChanged, this, [this] {
        const QString prompt = prompt_->toPlainText();
        resetPrompt_->setEnabled(prompt != defaultPrompt());
        Settings::shared().set(settings::aiCommitPrompt, prompt);
    });
    connect(resetPrompt_, &QPushButton::clicked, this, &AITab::resetPrompt);
    connect(&Settings::shared(), &Settings::changed, this, [this](const QString& key) {
        if (!isVisible())
            return;
        if (key == QLatin1String(settings::aiEnabled.key))
            isEnabled_->setChecked(Settings::shared().value(settings::aiEnabled));
        else if (key == QLatin1String(settings::aiProvider.key))
            showProvider();
        else if (key == modelKey(provider()))
            showModel();
        else if (key == QLatin1String(settings::aiCommitPrompt.key))
            showPrompt();
    });
}

void AITab::showEvent(QShowEvent* event)
{
    if (!event->spontaneous()) {
        isEnabled_->setChecked(Settings::shared().value(settings::aiEnabled));
        showProvider();
        showPrompt();
    }
    QWidget::showEvent(event);
}

void AITab::hideEvent(QHideEvent* event)
{
    if (!event->spontaneous())
        key_->leave();
    QWidget::hideEvent(event);
}

const AIChoices::Provider& AITab::provider() const
{
    const QString stored = Settings::shared().value(settings::aiProvider);
    const auto found = std::ranges::find(choices_.providers, stored, &AIChoices::Provider::name);
    return found == choices_.providers.end() ? choices_.providers.front() : *found;
}

void AITab::showProvider()
{
    const AIChoices::Provider& chosen = provider();
    provider_->setCurrentIndex(provider_->findData(chosen.name));
    model_->setPlaceholderText(chosen.defaultModel);
    showModel();
    key_->show(chosen);
}

void AITab::showModel()
{
    // What is being typed is left as it is.
    if (const QString stored = storedModel(provider()); model_->text() != stored)
        model_->setText(stored);
}

void AITab::showPrompt()
{
    const QString stored = Settings::shared().value(settings::aiCommitPrompt);
    if (prompt_->toPlainText() != stored) {
        const QSignalBlocker isShowing(prompt_);
        prompt_->setPlainText(stored);
    }
    resetPrompt_->setEnabled(stored != defaultPrompt());
}

void AITab::resetPrompt()
{
    replaceText(*prompt_, defaultPrompt());
    prompt_->setFocus(Qt::OtherFocusReason); // the button has nothing left to do
}

} // namespace plovik
