// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "app/store/SplitChoice.h"

#include <QAbstractListModel>

namespace plovik {

/// The files of a commit that is split, each with a tick for what goes into the first commit. Main thread.
class SplitFilesModel : public QAbstractListModel {
    Q_OBJECT

public:
    using QAbstractListModel::QAbstractListModel;

    const SplitChoice& choice() const { return choice_; }
    void setFiles(std::vector<gitkit::CommitFile> files);
    void setCounts(const std::vector<gitkit::ChangeCounts>& counts);
    /// See SplitChoice::takeLines().
    void takeLines(std::size_t file, const gitkit::ParsedDiff& diff, const std::set<int>& lines,
                   SplitChoice::Into into);

    int rowCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role) const override;
    Qt::ItemFlags flags(const QModelIndex& index) const override;
    bool setData(const QModelIndex& index, const QVariant& value, int role) override;

private:
    SplitChoice choice_;
};

} // namespace plovik
