// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "app/store/readers/RefLogReaders.h"
#include "app/ui/widgets/RowList.h"

#include <vector>

namespace plovik {

/// Where a ref was, a row each: what was done, the commit, whether only this list leads to it, and when. Main thread.
class RefLogList : public RowList {
    Q_OBJECT

public:
    explicit RefLogList(QWidget* parent = nullptr);

    /// Keeps the current row where the same one is there still.
    void setRows(std::vector<RefLogRow> rows);
    /// Returns the current row, or null when there is none.
    const RefLogRow* current() const;
    const RefLogRow* rowAt(const QModelIndex& index) const;

Q_SIGNALS:
    void currentRowChanged();

protected:
    void currentChanged(const QModelIndex& current, const QModelIndex& previous) override;

private:
    class Model;
    class Delegate;

    Model* model_;
    bool isFilling_ = false;
};

} // namespace plovik
