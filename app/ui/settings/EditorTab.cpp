// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/ui/settings/EditorTab.h"

#include "app/settings/CodeFont.h"
#include "app/settings/Settings.h"
#include "app/ui/settings/SettingsForm.h"
#include "app/ui/settings/SizeControl.h"
#include "app/ui/widgets/Theme.h"

#include <QComboBox>
#include <QFontDatabase>
#include <QHBoxLayout>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QSignalBlocker>

using namespace Qt::StringLiterals;

namespace plovik {

namespace {

constexpr QSize previewSize(480, 132);

// The last characters of the second line tell 0 from O, and 1, l and I apart.
const QString sample = u"int greet(const char* name)\n{\n    return printf(\"Hello, %s\", name); // 0O 1lI\n}"_s;

QPlainTextEdit* samplePreview(QWidget* parent)
{
    auto* const preview = new QPlainTextEdit(sample, parent);
    preview->setAccessibleName(EditorTab::tr("Preview"));
    preview->setReadOnly(true);
    preview->setLineWrapMode(QPlainTextEdit::NoWrap);
    preview->setFixedSize(Theme::scaled(previewSize.width()), Theme::scaled(previewSize.height()));
    preview->document()->setDocumentMargin(10);
    preview->setTabChangesFocus(true);
    return preview;
}

} // namespace

EditorTab::EditorTab(QWidget* parent)
    : QWidget(parent), family_(new QComboBox(this)), size_(new SizeControl(CodeFont::minSize, CodeFont::maxSize, this)),
      tabWidth_(new SizeControl(CodeFont::minTabWidth, CodeFont::maxTabWidth, this)), preview_(samplePreview(this))
{
    fitPicker(*family_);
    auto* const reset = new QPushButton(tr("Reset to Defaults"), this);
    reset->setAccessibleName(reset->text());

    auto* const form = new SettingsForm(*this);
    form->addSection(tr("Code View"));
    form->addControl(tr("Font"), family_);
    form->addControl(tr("Size"), size_);
    form->addRow(preview_);
    tabWidth_->setDecimals(0);
    tabWidth_->setSuffix(QString());
    form->addControl(tr("Tab Width"), tabWidth_);
    form->addNote(tr("In columns. A file .editorconfig in the repository goes before this."));
    auto* const below = new QHBoxLayout;
    below->addWidget(reset);
    below->addStretch(1);
    form->addRow(below);

    connect(family_, &QComboBox::activated, this,
            [this] { Settings::shared().set(settings::codeFontName, family_->currentData().toString()); });
    connect(size_, &SizeControl::valueChanged, this,
            [](double points) { Settings::shared().set(settings::codeFontSize, points); });
    connect(reset, &QPushButton::clicked, this, [] {
        Settings::shared().set(settings::codeFontName, QString());
        Settings::shared().set(settings::codeFontSize, settings::codeFontSize.fallback);
        Settings::shared().set(settings::tabWidth, settings::tabWidth.fallback);
    });
    connect(tabWidth_, &SizeControl::valueChanged, this,
            [](double columns) { Settings::shared().set(settings::tabWidth, columns); });
    connect(&Settings::shared(), &Settings::changed, this, [this](const QString& key) {
        if (key == QLatin1String(settings::codeFontName.key) || key == QLatin1String(settings::codeFontSize.key) ||
            key == QLatin1String(settings::tabWidth.key))
            showSettings();
    });
}

void EditorTab::showEvent(QShowEvent* event)
{
    // Every installed font is examined, which takes time; so it happens only when the tab is shown.
    if (family_->count() == 0)
        fillFamilies();
    showSettings();
    QWidget::showEvent(event);
}

void EditorTab::fillFamilies()
{
    family_->addItem(tr("System Monospaced"), QString());
    for (const QString& family : CodeFont::monospacedFamilies())
        family_->addItem(family, family);
}

void EditorTab::showSettings()
{
    const QString name = Settings::shared().value(settings::codeFontName);
    if (family_->count() > 0 && family_->findData(name) < 0)
        family_->addItem(QFontDatabase::hasFamily(name) ? name : tr("%1 (not installed)").arg(name), name);
    family_->setCurrentIndex(family_->findData(name));
    // A stored size out of range is shown as the size in use, and stays stored until it is changed here.
    const double points = CodeFont::size();
    // Setting the same value would disturb somebody who types.
    if (const QSignalBlocker isShowing(size_); size_->value() != points)
        size_->setValue(points);
    const int columns = CodeFont::tabWidth();
    if (const QSignalBlocker isShowing(tabWidth_); tabWidth_->value() != columns)
        tabWidth_->setValue(columns);
    preview_->setFont(CodeFont::current());
}

} // namespace plovik

#include "moc_EditorTab.cpp"
