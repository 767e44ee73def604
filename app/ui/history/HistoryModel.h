// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "app/store/RepositoryStore.h"

#include <QAbstractListModel>

namespace plovik {

/// Presents the store's history page as a list. Stores no rows, only the number of announced rows and their
/// fingerprint. Main thread.
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

    /// Returns nullptr outside the page. The row is valid until the page changes.
    const HistoryRow* row(int number) const;
    /// Returns the row of a commit, or -1 when the page does not contain it.
    int rowOf(const std::string& hash) const;

private:
    void applyPage();

    RepositoryStore& store_;
    int count_ = 0;
    std::size_t fingerprint_ = 0; ///< of the announced rows' hashes, in order
    QPropertyNotifier notifier_;
};

} // namespace plovik
