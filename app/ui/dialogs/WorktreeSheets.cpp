// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/ui/dialogs/WorktreeSheets.h"

#include "app/store/ShownText.h"
#include "app/store/actions/Worktrees.h"
#include "app/ui/dialogs/RefNameRules.h"
#include "app/ui/welcome/FolderField.h"

#include <QCheckBox>
#include <QComboBox>
#include <QLineEdit>
#include <QRadioButton>
#include <QVBoxLayout>

#include <algorithm>
#include <filesystem>
#include <utility>

using namespace Qt::StringLiterals;

namespace plovik {

namespace {

namespace fs = std::filesystem;

/// Without other worktrees only the current branch is.
bool isCheckedOut(const RepositoryStore& store, const gitkit::GitRef& branch)
{
    const std::vector<gitkit::Worktree>& trees = store.neighbours().worktrees.value();
    return branch.isHead || std::ranges::find(trees, branch.fullName, &gitkit::Worktree::branch) != trees.end();
}

} // namespace

NewWorktreeDialog::NewWorktreeDialog(RepositoryStore& store, QWidget* parent)
    : Sheet(store, tr("New Worktree"), tr("Make Worktree"), parent),
      makesBranch_(new QRadioButton(tr("New branch"), this)), name_(new QLineEdit(this)),
      takesBranch_(new QRadioButton(tr("Existing branch"), this)), branches_(new QComboBox(this)),
      folder_(new FolderField(this)), opens_(new QCheckBox(tr("Open Its Window"), this))
{
    layOut();
    fillBranches();
    folder_->startIn(store.root().parent_path());
    for (QRadioButton* const button : {makesBranch_, takesBranch_})
        connect(button, &QRadioButton::toggled, this, &NewWorktreeDialog::changed);
    connect(name_, &QLineEdit::textChanged, this, &NewWorktreeDialog::changed);
    connect(branches_, &QComboBox::currentIndexChanged, this, &NewWorktreeDialog::changed);
    connect(folder_, &FolderField::changed, this, &NewWorktreeDialog::validate);
    makesBranch_->setChecked(true);
    name_->setFocus();
    changed();
}

void NewWorktreeDialog::layOut()
{
    name_->setAccessibleName(tr("New Branch Name"));
    name_->setPlaceholderText(tr("Name of the branch"));
    branches_->setAccessibleName(tr("Branch"));
    opens_->setAccessibleName(opens_->text());
    opens_->setChecked(true);
    for (QRadioButton* const button : {makesBranch_, takesBranch_})
        button->setAccessibleName(button->text());
    for (QWidget* const field :
         std::initializer_list<QWidget*>{makesBranch_, name_, takesBranch_, branches_, folder_, opens_})
        fields().addWidget(field);
}

/// A branch is checked out in one worktree at most.
void NewWorktreeDialog::fillBranches()
{
    for (const gitkit::GitRef& branch : store().snapshot().branches.value()) {
        if (!isCheckedOut(store(), branch) && !branch.hash.empty())
            branches_->addItem(shownText(branch.name), QByteArray::fromStdString(branch.name));
    }
    takesBranch_->setEnabled(branches_->count() > 0);
    branches_->setVisible(branches_->count() > 0);
    if (branches_->count() == 0)
        takesBranch_->setToolTip(tr("Every branch is checked out already."));
}

void NewWorktreeDialog::changed()
{
    name_->setEnabled(makesBranch_->isChecked());
    branches_->setEnabled(takesBranch_->isChecked());
    QString name = exactText(branch());
    name.replace(u'/', u'-');
    folder_->suggest(name.isEmpty() ? QString() : exactText(store().root().filename().native()) + u'-' + name);
    validate();
}

std::string NewWorktreeDialog::branch() const
{
    return makesBranch_->isChecked() ? name_->text().toStdString()
                                     : branches_->currentData().toByteArray().toStdString();
}

QString NewWorktreeDialog::problem() const
{
    const QString wrong =
        makesBranch_->isChecked() ? refNames::branchProblem(branch(), store().snapshot().branches.value()) : QString();
    return wrong.isEmpty() ? folder_->problemUnlessEmpty() : wrong;
}

QString NewWorktreeDialog::note() const
{
    const fs::path folder = folder_->folder();
    if (folder.string().starts_with(store().root().string() + '/'))
        return tr("The folder lies inside this worktree, whose status will list it.");
    return makesBranch_->isChecked() ? tr("Starts at %1").arg(store().snapshot().headDescription()) : QString();
}

bool NewWorktreeDialog::isComplete() const { return !branch().empty() && !folder_->folder().empty(); }

void NewWorktreeDialog::submit()
{
    using After = actions::AfterAdding;
    actions::addWorktree(store().actors(),
                         {.folder = folder_->folder(), .branch = branch(), .isNewBranch = makesBranch_->isChecked()},
                         opens_->isChecked() ? After::open : After::stay);
}

LockWorktreeDialog::LockWorktreeDialog(RepositoryStore& store, LockWorktreeSheet sheet, QWidget* parent)
    : Sheet(store, tr("Lock %1").arg(inQuotes(actions::worktreeName(sheet.tree))), tr("Lock"), parent),
      sheet_(std::move(sheet)), reason_(new QLineEdit(this))
{
    reason_->setAccessibleName(tr("Reason"));
    reason_->setPlaceholderText(tr("Reason, if you like"));
    fields().addWidget(reason_);
    reason_->setFocus();
    validate();
}

QString LockWorktreeDialog::note() const
{
    return tr("A locked worktree is not forgotten while its folder is missing, and removing it takes one more look.");
}

void LockWorktreeDialog::submit()
{
    actions::lockWorktree(store().actors(), sheet_.tree, reason_->text().toStdString());
}

} // namespace plovik

#include "moc_WorktreeSheets.cpp"
