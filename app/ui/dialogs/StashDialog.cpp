// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/ui/dialogs/StashDialog.h"

#include "app/store/ShownText.h"
#include "app/store/actions/Stashes.h"

#include <QCheckBox>
#include <QHBoxLayout>
#include <QLineEdit>
#include <QRadioButton>
#include <QStyle>
#include <QVBoxLayout>

#include <algorithm>
#include <utility>

namespace plovik {

using Files = gitkit::ChangedFiles;

StashDialog::StashDialog(RepositoryStore& store, StashSheet sheet, QWidget* parent)
    : Sheet(store, tr("Stash Changes"), tr("Stash Changes"), parent), sheet_(std::move(sheet)),
      message_(new QLineEdit(this)), all_(new QRadioButton(tr("All Changes"), this)),
      staged_(new QRadioButton(tr("Only What Is Staged"), this)),
      selected_(
          new QRadioButton(tr("Only %Ln Selected File(s)", nullptr, static_cast<int>(sheet_.files.size())), this)),
      untracked_(new QCheckBox(tr("Include Untracked Files"), this))
{
    message_->setAccessibleName(tr("Stash Message"));
    message_->setPlaceholderText(tr("Message (optional)"));
    untracked_->setAccessibleName(untracked_->text());
    const Files& files = store.snapshot().status.value().files;
    // Where only untracked files changed, the user can only mean these.
    untracked_->setChecked(!files.empty() && files.untrackedCount() == std::ssize(files.list()));
    fields().addWidget(message_);
    addChoices();
    connect(untracked_, &QCheckBox::toggled, this, &StashDialog::validate);
    message_->setFocus();
    validate();
}

void StashDialog::addChoices()
{
    const Files& files = store().snapshot().status.value().files;
    const bool isStaged = std::ranges::any_of(files, &gitkit::FileChange::hasStaged);
    selected_->setVisible(!sheet_.files.empty() && !sheet_.lines);
    staged_->setVisible(isStaged && !sheet_.lines);
    // One choice is none.
    all_->setVisible(!selected_->isHidden() || !staged_->isHidden());
    for (QRadioButton* const choice : {selected_, staged_, all_}) {
        fields().addWidget(choice);
        connect(choice, &QRadioButton::toggled, this, &StashDialog::validate);
    }
    auto* const below = new QHBoxLayout; // it belongs to the choice above it
    below->addSpacing(all_->isHidden() ? 0 : style()->pixelMetric(QStyle::PM_ExclusiveIndicatorWidth) + 6);
    below->addWidget(untracked_);
    fields().addLayout(below);
    untracked_->setVisible(!sheet_.lines);
    (sheet_.files.empty() ? all_ : selected_)->setChecked(true);
}

QString StashDialog::problem() const
{
    const Files& files = store().snapshot().status.value().files;
    if (!store().snapshot().status.value().hasCommits())
        return tr("Before the first commit there is nothing that changes could be put aside from.");
    if (!files.conflicted().empty())
        return tr("Conflicted files can't be stashed. Resolve and stage them first.");
    untracked_->setEnabled(all_->isChecked());
    return all_->isChecked() && !sheet_.lines ? problemWithAll() : QString();
}

QString StashDialog::problemWithAll() const
{
    const Files& files = store().snapshot().status.value().files;
    if (files.empty())
        return tr("There are no changes to stash.");
    if (!untracked_->isChecked() && files.untrackedCount() == std::ssize(files.list()))
        return tr("Only untracked files changed. Include them to stash them.");
    return {};
}

QString StashDialog::note() const
{
    if (sheet_.lines)
        return tr("The chosen lines of %1 are put aside.").arg(inQuotes(sheet_.lines->path));
    if (staged_->isChecked())
        return tr("What is staged is put aside. What is not staged stays.");
    const Files& files = store().snapshot().status.value().files;
    std::ptrdiff_t taken = std::ssize(sheet_.files);
    if (all_->isChecked())
        taken = std::ssize(files.list()) - (untracked_->isChecked() ? 0 : files.untrackedCount());
    return tr("%Ln changed file(s) are put aside.", nullptr, static_cast<int>(taken));
}

void StashDialog::submit()
{
    using Untracked = gitkit::UntrackedFiles;
    if (sheet_.lines)
        actions::stashLines(store().actors(), message_->text(), *sheet_.lines);
    else if (staged_->isChecked())
        actions::stashStaged(store().actors(), message_->text());
    else if (selected_->isChecked())
        actions::stashFiles(store().actors(), message_->text(), sheet_.files);
    else
        actions::stashSave(store().actors(), message_->text(),
                           untracked_->isChecked() ? Untracked::include : Untracked::leave);
}

} // namespace plovik

#include "moc_StashDialog.cpp"
