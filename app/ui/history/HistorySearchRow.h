// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "app/store/RepositoryStore.h"

#include <QWidget>

#include <vector>

class QComboBox;
class QLabel;
class QLineEdit;

namespace plovik {

/// The row above the commit list: the field to search in, the text to search for, and the number of commits shown.
/// Main thread.
class HistorySearchRow : public QWidget {
    Q_OBJECT

public:
    /// `store` outlives the row.
    explicit HistorySearchRow(RepositoryStore& store, QWidget* parent = nullptr);

    /// Gives the search line the keyboard focus and selects its text.
    void focusSearch();
    void clearSearch();
    /// Shows the count as incomplete ("200+ commits") while a longer page is being read.
    void setGrowing(bool isGrowing);

Q_SIGNALS:
    /// Emitted when Return, Down, or Escape on an empty line asks for the keyboard focus to move to the list.
    void finished();

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

private:
    void showSearch();
    void showCount();

    RepositoryStore& store_;
    QComboBox* field_;
    QLineEdit* search_;
    QLabel* count_;
    bool isGrowing_ = false;
    std::vector<QPropertyNotifier> notifiers_;
};

} // namespace plovik
