// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "app/settings/Settings.h"
#include "app/store/RepositoryStore.h"
#include "app/ui/drag/DropArea.h"
#include "app/ui/sidebar/SidebarModel.h"
#include "app/ui/widgets/ContextMenuSource.h"

#include <QProperty>
#include <QTimer>
#include <QWidget>

#include <set>
#include <string>
#include <vector>

class QContextMenuEvent;
class QLineEdit;
class QTreeView;

namespace plovik {

class ScrollKeeper;

/// The left side of the repository window: the fixed items, the refs in groups and folders, and the line that filters
/// them. Its selection and the store's follow each other. Main thread.
class SidebarView : public QWidget, public ContextMenuSource {
    Q_OBJECT

public:
    /// `store` outlives the view.
    explicit SidebarView(RepositoryStore& store, QWidget* parent = nullptr);

    QTreeView* tree() const { return tree_; }
    const SidebarModel& model() const { return *model_; }

    bool eventFilter(QObject* watched, QEvent* event) override;

    QMenu* makeContextMenu() override;

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    class Tree;
    enum class Reveal { no, yes };

    void makeTree();
    std::vector<DropArea::Place> dropPlaces(QPoint position) const;
    void makeFilter();
    void observeStore();

    void hideWhatIsBare();
    void modelWasReset();
    void restoreExpansion();
    bool shouldBeOpen(const QModelIndex& index) const;
    void noteExpansion(const QModelIndex& index, bool isOpen);
    void applyGroupSetting(const QString& settingKey);

    void tellInSight();
    void userSelected();
    void showStoreSelection(Reveal reveal);
    bool filterKeyPressed(int key);
    void checkOut(const QModelIndex& index);
    void open(const QModelIndex& index);
    void rename();
    void showMenu(const QContextMenuEvent& event);
    QMenu* makeMenuOf(const QModelIndex& index);

    RepositoryStore& store_;
    SidebarModel* model_;
    QTreeView* tree_ = nullptr;
    QLineEdit* filter_ = nullptr;
    ScrollKeeper* scroll_ = nullptr;
    QTimer* settling_ = nullptr;          ///< runs out when the rows have stood still for a moment
    std::set<std::string> closedFolders_; ///< their keys; remembered until the window is closed
    bool isUpdating_ = false;             ///< the view changes the tree itself; the user does not
    std::vector<QPropertyNotifier> notifiers_;
};

} // namespace plovik
