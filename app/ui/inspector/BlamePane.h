// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "app/store/RepositoryStore.h"
#include "app/store/readers/FileReaders.h"
#include "app/store/readers/Latest.h"
#include "app/ui/diff/syntax/SyntaxHighlighter.h"
#include "app/ui/inspector/BlameList.h"
#include "app/ui/inspector/BlameReading.h"

#include <QPointer>
#include <QProperty>
#include <QStackedWidget>
#include <QTimer>

#include <atomic>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace plovik {

class EmptyState;

/// The blame of one file, or a sentence that says why there is none. It reads in the background: the newest request
/// wins, and the old blame stays on display until the new one has arrived. A blame of the working tree is read again
/// when the file or HEAD changes, and keeps its place. Main thread.
class BlamePane : public QStackedWidget {
    Q_OBJECT

public:
    /// `store` outlives the pane.
    explicit BlamePane(RepositoryStore& store, QWidget* parent = nullptr);

    /// The blame on display, to come back to it.
    struct Memory {
        std::shared_ptr<const BlameDocument> document;
        std::optional<BlameStamp> stamp;
        BlameList::Hold hold;
    };

    /// Shows a file from its start. Does nothing when the file is on display already.
    void open(const InspectedFile& file);
    /// Shows a file as it was when `memory` was taken, and reads it again where it may have changed.
    void reopen(const InspectedFile& file, const Memory& memory);
    /// Shows a file as it was before the commit of a row on display. The line keeps its place on the screen.
    void openBefore(const InspectedFile& file, int row);
    Memory memory() const;

    BlameList* list() const { return list_; }

Q_SIGNALS:
    void beforeRequested(int row);
    void backRequested();
    void fileHistoryRequested();
    void linesHistoryRequested(const gitkit::LineRange& lines);
    void linesLinkRequested(const gitkit::LineRange& lines, bool isOpened);

protected:
    void focusInEvent(QFocusEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;

private:
    void showReasonAgainstLines();
    void colour();
    void read(const BlameList::Hold& hold);
    void readAgain();
    void blameRead();
    void take(const BlameReading& reading);
    void coloured();
    void showSentence(const QString& title, const QString& description);
    void showPage(QWidget* page);
    void showCommit(int row);

    RepositoryStore& store_;
    BlameList* list_;
    EmptyState* sentence_;
    QWidget* loading_;
    QTimer loadingSoon_;
    std::optional<InspectedFile> file_;
    std::optional<InspectedFile> shown_; ///< the file whose lines stand in the list
    std::optional<BlameStamp> stamp_;    ///< of what stands there
    BlameList::Hold hold_;               ///< where to show the lines that are being read
    bool isOld_ = false;                 ///< something changed while they were read
    Latest<BlameRequest, BlameReading> blames_;
    Latest<SyntaxRequest, std::shared_ptr<const FileSyntax>> colours_;
    std::vector<QPropertyNotifier> notifiers_;
};

} // namespace plovik
