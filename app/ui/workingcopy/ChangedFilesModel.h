// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "GitKit/records/ChangedFiles.h"
#include "app/store/RepositoryStore.h"

#include <QAbstractListModel>
#include <QItemSelection>

#include <set>
#include <string>

namespace plovik {

/// The changed files of the store's status, one row each: the conflicted files first, then the others, each in the order
/// of the status. The check state of a row is the stage state of its file. The model holds no copy of the files: the
/// view that observes the store calls rebuild() as soon as the status changes, and stagingChanged() when only the stage
/// states change. Main thread.
class ChangedFilesModel : public QAbstractListModel {
    Q_OBJECT

public:
    /// `store` outlives the model.
    explicit ChangedFilesModel(const RepositoryStore& store, QObject* parent = nullptr);

    /// Announces a new status: as changed data when the paths are the same, and as a reset otherwise.
    void rebuild();
    void stagingChanged();

    const gitkit::FileChange& file(const QModelIndex& index) const;
    QModelIndex indexOf(const std::string& path) const;
    /// Returns the first row from `from` on, around the end, whose file's name begins with `typed`, regardless of case; or
    /// else the first whose path does.
    QModelIndex nextMatch(const QString& typed, int from) const;
    /// Returns the rows of the files with these paths.
    QItemSelection rowsOf(const std::set<std::string>& paths) const;

    int rowCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role) const override;
    Qt::ItemFlags flags(const QModelIndex& index) const override;

private:
    const gitkit::ChangedFiles& files() const { return store_.snapshot().status.value().files; }

    /// Returns the index in the status of the file of a row.
    std::size_t placeOf(int row) const;
    int rowOf(std::size_t place) const;

    const RepositoryStore& store_;
    /// Tells whether a new status has the same rows. The old status is gone when the new one is announced.
    std::size_t arrangement_;
    int rowCount_;
};

/// Returns the path of a changed file as text to show, "old → new" for a rename.
QString shownPath(const gitkit::FileChange& file);

Qt::CheckState checkState(gitkit::StageState state);

} // namespace plovik
