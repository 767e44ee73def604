// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/store/readers/CurrentFiles.h"

#include "GitKit/repository/GitRepository.h"
#include "app/store/ShownText.h"

#include <QCoreApplication>

#include <set>
#include <stdexcept>
#include <string>

namespace plovik {

using gitkit::FileChange;

namespace {

void requireNoneIsNew(const std::vector<FileChange>& now, const gitkit::ChangedFiles& listed)
{
    for (const FileChange& file : now) {
        if (!file.isConflicted)
            continue;
        const FileChange* const before = listed.find(file.path);
        if (!before || !before->isConflicted)
            throw std::runtime_error(
                QCoreApplication::translate("plovik::Staging",
                                            "Nothing was done: %1 has come into conflict in the meantime.")
                    .arg(inQuotes(file.path))
                    .toStdString());
    }
}

} // namespace

std::vector<FileChange> currentFiles(const gitkit::GitRepository& repo, const gitkit::ChangedFiles& files)
{
    std::set<std::string> paths;
    for (const FileChange& file : files) {
        paths.insert(file.path);
        if (file.originalPath && (file.index == 'R' || file.worktree == 'R'))
            paths.insert(*file.originalPath);
    }
    std::vector<FileChange> found = repo.status().files;
    std::erase_if(found, [&paths](const FileChange& file) { return !paths.contains(file.path); });
    requireNoneIsNew(found, files);
    return found;
}

void requireNoNewConflicts(const gitkit::GitRepository& repo, const gitkit::ChangedFiles& files)
{
    requireNoneIsNew(repo.status().files, files);
}

} // namespace plovik
