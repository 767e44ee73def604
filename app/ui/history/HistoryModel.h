// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "app/store/RepositoryStore.h"

#include <QAbstractListModel>

namespace plovik {

/// Presents the store's history as a list. Main thread.
///
/// A new page that begins with the rows shown so far is announced as inserted rows, any other page as a reset. Both
/// are announced while the store writes `history`.
class HistoryModel : public QAbstractListModel {
    Q_OBJECT

public:
    /// `store` outlives the model.
    explicit HistoryModel(RepositoryStore& store, QObject* parent = nullptr);

    int rowCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role) const override;
    Qt::ItemFlags flags(const QModelIndex& index) const override
    {
        return QAbstractListModel::flags(index) | Qt::ItemIsDragEnabled;
    }

    /// Returns nullopt outside the page.
    std::optional<HistoryRow> row(int number) const;
    /// Returns the hash of a row, empty outside the page.
    std::string hash(int number) const;
    /// Returns the row of a commit, or -1 when the page does not contain it.
    int rowOf(const std::string& hash) const;

private:
    void applyPage();

    RepositoryStore& store_;
    HistoryRows announced_;
    QPropertyNotifier notifier_;
};

} // namespace plovik
