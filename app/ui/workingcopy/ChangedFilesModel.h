// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "GitKit/records/ChangedFiles.h"
#include "app/store/RepositoryStore.h"
#include "app/ui/widgets/FileRowsModel.h"

#include <QItemSelection>
#include <QProperty>

#include <map>
#include <set>
#include <string>
#include <string_view>
#include <utility>

namespace plovik {

/// The changed files of the store's status, one row each, and their folders in a tree: the conflicted files first, then
/// the others, each in the order of the status. The check state of a row is the stage state of its file or files.
/// Folders with untracked files alone start closed. The model holds no copy of the files: the
/// view that observes the store calls rebuild() as soon as the status changes, and stagingChanged() when only the stage
/// states change. Main thread.
class ChangedFilesModel : public FileRowsModel {
    Q_OBJECT

public:
    /// `store` outlives the model.
    explicit ChangedFilesModel(const RepositoryStore& store, QObject* parent = nullptr);

    /// Announces a new status: as changed data when the paths are the same, and as a reset otherwise.
    void rebuild();
    void stagingChanged();

    /// Returns the file of a row, or the first one of a folder.
    const gitkit::FileChange& file(const QModelIndex& index) const;
    /// Says what happened to a file in conflict; empty for others, and while that is not known.
    QString conflictWords(const gitkit::FileChange& file) const;
    /// Calls `act` with the file of a row, or with each one of a folder.
    template <typename Act>
    void forEachIn(const QModelIndex& index, const Act& act) const
    {
        const Row of = row(index);
        for (int place = of.first; place < of.end; ++place)
            act(files()[placeOf(sourceOf(place))]);
    }
    /// Returns the row of a file or of a folder with its slash; or that of the folder that hides it.
    QModelIndex indexOf(const std::string& path) const;
    /// Returns the first row from `from` on, around the end, whose file's name begins with `typed`, regardless of case; or
    /// else the first whose path does.
    QModelIndex nextMatch(const QString& typed, int from) const;
    /// Returns the rows of the files with these paths.
    QItemSelection rowsOf(const std::set<std::string>& paths) const;

    QVariant data(const QModelIndex& index, int role) const override;
    Qt::ItemFlags flags(const QModelIndex& index) const override;

protected:
    int fileCount() const override { return fileCount_; }
    std::string_view pathOf(int file) const override { return files()[placeOf(file)].path; }
    bool startsClosed(int first, int end) const override;
    int endOfGroup(int file) const override;

private:
    const gitkit::ChangedFiles& files() const { return store_.snapshot().status.value().files; }

    /// Returns the index in the status of a file of the model.
    std::size_t placeOf(int file) const;
    int fileAt(std::size_t place) const;
    Qt::CheckState stateOf(const QModelIndex& index) const;

    const RepositoryStore& store_;
    /// Tells whether a new status has the same rows. The old status is gone when the new one is announced.
    std::size_t arrangement_;
    int fileCount_;
    QPropertyNotifier conflicts_;
    mutable std::map<std::pair<int, int>, Qt::CheckState> folderStates_; ///< by first and last file, until they change
};

/// Returns the path of a changed file as text to show, "old → new" for a rename.
QString shownPath(const gitkit::FileChange& file);

Qt::CheckState checkState(gitkit::StageState state);

} // namespace plovik
