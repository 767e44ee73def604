// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "app/store/RepositoryStore.h"
#include "app/store/readers/Latest.h"
#include "app/store/readers/UndoReaders.h"
#include "app/ui/commit/CommitReading.h"
#include "app/ui/widgets/ContextMenuSource.h"

#include <QWidget>

#include <functional>
#include <memory>
#include <optional>
#include <vector>

class QLabel;
class QScrollArea;

namespace plovik {

class CommitFilesList;
class DiffPane;
class ElidedLabel;

/// What undoing a step of the timeline would change: refs, HEAD and files that come back, then the files with a diff of
/// one of them, from the state after the step to the one before it. Main thread.
class StepDetailView : public QWidget, public ContextMenuSource {
    Q_OBJECT

public:
    /// `store` outlives the view.
    explicit StepDetailView(RepositoryStore& store, QWidget* parent = nullptr);

    /// Shows a row, or nothing for nullopt. What is shown of an equal row stays.
    void showRow(std::optional<TimelineRow> row);

    /// Sets the function that returns the title of the menu entry that opens a file in the user's editor. It is called
    /// whenever a menu opens.
    void setEditorTitle(std::function<QString()> title) { editorTitle_ = std::move(title); }

    QMenu* makeContextMenu() override;

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;
    void changeEvent(QEvent* event) override;

private:
    QWidget* makeHeader();
    QWidget* makeLeftSide();
    void fitHeader();
    void connectFiles();
    void showHeader();
    void showUndoing();
    StepFilesRequest request() const;
    bool changesFiles() const;
    void filesRead();
    void countsRead();
    void showFiles();
    void showSummary();
    void fileChanged();
    void diffRead();
    void openCurrentFile();
    void showMenu(const QPoint& position);

    RepositoryStore& store_;
    std::optional<TimelineRow> row_;
    std::function<QString()> editorTitle_;
    QLabel* title_;
    QLabel* date_;
    QLabel* undoingTitle_;
    QLabel* undoing_;
    QScrollArea* header_;
    QWidget* summaryRow_; ///< hidden while nothing is known
    ElidedLabel* summary_;
    QLabel* totals_;
    CommitFilesList* files_;
    DiffPane* diff_;
    std::shared_ptr<CommitReading> shown_; ///< the files on display
    Latest<StepFilesRequest, StepFiles> reading_;
    Latest<StepFilesRequest, std::vector<gitkit::ChangeCounts>> counts_;
    Latest<StepDiffRequest, gitkit::ParsedDiff> diffs_;
};

} // namespace plovik
