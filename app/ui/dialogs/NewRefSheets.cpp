// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/ui/dialogs/NewRefSheets.h"

#include "GitKit/records/BranchChange.h"
#include "app/store/Obstacles.h"
#include "app/store/ShownText.h"
#include "app/store/actions/BranchSettings.h"
#include "app/store/actions/Pushes.h"
#include "app/store/actions/Refs.h"
#include "app/store/actions/Stashes.h"
#include "app/ui/dialogs/RefNameRules.h"

#include <QCheckBox>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QVBoxLayout>

#include <algorithm>
#include <utility>

namespace plovik {

namespace {

constexpr int messageLines = 5;

QString describedHead(const RepositoryStore& store)
{
    const gitkit::RepoStatus& status = store.snapshot().status.value();
    if (status.isDetached())
        return describedCommit(store, *status.oid);
    return store.snapshot().headDescription();
}

QString describedStart(const RepositoryStore& store, const std::optional<std::string>& startPoint)
{
    if (!startPoint)
        return describedHead(store);
    for (const std::string_view prefix : {"refs/heads/", "refs/remotes/", "refs/tags/"}) {
        if (startPoint->starts_with(prefix))
            return shownText(std::string_view(*startPoint).substr(prefix.size()));
    }
    return describedCommit(store, *startPoint);
}

QLineEdit* makeNameField(const QString& accessibleName, QWidget* parent)
{
    auto* const field = new QLineEdit(parent);
    field->setAccessibleName(accessibleName);
    field->setPlaceholderText(NewBranchDialog::tr("Name"));
    return field;
}

} // namespace

QString describedCommit(const RepositoryStore& store, const std::string& hash)
{
    const QString shown = shownText(gitkit::shortHash(hash));
    const auto commit = store.history().history.value().commit(hash);
    return commit ? NewBranchDialog::tr("%1, “%2”").arg(shown, shownText(commit->subject)) : shown;
}

NewBranchDialog::NewBranchDialog(RepositoryStore& store, NewBranchSheet sheet, QWidget* parent)
    : Sheet(store, tr("New Branch"), tr("Create Branch"), parent), sheet_(std::move(sheet)),
      name_(makeNameField(tr("New Branch Name"), this)), checkOut_(new QCheckBox(tr("Check Out After Creating"), this))
{
    checkOut_->setAccessibleName(checkOut_->text());
    checkOut_->setChecked(true);
    fields().addWidget(name_);
    fields().addWidget(checkOut_);
    checkOut_->setVisible(!sheet_.stash); // else the stash could not be applied there
    connect(name_, &QLineEdit::textChanged, this, &NewBranchDialog::validate);
    connect(checkOut_, &QCheckBox::toggled, this, &NewBranchDialog::validate);
    name_->setFocus();
    validate();
}

std::string NewBranchDialog::name() const { return name_->text().toStdString(); }

QString NewBranchDialog::problem() const
{
    if (const QString wrong = refNames::branchProblem(name(), store().snapshot().branches.value()); !wrong.isEmpty())
        return wrong;
    const gitkit::RepoStatus& status = store().snapshot().status.value();
    if (!sheet_.startPoint && !status.hasCommits() && !checkOut_->isChecked())
        return tr("Without a commit to start from, a branch can only be checked out.");
    return checkOut_->isChecked() ? obstacle(store().changes(), store().snapshot(), Verb::checkOut) : QString();
}

QString NewBranchDialog::note() const
{
    if (sheet_.stash)
        return tr("Starts where the stash was made. %1 is applied there and leaves the list.")
            .arg(inQuotes(sheet_.stash->message));
    const QString start = describedStart(store(), sheet_.startPoint);
    if (!sheet_.startPoint && !store().snapshot().status.value().hasCommits())
        return start.isEmpty() ? QString() : tr("“%1” has no commits yet; the new branch takes its place.").arg(start);
    return tr("Starts at %1").arg(start);
}

bool NewBranchDialog::isComplete() const { return !name_->text().isEmpty(); }

void NewBranchDialog::submit()
{
    using After = gitkit::AfterCreating;
    if (sheet_.stash)
        actions::branchFromStash(store().actors(), name(), *sheet_.stash);
    else
        actions::createBranch(store().actors(), name(), sheet_.startPoint,
                              checkOut_->isChecked() ? After::checkOut : After::stay);
}

RenameBranchDialog::RenameBranchDialog(RepositoryStore& store, RenameBranchSheet sheet, QWidget* parent)
    : Sheet(store, tr("Rename %1").arg(inQuotes(sheet.branch)), tr("Rename"), parent), sheet_(std::move(sheet)),
      name_(makeNameField(tr("New Branch Name"), this))
{
    name_->setText(exactText(sheet_.branch));
    name_->selectAll();
    fields().addWidget(name_);
    if (const auto there = upstream()) {
        there_ = new QCheckBox(tr("Rename on %1, too").arg(shownText(there->remote)), this);
        there_->setAccessibleName(there_->text());
        fields().addWidget(there_);
        connect(there_, &QCheckBox::toggled, this, &RenameBranchDialog::validate);
    }
    connect(name_, &QLineEdit::textChanged, this, &RenameBranchDialog::validate);
    name_->setFocus();
    validate();
}

std::string RenameBranchDialog::name() const { return name_->text().toStdString(); }

const gitkit::GitRef* RenameBranchDialog::branch() const
{
    const std::vector<gitkit::GitRef>& all = store().snapshot().branches.value();
    const auto found = std::ranges::find(all, sheet_.branch, &gitkit::GitRef::name);
    return found == all.end() ? nullptr : &*found;
}

QString RenameBranchDialog::problem() const
{
    if (!branch())
        return tr("There is no branch %1 any more.").arg(inQuotes(sheet_.branch));
    // Its own name may become a folder of the new one, or the other way round.
    std::vector<gitkit::GitRef> others = store().snapshot().branches.value();
    std::erase_if(others, [this](const gitkit::GitRef& other) { return other.name == sheet_.branch; });
    return refNames::branchProblem(name(), others);
}

/// Returns the branch of a remote that it follows and that is called alike.
std::optional<gitkit::RemoteBranch> RenameBranchDialog::upstream() const
{
    const gitkit::GitRef* const renamed = branch();
    if (!renamed || !renamed->upstream || !store().snapshot().hasRef(renamed->upstreamRef))
        return std::nullopt;
    const gitkit::RemoteBranch found = gitkit::remoteBranchOf(*renamed->upstream, store().snapshot().remotes.value());
    return found.branch == sheet_.branch ? std::optional(found) : std::nullopt;
}

QString RenameBranchDialog::note() const
{
    if (there_ && there_->isChecked())
        return tr("It is pushed under its new name, and the old one is deleted there, for everybody.");
    const gitkit::GitRef* const renamed = branch();
    return renamed && renamed->upstream
               ? tr("It still follows %1, which keeps its name.").arg(shownText(*renamed->upstream))
               : QString();
}

bool RenameBranchDialog::isComplete() const { return !name_->text().isEmpty() && name() != sheet_.branch; }

void RenameBranchDialog::submit()
{
    const auto there = upstream();
    if (!there || !there_ || !there_->isChecked()) {
        actions::renameBranch(store().actors(), sheet_.branch, name());
        return;
    }
    const std::vector<gitkit::GitRef>& all = store().snapshot().remoteBranches.value();
    const std::string hash = std::ranges::find(all, branch()->upstreamRef, &gitkit::GitRef::fullName)->hash;
    actions::renameBranch(store().actors(), sheet_.branch, name(),
                          [actors = store().actors(), newName = name(), old = *there, hash] {
                              actions::renameOnRemote(actors, newName, old, hash);
                          });
}

NewTagDialog::NewTagDialog(RepositoryStore& store, NewTagSheet sheet, QWidget* parent)
    : Sheet(store, tr("New Tag"), tr("Create Tag"), parent), sheet_(std::move(sheet)),
      name_(makeNameField(tr("New Tag Name"), this)), message_(new QPlainTextEdit(this))
{
    message_->setAccessibleName(tr("Tag Message"));
    message_->setPlaceholderText(tr("Message (optional)"));
    message_->setTabChangesFocus(true);
    message_->setFixedHeight(messageLines * message_->fontMetrics().lineSpacing());
    fields().addWidget(name_);
    fields().addWidget(message_);
    connect(message_, &QPlainTextEdit::textChanged, this, &NewTagDialog::validate);
    connect(name_, &QLineEdit::textChanged, this, &NewTagDialog::validate);
    name_->setFocus();
    validate();
}

std::string NewTagDialog::name() const { return name_->text().toStdString(); }

QString NewTagDialog::problem() const { return refNames::tagProblem(name(), store().snapshot().tags.value()); }

QString NewTagDialog::note() const
{
    const QString commit = describedCommit(store(), sheet_.target);
    return message().empty() ? tr("Marks %1").arg(commit) : tr("Marks %1, with your name and the date").arg(commit);
}

std::string NewTagDialog::message() const { return message_->toPlainText().trimmed().toStdString(); }

bool NewTagDialog::isComplete() const { return !name_->text().isEmpty(); }

void NewTagDialog::submit() { actions::createTag(store().actors(), name(), sheet_.target, message()); }

} // namespace plovik

#include "moc_NewRefSheets.cpp"
