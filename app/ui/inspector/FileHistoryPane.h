// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "app/store/RepositoryStore.h"
#include "app/store/readers/CommitReaders.h"
#include "app/store/readers/FileReaders.h"
#include "app/store/readers/Latest.h"
#include "app/store/readers/Streamed.h"
#include "app/ui/inspector/FileHistoryList.h"

#include <QPointer>
#include <QProperty>
#include <QTimer>
#include <QWidget>

#include <optional>
#include <string>
#include <vector>

class QStackedWidget;

namespace plovik {

class DiffPane;
class EmptyState;
class ReadingRow;

/// The history of one file, and below it the diff of the file in the selected commit. It reads in the background and
/// shows commits as they are found: the newest request wins. Nothing is read while the pane is hidden. The history of a
/// file of the working tree follows HEAD. Main thread.
class FileHistoryPane : public QWidget {
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
    void showEvent(QShowEvent* event) override;
    void hideEvent(QHideEvent* event) override;

private:
    using Histories = Streamed<FileHistoryRequest, gitkit::FileRevision>;

    FileHistoryRequest requestFor(const InspectedFile& file) const;
    void awaitRows();
    void goOn();
    void stop();
    void take(std::vector<gitkit::FileRevision> revisions, Histories::Arrival arrival);
    void readingEnded();
    void showReading();
    QString countText() const;
    bool isOnDisplay(const InspectedFile& file) const;
    bool isListed() const;
    void showDiffOfCurrent();
    void diffRead();
    void showSentence(const QString& title, const QString& description);
    void showPage(QWidget* page);

    RepositoryStore& store_;
    ReadingRow* row_;
    FileHistoryList* list_;
    DiffPane* diff_;
    QWidget* content_;
    EmptyState* sentence_;
    EmptyState* loading_;
    QStackedWidget* pages_;
    QTimer loadingSoon_;
    std::optional<InspectedFile> file_;
    std::optional<InspectedFile> shown_; ///< the file whose commits are listed
    bool isInterrupted_ = false;         ///< reading goes on when the pane is shown again
    Histories histories_;
    Latest<CommitDiffRequest, gitkit::ParsedDiff> diffs_;
    std::vector<QPropertyNotifier> notifiers_;
};

} // namespace plovik
