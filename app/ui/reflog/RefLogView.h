// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "app/store/RepositoryStore.h"
#include "app/store/readers/Latest.h"
#include "app/store/readers/RefLogReaders.h"
#include "app/ui/widgets/ContextMenuSource.h"

#include <QProperty>
#include <QStackedWidget>

#include <vector>

namespace plovik {

class CommitDetailView;
class EmptyState;
class RefLogList;

/// The detail area of a ref's log: where HEAD or a branch was, and below the commit of the selected row; or why nothing
/// is listed. Branches that were deleted can be brought back from it. Main thread.
class RefLogView : public QStackedWidget, public ContextMenuSource {
    Q_OBJECT

public:
    /// `store` outlives the view.
    explicit RefLogView(RepositoryStore& store, QWidget* parent = nullptr);

    RefLogList* list() const { return list_; }
    CommitDetailView* detail() const { return detail_; }
    /// Where the commit is shown, which another widget may take.
    QStackedWidget* diffPlace() const { return diffPlace_; }

    QMenu* makeContextMenu() override;

protected:
    void showEvent(QShowEvent* event) override;

private:
    void read();
    void logRead();
    void showCurrent();
    void showMenu(const QPoint& place);
    QMenu* makeMenu(const RefLogRow& row);
    bool isGone(const std::string& branch) const;

    RepositoryStore& store_;
    RefLogList* list_;
    CommitDetailView* detail_;
    QStackedWidget* diffPlace_;
    EmptyState* empty_;
    Latest<RefLogRequest, std::vector<RefLogRow>> reading_;
    std::vector<QPropertyNotifier> notifiers_;
};

} // namespace plovik
