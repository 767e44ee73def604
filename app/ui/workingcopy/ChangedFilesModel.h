// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "GitKit/records/FileChange.h"
#include "app/store/RepositoryStore.h"

#include <QAbstractListModel>

#include <cstdint>
#include <string>
#include <vector>

namespace plovik {

/// The changed files of the store's status, one row each, in its order but for the conflicted ones, which come
/// first; a row's check state is its file's stage state.
/// Holds no copy of them: whoever observes the store must call rebuild() as soon as the status changes and
/// stagingChanged() when only the stage states do. Main thread.
class ChangedFilesModel : public QAbstractListModel {
    Q_OBJECT

public:
    /// `store` outlives the model.
    explicit ChangedFilesModel(const RepositoryStore& store, QObject* parent = nullptr);

    /// Takes over the status: as changed rows where the paths are the same, as a reset where they are not.
    void rebuild();
    void stagingChanged();

    const gitkit::FileChange& file(const QModelIndex& index) const;
    QModelIndex indexOf(const std::string& path) const;

    int rowCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role) const override;
    Qt::ItemFlags flags(const QModelIndex& index) const override;

private:
    const std::vector<gitkit::FileChange>& files() const { return store_.snapshot().status.value().files; }

    /// Where in the status the file of a row stands.
    std::size_t placeOf(int row) const;
    void arrange();

    const RepositoryStore& store_;
    std::vector<std::uint32_t> order_; ///< places in the status, row by row; empty where it is the same order
    /// Tells a list of other files from a change in the same ones, for the old list is gone when the new one is
    /// announced.
    std::size_t rowsHash_ = 0;
    int rowCount_ = 0;
};

/// A changed file's path to look at; a rename's is "old → new".
QString shownPath(const gitkit::FileChange& file);

Qt::CheckState checkState(gitkit::StageState state);

} // namespace plovik
