// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "app/store/RepositoryStore.h"

#include <QWidget>

#include <vector>

class QComboBox;
class QLabel;
class QLineEdit;

namespace plovik {

/// The row above the commit list: what to search in, what to search for, and how many commits are shown.
class HistorySearchRow : public QWidget {
    Q_OBJECT

public:
    explicit HistorySearchRow(RepositoryStore& store, QWidget* parent = nullptr);

    /// Puts the cursor into the search line, its text selected.
    void focusSearch();
    void clearSearch();
    /// While a longer page is being read it is still unknown whether there are more commits than are shown.
    void setGrowing(bool isGrowing);

Q_SIGNALS:
    /// Return, Down, or Escape on an empty line: the keyboard goes on to the list.
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
