// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "app/store/RepositoryStore.h"
#include "app/store/readers/CommitReaders.h"
#include "app/store/readers/FileReaders.h"
#include "app/store/readers/Latest.h"
#include "app/ui/inspector/FileHistoryList.h"

#include <QPointer>
#include <QProperty>
#include <QStackedWidget>
#include <QTimer>

#include <optional>
#include <string>
#include <vector>

namespace plovik {

class DiffPane;
class EmptyState;

/// The history of one file, and below it the file's diff in the selected commit, at its path then. Reads in the
/// background: of several requests the last one counts. The history of a file of the working tree follows HEAD. Main
/// thread.
class FileHistoryPane : public QStackedWidget {
    Q_OBJECT

public:
    /// `store` outlives the pane.
    explicit FileHistoryPane(RepositoryStore& store, QWidget* parent = nullptr);

    /// Does nothing when the file's history stands there already.
    void open(const InspectedFile& file);

    FileHistoryList* list() const { return list_; }

Q_SIGNALS:
    void blameRequested(const gitkit::FileRevision& revision);
    void backRequested();

protected:
    void focusInEvent(QFocusEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;

private:
    /// What git is asked for.
    struct Source {
        std::string path;
        std::string revision;
        bool operator==(const Source&) const = default;
    };

    Source sourceOf(const InspectedFile& file) const;
    void read(int limit);
    void readMore();
    void historyRead();
    void take(std::vector<gitkit::FileRevision> revisions);
    void showDiffOfCurrent();
    void diffRead();
    void showSentence(const QString& title, const QString& description);
    void showPage(QWidget* page);

    RepositoryStore& store_;
    FileHistoryList* list_;
    DiffPane* diff_;
    QWidget* content_;
    EmptyState* sentence_;
    EmptyState* loading_;
    QTimer loadingSoon_;
    std::optional<InspectedFile> file_;
    std::optional<Source> wanted_; ///< the history that is to be on display
    std::optional<Source> shown_;
    int limit_ = 0; ///< how many commits were asked for
    bool hasMore_ = false;
    Latest<FileHistoryRequest, std::vector<gitkit::FileRevision>> histories_;
    Latest<CommitDiffRequest, gitkit::ParsedDiff> diffs_;
    std::vector<QPropertyNotifier> notifiers_;
};

} // namespace plovik
