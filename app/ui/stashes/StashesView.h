// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "app/store/RepositoryStore.h"
#include "app/ui/widgets/ContextMenuSource.h"

#include <QProperty>
#include <QStackedWidget>

#include <vector>

class QListView;
class QPushButton;

namespace plovik {

class CommitDetailView;
class ElidedLabel;
class EmptyState;
class ScrollKeeper;
class StashesModel;

/// The detail area of the stashes: their number with the buttons for the selected one, their list, and the selected one
/// below; or why none is shown. The list's selection and the store's selected stash follow each other. Main thread.
class StashesView : public QStackedWidget, public ContextMenuSource {
    Q_OBJECT

public:
    /// `store` outlives the view.
    explicit StashesView(RepositoryStore& store, QWidget* parent = nullptr);

    QListView* list() const { return list_; }
    CommitDetailView* detail() const { return detail_; }
    /// Where the stash is shown, which another widget may take.
    QStackedWidget* diffPlace() const { return diffPlace_; }

    QMenu* makeContextMenu() override;

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    QWidget* makeHeader();
    void fitHeader();
    void makeList();
    void updateHeader();
    const gitkit::Stash* selectedStash() const;
    void showMenu(const QPoint& place);
    void showMenuOf(const gitkit::Stash* stash, const QPoint& place);
    void observeStore();
    void updateEmptyState();
    void userSelected();
    void showStoreSelection();

    RepositoryStore& store_;
    StashesModel* model_;
    QWidget* content_ = nullptr; ///< the header and the list
    CommitDetailView* detail_ = nullptr;
    QStackedWidget* diffPlace_ = nullptr;
    QWidget* header_ = nullptr;
    ElidedLabel* count_ = nullptr;
    std::vector<QPushButton*> buttons_;
    QPushButton* more_ = nullptr; ///< shown where not all of the buttons fit
    QListView* list_ = nullptr;
    EmptyState* empty_ = nullptr;
    QWidget* sign_ = nullptr; ///< in the empty state
    QPushButton* stashChanges_ = nullptr;
    ScrollKeeper* scroll_ = nullptr;
    bool isUpdating_ = false; ///< the view changes the list itself; the user does not
    std::vector<QPropertyNotifier> notifiers_;
};

} // namespace plovik
