// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "GitKit/records/ChangeCounts.h"
#include "GitKit/records/CommitKind.h"
#include "app/store/RepositoryStore.h"
#include "app/store/readers/CommitReaders.h"
#include "app/store/readers/Latest.h"
#include "app/ui/commit/CommitReading.h"

#include <QCache>
#include <QProperty>
#include <QWidget>

#include <QCoroTask>

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

class QLabel;
class QStackedLayout;

namespace plovik {

class CommitFilesList;
class CommitHeader;
class DiffPane;
class HeaderOverFiles;

/// The selected commit of the history, or the selected stash: what it is, the files it touched, and the diff of one of
/// them.
///
/// What the lists know stands at once; the rest is read in the background. Of several requests the last one counts, and
/// the files and the diff that stand on display stay until the next have arrived. Going back to a commit read lately
/// waits for nothing but its diff. Main thread.
class CommitDetailView : public QWidget {
    Q_OBJECT

public:
    using CommitKind = gitkit::CommitKind;

    /// `store` outlives the view.
    CommitDetailView(RepositoryStore& store, CommitKind kind, QWidget* parent = nullptr);

    /// Who says how the command that opens files in the user's editor is called; asked whenever a menu opens.
    void setEditorTitle(std::function<QString()> title) { editorTitle_ = std::move(title); }

private:
    void makePage();
    QWidget* makeLeftSide();
    std::optional<std::string> selected() const;
    void follow();
    void showReading(std::shared_ptr<CommitReading> reading);
    void showProblem(const QString& problem);
    void showSummary();
    void detailRead();
    void countsRead();
    void fileChanged();
    void diffRead();
    void openCurrentFile();
    void showMenu(const QPoint& position);
    void changeEvent(QEvent* event) override;

    RepositoryStore& store_;
    CommitKind kind_;
    QStackedLayout* pages_;
    // Made with the first commit.
    CommitHeader* header_ = nullptr;
    QLabel* summary_ = nullptr;
    QLabel* totals_ = nullptr;
    CommitFilesList* files_ = nullptr;
    HeaderOverFiles* side_ = nullptr;
    DiffPane* diff_ = nullptr;
    std::function<QString()> editorTitle_;

    std::shared_ptr<CommitReading> shown_; ///< whose files stand there
    QCache<std::string, std::shared_ptr<CommitReading>> recent_;
    Latest<CommitRequest, gitkit::CommitDetail> details_;
    Latest<CommitRequest, std::vector<gitkit::ChangeCounts>> counts_;
    Latest<CommitDiffRequest, gitkit::ParsedDiff> diffs_;
    std::vector<QPropertyNotifier> notifiers_;
};

} // namespace plovik
