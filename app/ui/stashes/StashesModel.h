// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "app/store/RepositoryStore.h"

#include <QAbstractListModel>

namespace plovik {

/// The store's stashes, one row each, newest first. Copies none of them, so the owner must call rebuild() as soon as
/// the stashes change. Main thread.
class StashesModel : public QAbstractListModel {
    Q_OBJECT

public:
    /// `store` outlives the model.
    explicit StashesModel(const RepositoryStore& store, QObject* parent = nullptr);

    void rebuild();

    const gitkit::Stash& stash(const QModelIndex& index) const;
    QModelIndex indexOf(const std::string& hash) const;

    int rowCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role) const override;
    Qt::ItemFlags flags(const QModelIndex& index) const override
    {
        return QAbstractListModel::flags(index) | Qt::ItemIsDragEnabled;
    }

private:
    const std::vector<gitkit::Stash>& stashes() const { return store_.snapshot().stashes.value(); }

    const RepositoryStore& store_;
    int rowCount_ = 0;
};

/// Returns a stash's date and time, abbreviated, as the locale writes them.
QString shownDate(const gitkit::Stash& stash);
/// Returns a stash's message as the user wrote it, without the branch that git puts before it.
QString shownMessage(const gitkit::Stash& stash);

} // namespace plovik
