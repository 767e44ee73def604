// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/ui/welcome/CreateDialog.h"

#include "app/store/ShownText.h"
#include "app/ui/commands/RepositoryChoices.h"
#include "app/ui/dialogs/RefNameRules.h"
#include "app/ui/welcome/FolderField.h"

#include <QLineEdit>
#include <QVBoxLayout>

#include <utility>

namespace plovik {

namespace {

namespace fs = std::filesystem;

bool holdsRepository(const fs::path& folder)
{
    std::error_code ignored;
    return fs::exists(fs::symlink_status(folder / ".git", ignored));
}

/// Returns the closest folder around this one that is a repository; empty when there is none.
fs::path repositoryAround(const fs::path& folder)
{
    for (fs::path outer = folder.parent_path(); outer.has_relative_path(); outer = outer.parent_path()) {
        if (holdsRepository(outer))
            return outer;
    }
    return {};
}

bool isFile(const fs::path& path)
{
    std::error_code ignored;
    const fs::file_status status = fs::status(path, ignored);
    return fs::exists(status) && !fs::is_directory(status);
}

bool hasFiles(const fs::path& folder)
{
    std::error_code ignored;
    return fs::is_directory(folder, ignored) && !fs::is_empty(folder, ignored);
}

} // namespace

CreateDialog::CreateDialog(QWidget* parent)
    : BeginDialog(tr("New Repository"), tr("Create Repository"), {}, parent), folder_(new FolderField(this)),
      branch_(new QLineEdit(this))
{
    branch_->setAccessibleName(tr("First Branch"));
    branch_->setPlaceholderText(tr("Name of the first branch"));
    fields().addWidget(folder_);
    fields().addWidget(branch_);
    connect(folder_, &FolderField::changed, this, &CreateDialog::validate);
    connect(branch_, &QLineEdit::textChanged, this, &CreateDialog::validate);
    maker().askFirstBranch([this](const std::string& name) { branchKnown(name); });
    folder_->setFocus();
    validate();
}

void CreateDialog::branchKnown(const std::string& name)
{
    isKnown_ = true;
    if (branch_->text().isEmpty())
        branch_->setText(exactText(name));
    if (std::exchange(beginsSoon_, false))
        begin();
}

void CreateDialog::fill(const fs::path& folder)
{
    if (!isRunning())
        folder_->setFolder(folder.empty() ? FolderField::usualParent() / "" : folder);
}

void CreateDialog::beginSoon()
{
    if (isKnown_)
        begin();
    else
        beginsSoon_ = true;
}

QString CreateDialog::problem() const
{
    if (const QString wrong = refNames::branchProblem(branch_->text().toStdString(), {}); !wrong.isEmpty())
        return wrong;
    if (folder_->isEmpty())
        return {};
    const fs::path folder = folder_->folder();
    if (folder.empty())
        return tr("Enter the folder as a whole path, which begins with “/” or “~/”.");
    if (isFile(folder))
        return tr("%1 is a file.").arg(inQuotes(folder.filename().string()));
    if (holdsRepository(folder))
        return tr("The folder %1 is a repository already. It can be opened.").arg(inQuotes(folder.filename().string()));
    return {};
}

QString CreateDialog::note() const
{
    const fs::path folder = folder_->folder();
    if (folder.empty())
        return {};
    if (const fs::path outer = repositoryAround(folder); !outer.empty())
        return tr("It lies inside the repository %1, which will not see its files any more.")
            .arg(inQuotes(shortenedPath(outer)));
    return hasFiles(folder) ? tr("The files in the folder stay as they are, and can be committed.") : QString();
}

bool CreateDialog::isComplete() const { return !folder_->folder().empty() && !branch_->text().isEmpty(); }

void CreateDialog::start(RepositoryMaker& maker, RepositoryMaker::Made made)
{
    maker.create(folder_->folder(), branch_->text().toStdString(), std::move(made));
}

} // namespace plovik

#include "moc_CreateDialog.cpp"
