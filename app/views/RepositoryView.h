#pragma once

#include "app/store/RepositoryStore.h"

#include <QProperty>
#include <QWidget>

#include <vector>

class QStackedWidget;

namespace plovik {

class HistoryView;
class MessageBar;
class SidebarView;
class StashesView;
class Toolbar;
class WorkingCopyView;

/// Everything inside a repository window: the toolbar, what could not be read, the sidebar, and the view of what the
/// sidebar has selected. Shows the store and calls it; main thread.
class RepositoryView : public QWidget {
    Q_OBJECT

public:
    /// `store` outlives the view.
    explicit RepositoryView(RepositoryStore& store, QWidget* parent = nullptr);

    /// Whether somebody answers the signals below; until then their buttons are disabled.
    void setActionsAvailable(bool available);
    /// Says something once, quietly, until the user dismisses it.
    void showNotice(const QString& notice);

    SidebarView* sidebar() const { return sidebar_; }

Q_SIGNALS:
    void fetchRequested();
    void pullRequested();
    void pushRequested();
    void branchRequested();
    void stashRequested();

private:
    void showSelection();
    QWidget* detailFor(const SidebarItem& item);

    RepositoryStore& store_;
    Toolbar* toolbar_;
    MessageBar* problem_;
    MessageBar* notice_;
    SidebarView* sidebar_;
    QStackedWidget* detail_;
    // Made when they are first shown: a window paints sooner with one view than with three.
    HistoryView* history_ = nullptr;
    WorkingCopyView* workingCopy_ = nullptr;
    StashesView* stashes_ = nullptr;
    std::vector<QPropertyNotifier> notifiers_;
};

} // namespace plovik
