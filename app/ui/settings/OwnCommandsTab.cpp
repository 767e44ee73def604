// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/ui/settings/OwnCommandsTab.h"

#include "app/settings/CodeFont.h"
#include "app/settings/Settings.h"
#include "app/ui/commands/OwnCommandEntries.h"
#include "app/ui/settings/SettingsForm.h"
#include "app/ui/widgets/Theme.h"

#include <QCheckBox>
#include <QComboBox>
#include <QHBoxLayout>
#include <QKeySequenceEdit>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>
#include <QScopedValueRollback>

using namespace Qt::StringLiterals;

namespace plovik {

namespace {

constexpr QSize ownListSize(480, 110);
constexpr int ownFieldWidth = 350;

} // namespace

OwnCommandsTab::OwnCommandsTab(QWidget* parent)
    : QWidget(parent), list_(new QListWidget(this)), remove_(new QPushButton(tr("Remove"), this)),
      title_(new QLineEdit(this)), line_(new QLineEdit(this)), place_(new QComboBox(this)),
      keys_(new QKeySequenceEdit(this)), asksFirst_(new QCheckBox(tr("Ask before it runs"), this)),
      problem_(problemLabel(tr("Problem with the Command"), this))
{
    list_->setAccessibleName(tr("Own Commands"));
    list_->setFixedSize(Theme::scaled(ownListSize.width()), Theme::scaled(ownListSize.height()));
    // In the order of the places.
    place_->addItems({tr("In the menu “Repository”"), tr("For a commit"), tr("For a branch or tag"), tr("For files")});
    fitPicker(*place_);
    auto* const added = new QPushButton(tr("Add"), this);
    for (QAbstractButton* button : {static_cast<QAbstractButton*>(added), static_cast<QAbstractButton*>(remove_),
                                    static_cast<QAbstractButton*>(asksFirst_)})
        button->setAccessibleName(button->text());
    auto* const buttons = new QHBoxLayout;
    buttons->setSpacing(8);
    buttons->addWidget(added);
    buttons->addWidget(remove_);
    buttons->addStretch(1);
    for (QWidget* field : {static_cast<QWidget*>(title_), static_cast<QWidget*>(line_), static_cast<QWidget*>(keys_)})
        field->setFixedWidth(Theme::scaled(ownFieldWidth));
    line_->setFont(CodeFont::current());
    line_->setPlaceholderText(u"git log --stat -1 {commit}"_s);

    auto* const form = new SettingsForm(*this);
    form->addSection(tr("Own Commands"));
    form->addRow(list_);
    form->addRow(buttons);
    form->addControl(tr("Title"), title_);
    form->addControl(tr("Command"), line_);
    form->addNote(
        tr("A line for the shell, run at the top of the working tree. {commit}, {branch}, {file} and {files} stand "
           "for what it is run for, in any quotes. Undo covers what it does to branches, tags, stashes and the "
           "files that git knows, and nothing else."));
    form->addControl(tr("Where"), place_);
    form->addControl(tr("Keys"), keys_);
    form->addRow(QString(), asksFirst_);
    form->addRow(QString(), problem_);

    connect(added, &QPushButton::clicked, this, &OwnCommandsTab::add);
    connect(remove_, &QPushButton::clicked, this, &OwnCommandsTab::remove);
    connect(list_, &QListWidget::currentRowChanged, this, &OwnCommandsTab::showEntry);
    for (QLineEdit* field : {title_, line_})
        connect(field, &QLineEdit::textEdited, this, &OwnCommandsTab::storeEntry);
    connect(place_, &QComboBox::activated, this, &OwnCommandsTab::storeEntry);
    connect(keys_, &QKeySequenceEdit::keySequenceChanged, this, &OwnCommandsTab::storeEntry);
    connect(asksFirst_, &QCheckBox::clicked, this, &OwnCommandsTab::storeEntry);
    reload();
}

void OwnCommandsTab::reload()
{
    entries_ = ownCommands::all();
    list_->clear();
    for (const ownCommands::Entry& entry : entries_)
        list_->addItem(entry.title);
    list_->setCurrentRow(entries_.empty() ? -1 : 0);
    showEntry();
}

void OwnCommandsTab::add()
{
    entries_.push_back({tr("New Command"), QString()});
    list_->addItem(entries_.back().title);
    list_->setCurrentRow(list_->count() - 1);
    ownCommands::store(entries_);
    title_->setFocus();
    title_->selectAll();
}

void OwnCommandsTab::remove()
{
    const int row = list_->currentRow();
    if (row < 0)
        return;
    entries_.erase(entries_.begin() + row);
    ownCommands::store(entries_);
    delete list_->takeItem(row);
    showEntry();
}

void OwnCommandsTab::showEntry()
{
    const QScopedValueRollback showing(isShowing_, true);
    const int row = list_->currentRow();
    const bool isThere = row >= 0 && static_cast<std::size_t>(row) < entries_.size();
    const ownCommands::Entry entry = isThere ? entries_[static_cast<std::size_t>(row)] : ownCommands::Entry{};
    title_->setText(entry.title);
    line_->setText(entry.line);
    place_->setCurrentIndex(static_cast<int>(entry.place));
    keys_->setKeySequence(QKeySequence::fromString(entry.keys, QKeySequence::PortableText));
    asksFirst_->setChecked(entry.asksFirst);
    for (QWidget* widget :
         {static_cast<QWidget*>(remove_), static_cast<QWidget*>(title_), static_cast<QWidget*>(line_),
          static_cast<QWidget*>(place_), static_cast<QWidget*>(keys_), static_cast<QWidget*>(asksFirst_)})
        widget->setEnabled(isThere);
    showProblem();
}

void OwnCommandsTab::storeEntry()
{
    const int row = list_->currentRow();
    if (isShowing_ || row < 0)
        return;
    ownCommands::Entry& entry = entries_[static_cast<std::size_t>(row)];
    entry = {title_->text(), line_->text(), static_cast<ownCommands::Entry::Place>(place_->currentIndex()),
             keys_->keySequence().toString(QKeySequence::PortableText), asksFirst_->isChecked()};
    list_->item(row)->setText(entry.title);
    ownCommands::store(entries_);
    showProblem();
}

/// Says why the shown command is in no menu, or its keys do nothing.
void OwnCommandsTab::showProblem()
{
    const int row = list_->currentRow();
    if (row < 0 || static_cast<std::size_t>(row) >= entries_.size()) {
        tellProblem(*problem_, {});
        return;
    }
    const ownCommands::Entry& entry = entries_[static_cast<std::size_t>(row)];
    const QString taken = commandWithKeys(entry.keys);
    if (!entry.isComplete())
        tellProblem(*problem_, tr("It needs a title and a command before it stands in a menu."));
    else if (!taken.isEmpty())
        tellProblem(*problem_, tr("These keys belong to “%1”.").arg(taken));
    else
        tellProblem(*problem_, {});
}

} // namespace plovik

#include "moc_OwnCommandsTab.cpp"
