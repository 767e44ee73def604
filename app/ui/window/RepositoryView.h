// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "app/store/RepositoryStore.h"

#include <QPointer>
#include <QProperty>
#include <QWidget>

#include <functional>
#include <vector>

class QStackedWidget;

namespace plovik {

class CommandLogPanel;
class HistoryView;
class InspectorView;
class MessageBar;
class SidebarView;
class SplitPane;
class StashesView;
class Toolbar;
class WorkingCopyView;

/// Everything inside a repository window: the toolbar, what could not be read, the sidebar, the view of what the
/// sidebar has selected, the inspector at the right edge while there is something to inspect, and the dialogs over it.
/// Shows the store and calls it; main thread.
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
    void showInspector();
    void hideInspector();
    void showCommandLog();
    void nameEditor();
    QWidget* detailFor(const SidebarItem& item);

    RepositoryStore& store_;
    Toolbar* toolbar_;
    MessageBar* problem_;
    MessageBar* notice_;
    SidebarView* sidebar_;
    QStackedWidget* detail_;
    QWidget* inspectorPlace_; ///< holds the inspector, and is hidden without one
    QWidget* logPlace_;       ///< holds the command log, and is hidden without it
    SplitPane* detailSplit_;
    SplitPane* windowSplit_;
    CommandLogPanel* log_ = nullptr; ///< likewise
    QPointer<QWidget> focusBeforeLog_;
    InspectorView* inspector_ = nullptr;     ///< made when it is first shown
    QPointer<QWidget> focusBeforeInspector_; ///< where the keyboard goes when the inspector closes
    // Made when they are first shown: a window paints sooner with one view than with three.
    HistoryView* history_ = nullptr;
    WorkingCopyView* workingCopy_ = nullptr;
    StashesView* stashes_ = nullptr;
    std::function<QString()> editorTitle_;
    std::vector<QPropertyNotifier> notifiers_;
};

} // namespace plovik
