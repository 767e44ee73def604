// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/ui/settings/GeneralTab.h"

#include "app/settings/AppAppearance.h"
#include "app/settings/Settings.h"
#include "app/settings/SettledQuestions.h"
#include "app/ui/settings/SettingsForm.h"
#include "app/ui/widgets/RowPainting.h"

#include <QCheckBox>
#include <QComboBox>
#include <QFile>
#include <QHBoxLayout>
#include <QLabel>
#include <QPointer>
#include <QPushButton>

#include <utility>

namespace plovik {

namespace {

QString storedEditor() { return Settings::shared().value(settings::externalEditorPath); }

QString settingOf(const editors::Application& application)
{
    return QFile::decodeName(QByteArray::fromStdString(application.path.native()));
}

void offer(QComboBox& picker, const editors::Application& application)
{
    picker.addItem(QString::fromStdString(application.name), settingOf(application));
    picker.setItemData(picker.count() - 1, plainToolTip(settingOf(application)), Qt::ToolTipRole);
}

} // namespace

GeneralTab::GeneralTab(EditorChoices editors, IndexChoices indexes, QWidget* parent)
    : QWidget(parent), editors_(std::move(editors)), appearance_(new QComboBox(this)), editor_(new QComboBox(this)),
      indexes_(std::move(indexes)), keepsIndexes_(new QCheckBox(tr("Keep an index of large repositories"), this))
{
    for (QComboBox* picker : {appearance_, editor_})
        fitPicker(*picker);
    for (const AppAppearance appearance : allAppearances)
        appearance_->addItem(displayName(appearance), rawValue(appearance));
    connect(appearance_, &QComboBox::activated, this,
            [this] { Settings::shared().set(settings::appearance, appearance_->currentData().toString()); });
    connect(editor_, &QComboBox::activated, this, &GeneralTab::pickEditor);

    auto* const form = new SettingsForm(*this);
    form->addControl(tr("Appearance"), appearance_);
    form->addControl(tr("Open Files In"), editor_);
    form->addNote(
        tr("Double-click a file to open it. An editor that is already running opens it in its current project."));
    addIndexes(*form);
    addQuestions(*form);

    connect(&Settings::shared(), &Settings::changed, this, [this](const QString& key) {
        if (key == QLatin1String(settings::appearance.key))
            showAppearance();
        if (key == QLatin1String(settings::externalEditorPath.key))
            fillEditors();
        if (key == QLatin1String(settings::keepsIndexes.key))
            showIndexes();
        if (key == QLatin1String(settings::settledQuestions.key))
            showQuestions();
    });
}

void GeneralTab::addIndexes(SettingsForm& form)
{
    form.addRow(QString(), keepsIndexes_);
    indexRoom_ = form.addNote(QString());
    clearIndexes_ = new QPushButton(tr("Clear"), this);
    clearIndexes_->setAutoDefault(false);
    auto* const row = new QHBoxLayout;
    row->addWidget(clearIndexes_);
    row->addStretch(1);
    form.addRow(QString(), row);
    connect(keepsIndexes_, &QCheckBox::toggled, this,
            [](bool on) { Settings::shared().set(settings::keepsIndexes, on); });
    connect(clearIndexes_, &QPushButton::clicked, this, [this] {
        if (indexes_.clear)
            indexes_.clear();
        showIndexes();
    });
    showIndexes();
}

void GeneralTab::showIndexes()
{
    const qint64 bytes = indexes_.bytes ? indexes_.bytes() : 0;
    keepsIndexes_->setChecked(Settings::shared().value(settings::keepsIndexes));
    const QString use = tr("Long histories are read several times faster. Repositories are not changed.");
    const QString room = tr("The indexes take %1 of the cache folder.").arg(locale().formattedDataSize(bytes));
    indexRoom_->setText(bytes > 0 ? use + u' ' + room : use);
    clearIndexes_->setEnabled(bytes > 0);
}

void GeneralTab::addQuestions(SettingsForm& form)
{
    askAgain_ = new QPushButton(tr("Ask Again Before Everything"), this);
    askAgain_->setAutoDefault(false);
    form.addRow(QString(), askAgain_);
    form.addNote(tr("Brings back the questions that were answered with “Do not ask again”."));
    connect(askAgain_, &QPushButton::clicked, this, [] { settledQuestions::clear(); });
    showQuestions();
}

void GeneralTab::showQuestions() { askAgain_->setEnabled(settledQuestions::areThere()); }

void GeneralTab::showEvent(QShowEvent* event)
{
    showAppearance();
    fillEditors();
    showIndexes();
    showQuestions();
    QWidget::showEvent(event);
}

void GeneralTab::showAppearance() { appearance_->setCurrentIndex(appearance_->findData(rawValue(storedAppearance()))); }

void GeneralTab::fillEditors()
{
    editor_->clear();
    editor_->addItem(tr("Default Application"), QString());
    for (const editors::Application& application : editors_.installed())
        offer(*editor_, application);
    for (const QString& custom : {storedEditor(), earlierCustomChoice_}) {
        const auto application = custom.isEmpty() ? std::nullopt : editors_.at(custom);
        if (!application || editor_->findData(custom) >= 0)
            continue;
        offer(*editor_, *application);
        earlierCustomChoice_ = custom;
    }
    editor_->insertSeparator(editor_->count());
    editor_->addItem(tr("Choose Application…")); // without data, since it is no value of the setting
    showEditor();
}

void GeneralTab::showEditor()
{
    // Where the stored application does not exist any more, files open in the default one.
    editor_->setCurrentIndex(std::max(0, editor_->findData(storedEditor())));
}

void GeneralTab::pickEditor(int index)
{
    if (const QVariant picked = editor_->itemData(index); picked.isValid()) {
        Settings::shared().set(settings::externalEditorPath, picked.toString());
        return;
    }
    // The old choice stays until another one is made, so that cancelling changes nothing.
    showEditor();
    editors_.choose(window(), [self = QPointer(this)](const editors::Application& chosen) {
        if (self)
            Settings::shared().set(settings::externalEditorPath, settingOf(chosen));
    });
}

} // namespace plovik

#include "moc_GeneralTab.cpp"
