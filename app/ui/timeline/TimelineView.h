// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "app/store/RepositoryStore.h"
#include "app/ui/widgets/ContextMenuSource.h"

#include <QProperty>
#include <QStackedWidget>

#include <array>
#include <string>

class QListView;

namespace plovik {

class EmptyState;
class ScrollKeeper;
class StepDetailView;
class TimelineModel;

/// The detail area of the timeline: what has happened in this working tree, and below what undoing the selected step
/// would change; or why nothing is listed. Main thread.
class TimelineView : public QStackedWidget, public ContextMenuSource {
    Q_OBJECT

public:
    /// `store` outlives the view.
    explicit TimelineView(RepositoryStore& store, QWidget* parent = nullptr);

    QListView* list() const { return list_; }
    StepDetailView* detail() const { return detail_; }
    /// Where the step is shown, which another widget may take.
    QStackedWidget* diffPlace() const { return diffPlace_; }

    QMenu* makeContextMenu() override;

protected:
    void showEvent(QShowEvent* event) override;

private:
    void makeList();
    void showTimeline();
    void selectMeant();
    void showCurrent();
    void showMenu(const QPoint& place);

    RepositoryStore& store_;
    TimelineModel* model_;
    QListView* list_;
    StepDetailView* detail_;
    QStackedWidget* diffPlace_;
    EmptyState* empty_;
    ScrollKeeper* scroll_ = nullptr;
    std::string current_; ///< key of the current row
    quint64 meant_ = 0;   ///< number of the last step that was to be selected, and is
    bool isFilling_ = false;
    std::array<QPropertyNotifier, 2> notifiers_;
};

} // namespace plovik
