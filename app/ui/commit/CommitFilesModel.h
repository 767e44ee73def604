// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "GitKit/records/ChangeCounts.h"
#include "app/ui/commit/CommitReading.h"
#include "app/ui/widgets/FileRowsModel.h"

#include <memory>

namespace plovik {

/// The files of one commit, one row each, and their folders in a tree; a row's accessible name is the path. Main thread.
class CommitFilesModel : public FileRowsModel {
    Q_OBJECT

public:
    using FileRowsModel::FileRowsModel;

    /// A null reading shows no files.
    void setReading(std::shared_ptr<const CommitReading> reading);
    /// Must be called when the counts of the reading have changed.
    void countsChanged();

    const std::vector<gitkit::CommitFile>& files() const;
    const gitkit::CommitFile& file(const QModelIndex& index) const;
    /// Returns nullptr while the counts are unknown.
    const gitkit::ChangeCounts* counts(const QModelIndex& index) const;
    /// The most lines that any file gains.
    int mostAdded() const { return mostAdded_; }
    /// The most lines that any file loses.
    int mostRemoved() const { return mostRemoved_; }

    QVariant data(const QModelIndex& index, int role = Qt::DisplayRole) const override;

protected:
    int fileCount() const override { return static_cast<int>(files().size()); }
    std::string_view pathOf(int file) const override { return files()[static_cast<std::size_t>(file)].path; }

private:
    QString description(const QModelIndex& index) const;
    void measure();

    std::shared_ptr<const CommitReading> reading_;
    int mostAdded_ = 0;
    int mostRemoved_ = 0;
};

/// Returns git's letter for what happened to a file, or '?' when the file was untracked when it was stashed.
char shownStatus(const gitkit::CommitFile& file);

/// Returns the path, "old → new" for a renamed file.
QString shownPath(const gitkit::CommitFile& file);

} // namespace plovik
