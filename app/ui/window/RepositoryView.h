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
class ComparisonView;
class HistoryView;
class InspectorView;
class MenuTarget;
class MessageBar;
class QuietLine;
class RefLogView;
class SidebarView;
class SplitPane;
class StashesView;
class TimelineView;
class Toolbar;
class WorkingCopyView;

/// Everything inside a repository window: the toolbar, the bars for problems and notices, the sidebar, the view of the
/// item that is selected there, the inspector while a file is inspected (at the right edge, or with a blame in the place
/// of the diffs), the command log, the line that says what was just done, and the
/// dialogs over them. Shows the store and calls it. Main thread.
class RepositoryView : public QWidget {
    Q_OBJECT

public:
    /// `store` outlives the view.
    explicit RepositoryView(RepositoryStore& store, QWidget* parent = nullptr);

    /// Shows a notice until the user dismisses it.
    void showNotice(const QString& notice);

    /// Sets the function that returns the title of the command that opens files in the user's editor. It is called
    /// whenever a menu opens.
    void setEditorTitle(std::function<QString()> title);

    /// Sets what opens other repositories. `application` outlives the view.
    void setApplication(MenuTarget& application);

    SidebarView* sidebar() const { return sidebar_; }

    /// Lets the user choose a file with patches.
    Q_SLOT void applyPatch();

private:
    void showSelection();
    void showComparison();
    QWidget* chosenDetail();
    void showInspector();
    void placeInspector();
    QStackedWidget* diffPlace() const;
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
    QWidget* inspectorPlace_; ///< holds the inspector with the history of a file, and is hidden without it
    QWidget* logPlace_;       ///< holds the command log, and is hidden without it
    SplitPane* detailSplit_;
    SplitPane* windowSplit_;
    QuietLine* quietLine_ = nullptr;
    CommandLogPanel* log_ = nullptr; ///< made when it is first shown
    QPointer<QWidget> focusBeforeLog_;
    InspectorView* inspector_ = nullptr;     ///< made when it is first shown
    QPointer<QWidget> focusBeforeInspector_; ///< where the keyboard goes when the inspector closes
    // These are made when they are first shown, since a window paints sooner with one view than with all.
    HistoryView* history_ = nullptr;
    WorkingCopyView* workingCopy_ = nullptr;
    StashesView* stashes_ = nullptr;
    TimelineView* timeline_ = nullptr;
    RefLogView* refLog_ = nullptr;
    ComparisonView* comparison_ = nullptr;
    std::function<QString()> editorTitle_;
    std::vector<QPropertyNotifier> notifiers_;
};

} // namespace plovik
