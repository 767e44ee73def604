// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "app/store/RepositoryStore.h"

#include <QAbstractListModel>

namespace plovik {

/// The store's history page as a list. Holds no rows of its own, only how many it has announced and their fingerprint.
///
/// A page that begins with the rows shown so far is announced as rows inserted; any other page as a reset. Announced
/// while the store writes `history`, on the main thread.
class HistoryModel : public QAbstractListModel {
    Q_OBJECT

public:
    explicit HistoryModel(RepositoryStore& store, QObject* parent = nullptr);

    int rowCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role) const override;

    /// Null outside the page.
    const HistoryRow* row(int number) const;
    /// The row of a commit, or -1.
    int rowOf(const std::string& hash) const;

private:
    void applyPage();

    RepositoryStore& store_;
    int count_ = 0;
    std::size_t fingerprint_ = 0; ///< of the announced rows' hashes, in order
    QPropertyNotifier notifier_;
};

} // namespace plovik
