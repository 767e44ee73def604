// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "GitKit/records/Comparison.h"
#include "app/ui/widgets/RowList.h"

#include <QString>

#include <vector>

namespace plovik {

/// The commits that only one of two states has, with a mark for the side: "<", ">", or "=" where the other one has a
/// commit with the same changes. Return and a double click ask for a commit. Main thread.
class CommitsApartList : public RowList {
    Q_OBJECT

public:
    explicit CommitsApartList(QWidget* parent = nullptr);

    /// `first` and `second` name the states in sentences.
    void setCommits(std::vector<gitkit::CommitApart> commits, const QString& first, const QString& second);

Q_SIGNALS:
    void commitRequested(const std::string& hash);

protected:
    void keyPressEvent(QKeyEvent* event) override;

private:
    class Model;
    class Delegate;

    void request(const QModelIndex& index);

    Model* model_;
};

} // namespace plovik
