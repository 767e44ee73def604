// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "GitKit/records/ChangeCounts.h"
#include "GitKit/records/CommitKind.h"
#include "app/store/RepositoryStore.h"
#include "app/store/readers/CommitReaders.h"
#include "app/store/readers/Latest.h"
#include "app/ui/commit/CommitReading.h"
#include "app/ui/widgets/ContextMenuSource.h"

#include <QCache>
#include <QProperty>
#include <QTimer>
#include <QWidget>

#include <QCoroTask>

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

class QLabel;
class QStackedLayout;
class QStackedWidget;

namespace plovik {

class AllFilesPane;
class CommitFilesList;
class CommitHeader;
class DiffPane;
class HeaderOverFiles;

/// The selected commit of the history, or the selected stash: its header, the files it touched, and the diff of one of
/// them or of all. Main thread.
///
/// What the lists know is shown at once; the rest is read in the background. The last of several requests counts. The
/// files and the diff on display stay for a moment, in which nothing can be done with them, until the next ones have
/// arrived. Recently read commits are kept, so that only their diff is read again.
class CommitDetailView : public QWidget, public ContextMenuSource {
    Q_OBJECT

public:
    using CommitKind = gitkit::CommitKind;

    /// `store` outlives the view.
    CommitDetailView(RepositoryStore& store, CommitKind kind, QWidget* parent = nullptr);

    /// Sets the function that returns the title of the menu entry that opens a file in the user's editor. It is called
    /// whenever a menu opens.
    void setEditorTitle(std::function<QString()> title) { editorTitle_ = std::move(title); }

    QMenu* makeContextMenu() override;

private:
    void makePage();
    QWidget* makeLeftSide();
    std::optional<std::string> selected() const;
    void follow();
    void showReading(std::shared_ptr<CommitReading> reading);
    void showProblem(const QString& problem);
    void clearFiles();
    void retry();
    bool isCurrent() const;
    void showSummary();
    void detailRead();
    void countsRead();
    void fileChanged();
    void diffRead();
    void offerDownload();
    void showRightSide();
    void makeAllFiles();
    void followAllFiles();
    void focusDiff();
    void dragCurrentFile();
    void openCurrentFile();
    void showMenu(const QPoint& position);
    void changeEvent(QEvent* event) override;

    RepositoryStore& store_;
    CommitKind kind_;
    QStackedLayout* pages_;
    // Made when the first commit is selected; null before.
    CommitHeader* header_ = nullptr;
    QLabel* summary_ = nullptr;
    QLabel* totals_ = nullptr;
    CommitFilesList* files_ = nullptr;
    HeaderOverFiles* side_ = nullptr;
    QStackedWidget* right_ = nullptr;
    DiffPane* diff_ = nullptr;
    AllFilesPane* all_ = nullptr; ///< made when all files are shown first
    bool isFollowing_ = false;    ///< the list of files follows the diffs
    std::function<QString()> editorTitle_;

    std::shared_ptr<CommitReading> shown_; ///< the commit whose files are on display
    QTimer clearSoon_;                     ///< runs while they are those of another commit
    QCache<std::string, std::shared_ptr<CommitReading>> recent_;
    Latest<CommitRequest, gitkit::CommitDetail> details_;
    Latest<CommitRequest, std::vector<gitkit::ChangeCounts>> counts_;
    Latest<CommitDiffRequest, gitkit::ParsedDiff> diffs_;
    std::vector<QPropertyNotifier> notifiers_;
};

} // namespace plovik
