// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/ui/settings/AITab.h"

#include "app/settings/Settings.h"
#include "app/ui/settings/APIKeyField.h"
#include "app/ui/settings/SettingsForm.h"
#include "app/ui/widgets/Theme.h"

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

constexpr int fieldWidth = 350;
constexpr QSize promptSize(480, 150);

QString modelKey(const AIChoices::Provider& provider) { return u"aiModel."_s + provider.name; }

QString storedModel(const AIChoices::Provider& provider)
{
    const QVariant stored = Settings::shared().value(modelKey(provider));
    return stored.typeId() == QMetaType::QString ? stored.toString() : QString();
}

QString defaultPrompt() { return QString::fromUtf8(settings::aiCommitPrompt.fallback); }

/// Replaces the text by an edit that can be undone.
void replaceText(QPlainTextEdit& editor, const QString& text)
{
    QTextCursor all(editor.document());
    all.select(QTextCursor::Document);
    all.insertText(text);
}

} // namespace

AITab::AITab(AIChoices choices, QWidget* parent)
    : QWidget(parent), choices_(std::move(choices)),
      isEnabled_(new QCheckBox(tr("Write Commit Messages with AI"), this)), provider_(new QComboBox(this))
{
    auto* const keyNote = noteLabel(QString(), this);
    keyNote->setAccessibleName(tr("API Key Note"));
    key_ = new APIKeyField(choices_, *keyNote, this);
    model_ = new QLineEdit(this);
    prompt_ = new QPlainTextEdit(this);
    resetPrompt_ = new QPushButton(tr("Reset Prompt"), this);

    isEnabled_->setAccessibleName(isEnabled_->text());
    for (const AIChoices::Provider& each : choices_.providers)
        provider_->addItem(each.title, each.name);
    prompt_->setAccessibleName(tr("Commit Message Prompt"));
    prompt_->setTabChangesFocus(true);
    prompt_->document()->setDocumentMargin(8);
    prompt_->setPlaceholderText(tr("Without a prompt, the default one is used."));
    resetPrompt_->setAccessibleName(resetPrompt_->text());
    layOut(keyNote);
    connectControls();
}

// The field saves for the last time through choices_, so it is deleted while they exist.
AITab::~AITab() { delete key_; }

void AITab::layOut(QLabel* keyNote)
{
    fitPicker(*provider_);
    key_->setFixedWidth(Theme::scaled(fieldWidth));
    model_->setFixedWidth(Theme::scaled(fieldWidth));
    keyNote->setFixedWidth(Theme::scaled(fieldWidth));
    keyNote->setMinimumHeight(keyNote->fontMetrics().lineSpacing());
    prompt_->setFixedSize(Theme::scaled(promptSize.width()), Theme::scaled(promptSize.height()));

    auto* const form = new SettingsForm(*this);
    form->addRow(QString(), isEnabled_);
    form->addNote(tr("Adds a button below the commit message that writes a message for the staged changes. "
                     "Their diff is sent to the provider."));
    form->addControl(tr("Provider"), provider_);
    form->addControl(tr("API Key"), key_);
    form->addRow(QString(), keyNote);
    form->addControl(tr("Model"), model_);
    form->addItem(new QSpacerItem(0, 2 * form->verticalSpacing() / 3));
    form->addSection(tr("Commit Message Prompt"));
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
    // Setting the same text would move the cursor of somebody who types.
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
    prompt_->setFocus(Qt::OtherFocusReason); // the button, which had the focus, is disabled now
}

} // namespace plovik

#include "moc_AITab.cpp"
