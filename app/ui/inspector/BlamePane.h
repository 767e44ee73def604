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

/// The blame of one file, or why there is none. Reads in the background: of several requests the last one counts, and
/// what stands on display stays until it has arrived. A blame of the working tree follows the file and HEAD, and keeps
/// its place. Main thread.
class BlamePane : public QStackedWidget {
    Q_OBJECT

public:
    /// `store` outlives the pane.
    explicit BlamePane(RepositoryStore& store, QWidget* parent = nullptr);

    /// What is on display, to come back to.
    struct Memory {
        std::shared_ptr<const BlameDocument> document;
        std::optional<BlameStamp> stamp;
        BlameList::Hold hold;
    };

    /// Shows a file from its start; does nothing when it stands there already.
    void open(const InspectedFile& file);
    /// Shows a file as it was when `memory` was taken, and reads it again where it may have changed.
    void reopen(const InspectedFile& file, const Memory& memory);
    /// Shows a file as it was before the commit of a row that is on display, with that line where it is.
    void openBefore(const InspectedFile& file, int row);
    Memory memory() const;

    BlameList* list() const { return list_; }

Q_SIGNALS:
    void beforeRequested(int row);
    void backRequested();
    void fileHistoryRequested();

protected:
    void focusInEvent(QFocusEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;

private:
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
    BlameList::Hold hold_;               ///< where the lines are to stand that are being read
    bool isOld_ = false;                 ///< something changed while they were read
    Latest<BlameRequest, BlameReading> blames_;
    Latest<SyntaxRequest, std::shared_ptr<const FileSyntax>> colours_;
    std::vector<QPropertyNotifier> notifiers_;
};

} // namespace plovik
