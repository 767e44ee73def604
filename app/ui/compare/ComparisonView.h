// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "app/store/RepositoryStore.h"
#include "app/store/readers/CompareReaders.h"
#include "app/store/readers/Latest.h"
#include "app/ui/commit/CommitReading.h"
#include "app/ui/widgets/ContextMenuSource.h"

#include <QProperty>
#include <QWidget>

#include <functional>
#include <memory>
#include <vector>

class QCheckBox;
class QLabel;
class QStackedWidget;
class QTabBar;

namespace plovik {

class BarButton;
class CommitFilesList;
class CommitsApartList;
class DiffPane;
class ElidedLabel;
class EmptyState;
class IconButton;

/// Two states of the repository that are compared: the files that differ, with the diff of one of them, and the commits
/// that only one of both has. Shows what the window's state says, which Escape clears. Main thread.
class ComparisonView : public QWidget, public ContextMenuSource {
    Q_OBJECT

public:
    /// `store` outlives the view.
    explicit ComparisonView(RepositoryStore& store, QWidget* parent = nullptr);

    /// Where the diff is shown, which another widget may take.
    QStackedWidget* diffPlace() const { return diffPlace_; }
    /// Sets the function that returns the title of the menu entry that opens a file in the user's editor. It is called
    /// whenever a menu opens.
    void setEditorTitle(std::function<QString()> title) { editorTitle_ = std::move(title); }

    QMenu* makeContextMenu() override;

protected:
    void keyPressEvent(QKeyEvent* event) override;
    void changeEvent(QEvent* event) override;

private:
    enum Tab { filesTab, commitsTab };

    QWidget* makeHeader();
    QWidget* makeFiles();
    void connectAll();
    void follow();
    void showHeader();
    void read();
    ComparisonRequest request() const;
    void swap();
    void chooseSinceParted(bool isSince);
    void showTab(int tab);
    void filesRead();
    void countsRead();
    void showSummary();
    QString summary();
    void commitsRead();
    void fileChanged();
    void diffRead();
    void openCurrentFile();

    RepositoryStore& store_;
    gitkit::Comparison comparison_;
    std::function<QString()> editorTitle_;
    ElidedLabel* title_;
    QTabBar* tabs_;
    QCheckBox* sinceParted_;
    BarButton* swap_;
    IconButton* close_;
    QStackedWidget* pages_;
    ElidedLabel* summary_;
    QLabel* totals_;
    CommitFilesList* files_;
    QStackedWidget* diffPlace_;
    DiffPane* diff_;
    QStackedWidget* commitPages_;
    CommitsApartList* commits_;
    EmptyState* noCommits_;
    std::shared_ptr<CommitReading> shown_; ///< the files on display
    Latest<ComparisonRequest, ComparedFiles> reading_;
    Latest<ComparedTreesRequest, std::vector<gitkit::ChangeCounts>> counts_;
    Latest<ComparedDiffRequest, gitkit::ParsedDiff> diffs_;
    Latest<ComparisonRequest, std::vector<gitkit::CommitApart>> apart_;
    std::vector<QPropertyNotifier> notifiers_;
};

} // namespace plovik
