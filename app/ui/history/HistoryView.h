// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "app/store/RepositoryStore.h"

#include <QWidget>

#include <vector>

class QPushButton;
class QStackedWidget;

namespace plovik {

class CommitDetailView;
class EmptyState;
class HistoryList;
class HistorySearchRow;
class SplitPane;

/// The history of a repository: search, commit list, and the selected commit below. Shows the store, which must outlive
/// it. Main thread.
class HistoryView : public QWidget {
    Q_OBJECT

public:
    explicit HistoryView(RepositoryStore& store, QWidget* parent = nullptr);

    CommitDetailView* detail() const { return detail_; }
    /// Where the commit is shown, which another widget may take.
    QStackedWidget* diffPlace() const { return diffPlace_; }
    Q_INVOKABLE void find() { focusSearch(); }
    void focusSearch();
    /// Gives the keyboard focus to the commit list, or to the search line when no list is shown.
    void focusList();

private:
    enum class WayOut { none, clearSearch, workingCopy };
    /// What is shown in place of an empty list.
    struct Nothing {
        QString title, description;
        WayOut wayOut = WayOut::none;
    };

    void observe();
    void showDetail();
    void growPage();
    void showPage();
    Nothing nothing() const;
    void takeWayOut();

    RepositoryStore& store_;
    HistorySearchRow* searchRow_;
    HistoryList* list_;
    CommitDetailView* detail_;
    QStackedWidget* diffPlace_;
    SplitPane* content_; ///< the list and the commit below it
    QWidget* blank_;
    EmptyState* empty_;
    QPushButton* wayOutButton_;
    WayOut wayOut_ = WayOut::none;
    QStackedWidget* pages_;
    std::vector<QPropertyNotifier> notifiers_;
};

} // namespace plovik
