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

/// The history of one file, and below it the diff of the file in the selected commit. It reads in the background: the
/// newest request wins. The history of a file of the working tree follows HEAD. Main thread.
class FileHistoryPane : public QStackedWidget {
    Q_OBJECT

public:
    /// `store` outlives the pane.
    explicit FileHistoryPane(RepositoryStore& store, QWidget* parent = nullptr);

    /// Shows the history of a file. Does nothing when it is on display already.
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
    std::optional<Source> wanted_; ///< the newest history that was asked for
    std::optional<Source> shown_;
    int limit_ = 0; ///< how many commits were asked for
    bool hasMore_ = false;
    Latest<FileHistoryRequest, std::vector<gitkit::FileRevision>> histories_;
    Latest<CommitDiffRequest, gitkit::ParsedDiff> diffs_;
    std::vector<QPropertyNotifier> notifiers_;
};

} // namespace plovik
