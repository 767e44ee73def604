#pragma once

#include "app/store/RepositoryStore.h"

#include <QProperty>
#include <QStackedWidget>

#include <vector>

class QListView;

namespace plovik {

class ChangedFilesModel;
class EmptyState;
class ScrollKeeper;

/// The detail area of the working copy: the changed files, or why there are none to see. The list's selection and the
/// store's selected paths are one. Main thread.
class WorkingCopyView : public QStackedWidget {
    Q_OBJECT

public:
    /// `store` outlives the view.
    explicit WorkingCopyView(RepositoryStore& store, QWidget* parent = nullptr);

    QListView* list() const { return list_; }

private:
    void makeList();
    void observeStore();
    void statusChanged();
    void updateEmptyState();
    void userSelected();
    void showStoreSelection();

    RepositoryStore& store_;
    ChangedFilesModel* model_;
    QListView* list_ = nullptr;
    EmptyState* empty_ = nullptr;
    ScrollKeeper* scroll_ = nullptr;
    bool isUpdating_ = false; ///< the list changes because of the store, not because of the user
    std::vector<QPropertyNotifier> notifiers_;
};

} // namespace plovik
