// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "app/store/RepositoryStore.h"
#include "app/ui/widgets/ContextMenuSource.h"

#include <QProperty>
#include <QWidget>

#include <functional>
#include <string>
#include <vector>

class QListView;
class QStackedWidget;

namespace plovik {

class ChangedFilesList;
class ChangedFilesModel;
class CommitBox;
class EmptyState;
class FileListTools;
class ScrollKeeper;

/// The view of the working copy: the changed files, or a sentence that says why there are none, with the commit box
/// under them, and at their right the changes of the selected files. The selection of the list follows the selected
/// paths of the store in both directions. Main thread.
class WorkingCopyView : public QWidget, public ContextMenuSource {
    Q_OBJECT

public:
    /// `store` outlives the view.
    explicit WorkingCopyView(RepositoryStore& store, QWidget* parent = nullptr);

    /// Sets the function that returns the title of the command that opens files in the user's editor. It is called
    /// whenever a menu opens.
    void setEditorTitle(std::function<QString()> title) { editorTitle_ = std::move(title); }

    QListView* list() const;
    EmptyState* emptyState() const { return empty_; }
    /// Where the diffs are shown, which another widget may take.
    QStackedWidget* diffPlace() const { return diffPlace_; }

    QMenu* makeContextMenu() override;

private:
    QWidget* makeFilesPane();
    void commitByKeys(QWidget& part);
    void makeList(QWidget* parent);
    void dragSelected();
    void connectList();
    void observeStore();
    void statusChanged();
    void updateEmptyState();
    void userSelected();
    void showStoreSelection();
    void toggle(const QModelIndex& index);
    void noteCurrent();
    void restoreCurrent();
    void showMenu(const QPoint& globalPosition);
    void committed();

    RepositoryStore& store_;
    ChangedFilesModel* model_;
    ChangedFilesList* list_ = nullptr;
    FileListTools* tools_ = nullptr;
    EmptyState* empty_ = nullptr;
    CommitBox* commitBox_ = nullptr;
    QStackedWidget* diffPlace_;
    ScrollKeeper* scroll_ = nullptr;
    std::function<QString()> editorTitle_;
    bool isUpdating_ = false; ///< the list changes because of the store, not because of the user
    int currentRow_ = 0;      ///< the current row, kept when its file is gone
    std::string currentPath_;
    std::vector<QPropertyNotifier> notifiers_;
};

} // namespace plovik
