// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "app/store/RepositoryStore.h"

#include <QAbstractButton>

#include <vector>

namespace plovik {

/// The row above the newest commit that says how many files have changed since, and leads to the working copy. It stands
/// in the history of all refs, also without changes, so that the commits do not jump whenever a file is edited or saved
/// back. Main thread.
class WorkingCopyRow : public QAbstractButton {
    Q_OBJECT

public:
    /// `store` outlives the row.
    explicit WorkingCopyRow(RepositoryStore& store, QWidget* parent = nullptr);

    /// Returns whether the list shows the history of all refs.
    bool isWanted() const;
    /// Puts the text at `left`, where the subjects stand.
    void setTextLeft(double left);
    void setRowHeight(int height) { setFixedHeight(height); }

Q_SIGNALS:
    void wantedChanged();
    /// Emitted when Down asks for the keyboard focus to move to the commits.
    void leftDownwards();

protected:
    void paintEvent(QPaintEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;

private:
    void showChanges();

    RepositoryStore& store_;
    double textLeft_ = 0;
    std::vector<QPropertyNotifier> notifiers_;
};

} // namespace plovik
