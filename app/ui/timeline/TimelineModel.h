// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "app/store/Undo.h"

#include <QAbstractListModel>

#include <string>

namespace plovik {

/// What has happened in a working tree, one row each, the newest first. Main thread.
class TimelineModel : public QAbstractListModel {
    Q_OBJECT

public:
    using QAbstractListModel::QAbstractListModel;

    /// Resets the model. A null timeline has no rows.
    void setTimeline(Timeline timeline);

    const TimelineRow& row(const QModelIndex& index) const
    {
        return timeline_->at(static_cast<std::size_t>(index.row()));
    }
    /// Returns a name of the row that stays the same when rows are added.
    std::string key(const QModelIndex& index) const;
    QModelIndex indexOfKey(const std::string& key) const;

    int rowCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role) const override;

private:
    static QString description(const TimelineRow& row);
    static QString toolTip(const TimelineRow& row);

    Timeline timeline_;
};

} // namespace plovik
