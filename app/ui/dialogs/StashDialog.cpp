// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/ui/dialogs/StashDialog.h"
#include "app/store/actions/Stashes.h"

#include "GitKit/records/Stash.h"

#include <QCheckBox>
#include <QLineEdit>
#include <QVBoxLayout>

namespace plovik {

using Files = gitkit::ChangedFiles;

StashDialog::StashDialog(RepositoryStore& store, QWidget* parent)
    : Sheet(store, tr("Stash Changes"), tr("Stash Changes"), parent), message_(new QLineEdit(this)),
      untracked_(new QCheckBox(tr("Include Untracked Files"), this))
{
    message_->setAccessibleName(tr("Stash Message"));
    message_->setPlaceholderText(tr("Message (optional)"));
    untracked_->setAccessibleName(untracked_->text());
    const Files& files = store.snapshot().status.value().files;
    // Where only untracked files changed, the user can only mean these.
    untracked_->setChecked(!files.empty() && files.untrackedCount() == std::ssize(files.list()));
    fields().addWidget(message_);
    fields().addWidget(untracked_);
    connect(untracked_, &QCheckBox::toggled, this, &StashDialog::validate);
    message_->setFocus();
    validate();
}

QString StashDialog::problem() const
{
    const Files& files = store().snapshot().status.value().files;
    if (files.empty())
        return tr("There are no changes to stash.");
    if (!store().snapshot().status.value().hasCommits())
        return tr("Before the first commit there is nothing that changes could be put aside from.");
    if (!files.conflicted().empty())
        return tr("Conflicted files can't be stashed. Resolve and stage them first.");
    if (!untracked_->isChecked() && files.untrackedCount() == std::ssize(files.list()))
        return tr("Only untracked files changed. Include them to stash them.");
    return {};
}

QString StashDialog::note() const
{
    const Files& files = store().snapshot().status.value().files;
    const std::ptrdiff_t taken = std::ssize(files.list()) - (untracked_->isChecked() ? 0 : files.untrackedCount());
    return tr("%Ln changed file(s) are put aside.", nullptr, static_cast<int>(taken));
}

void StashDialog::submit()
{
    using Untracked = gitkit::UntrackedFiles;
    actions::stashSave(store().actors(), message_->text(),
                       untracked_->isChecked() ? Untracked::include : Untracked::leave);
}

} // namespace plovik

#include "moc_StashDialog.cpp"
