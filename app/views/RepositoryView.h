#pragma once

#include "app/store/RepositoryStore.h"

#include <QProperty>
#include <QWidget>

#include <functional>
#include <vector>

class QStackedWidget;

namespace plovik {

class HistoryView;
class MessageBar;
class SidebarView;
class StashesView;
class Toolbar;
class WorkingCopyView;

/// Everything inside a repository window: the toolbar, what could not be read, the sidebar, the view of what the
/// sidebar has selected, and the dialogs over it. Shows the store and calls it; main thread.
class RepositoryView : public QWidget {
    Q_OBJECT

public:
    /// `store` outlives the view.
    explicit RepositoryView(RepositoryStore& store, QWidget* parent = nullptr);

    /// Says something once, quietly, until the user dismisses it.
    void showNotice(const QString& notice);

    /// Who says how the command that opens files in the user's editor is called; asked whenever a menu opens.
    void setEditorTitle(std::function<QString()> title);

    SidebarView* sidebar() const { return sidebar_; }

private:
    void connectToolbar();
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
    std::function<QString()> editorTitle_;
    std::vector<QPropertyNotifier> notifiers_;
};

} // namespace plovik
