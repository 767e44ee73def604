// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/ui/dialogs/StashDialog.h"

#include "GitKit/records/Stash.h"

#include <QCheckBox>
#include <QLineEdit>
#include <QVBoxLayout>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace plovik {

namespace {

using Files = std::vector<gitkit::FileChange>;

bool hasConflicts(const Files& files) { return std::ranges::any_of(files, &gitkit::FileChange::isConflicted); }

std::ptrdiff_t untrackedCount(const Files& files)
{
    return std::ranges::count_if(files, &gitkit::FileChange::isUntracked);
}

} // namespace

StashDialog::StashDialog(RepositoryStore& store, QWidget* parent)
    : Sheet(store, u"Stash Changes"_s, u"Stash Changes"_s, parent), message_(new QLineEdit(this)),
      untracked_(new QCheckBox(u"Include Untracked Files"_s, this))
{
    message_->setAccessibleName(u"Stash Message"_s);
    message_->setPlaceholderText(u"Message (optional)"_s);
    untracked_->setAccessibleName(untracked_->text());
    const Files& files = store.status.value().files;
    // Where nothing but untracked files changed, they are what is meant.
    untracked_->setChecked(!files.empty() && untrackedCount(files) == static_cast<std::ptrdiff_t>(files.size()));
    fields().addWidget(message_);
    fields().addWidget(untracked_);
    connect(untracked_, &QCheckBox::toggled, this, &StashDialog::validate);
    message_->setFocus();
    validate();
}

QString StashDialog::problem() const
{
    const Files& files = store().status.value().files;
    if (files.empty())
        return u"There are no changes to stash."_s;
    if (!store().status.value().hasCommits())
        return u"Before the first commit there is nothing that changes could be put aside from."_s;
    if (hasConflicts(files))
        return u"Conflicted files can't be stashed. Resolve and stage them first."_s;
    if (!untracked_->isChecked() && untrackedCount(files) == static_cast<std::ptrdiff_t>(files.size()))
        return u"Only untracked files changed. Include them to stash them."_s;
    return {};
}

QString StashDialog::note() const
{
    const Files& files = store().status.value().files;
    const std::ptrdiff_t taken =
        static_cast<std::ptrdiff_t>(files.size()) - (untracked_->isChecked() ? 0 : untrackedCount(files));
    return taken == 1 ? u"1 changed file is put aside."_s : u"%L1 changed files are put aside."_s.arg(taken);
}

void StashDialog::submit()
{
    using Untracked = gitkit::UntrackedFiles;
    store().stashSave(message_->text(), untracked_->isChecked() ? Untracked::include : Untracked::leave);
}

} // namespace plovik
