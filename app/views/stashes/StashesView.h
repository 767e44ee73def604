#pragma once

#include "app/store/RepositoryStore.h"

#include <QProperty>
#include <QStackedWidget>

#include <vector>

class QListView;

namespace plovik {

class EmptyState;
class ScrollKeeper;
class StashesModel;

/// The detail area of the stashes: their list, or why there is none to see. The list's selection and the store's
/// selected stash are one. Main thread.
class StashesView : public QStackedWidget {
    Q_OBJECT

public:
    /// `store` outlives the view.
    explicit StashesView(RepositoryStore& store, QWidget* parent = nullptr);

    QListView* list() const { return list_; }

private:
    void makeList();
    void observeStore();
    void updateEmptyState();
    void userSelected();
    void showStoreSelection();

    RepositoryStore& store_;
    StashesModel* model_;
    QListView* list_ = nullptr;
    EmptyState* empty_ = nullptr;
    ScrollKeeper* scroll_ = nullptr;
    bool isUpdating_ = false; ///< the list changes because of the store, not because of the user
    std::vector<QPropertyNotifier> notifiers_;
};

} // namespace plovik
