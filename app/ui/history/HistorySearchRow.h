// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "app/store/RepositoryStore.h"

#include <QWidget>

#include <vector>

class QComboBox;
class QKeyEvent;
class QLabel;
class QLineEdit;

namespace plovik {

class IconButton;

/// The row above the commit list: the field to search in, the text to search for, whether only what is found stays in the
/// list, and the number of commits shown; below it, why a search fails. Main thread.
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
    /// Emitted when Down, or Return or Escape on an empty line asks for the keyboard focus to move to the list.
    void finished();

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

private:
    QWidget* makeFields();
    void observe();
    void showSearch();
    void showCount();
    QString countInGraph() const;
    void showProblem();
    bool takeKey(const QKeyEvent& event);
    void leaveSearch();

    RepositoryStore& store_;
    QComboBox* field_;
    QLineEdit* search_;
    IconButton* filters_;
    QLabel* count_;
    QLabel* problem_;
    bool isGrowing_ = false;
    std::vector<QPropertyNotifier> notifiers_;
};

} // namespace plovik
