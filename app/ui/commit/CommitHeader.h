// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "GitKit/records/CommitKind.h"
#include "GitKit/records/WebLink.h"
#include "app/store/RepositoryStore.h"
#include "app/store/readers/CommitReaders.h"
#include "app/store/readers/Latest.h"

#include <QWidget>

#include <QCoroTask>

#include <map>
#include <string>
#include <vector>

class QScrollArea;

namespace plovik {

class CommitFactsBox;
class MessageOverFacts;
class MessageText;

/// A commit in words: subject, author with initials and date, hash, parents, refs and the rest of the message; or a
/// stash: subject, date, the commit that it was made on, and the rest. Where the facts would leave little room for the
/// message, they are shown in brief. No line is cut at an edge, however far the text is scrolled. Links to other commits
/// select them in the store. Main thread.
class CommitHeader : public QWidget {
    Q_OBJECT

public:
    using CommitKind = gitkit::CommitKind;

    /// `store` outlives the header.
    CommitHeader(RepositoryStore& store, CommitKind kind, QWidget* parent = nullptr);

    /// Shows what the store's lists know of a commit until showDetail() is called.
    void expect(const std::string& hash);
    void showDetail(const gitkit::CommitDetail& detail);
    /// Shows a sentence below the commit until another commit is shown.
    void say(const QString& sentence);

    /// Returns the height at which all can be read, or where that is more than `available`, the best height up to it.
    int bestHeight(int available) const;
    /// Returns where the lines are that are in sight as a whole.
    QRect wholeLines() const;

    QSize sizeHint() const override;

protected:
    void resizeEvent(QResizeEvent* event) override;
    void changeEvent(QEvent* event) override;

private:
    void nameRead();
    void askForReferences();
    void signatureRead();
    void showSignature(const gitkit::Signature& signature);
    void showLinks();
    void place();
    void coverCutLines();
    int factsHeight(bool isBrief) const;
    int heightOf(bool isBrief) const;
    bool isTightAt(int height) const;

    std::optional<gitkit::Commit> commitOnPage(const std::string& hash) const;
    void take(const gitkit::CommitDetail& detail);
    void showFacts();
    void showRefs();
    void goTo(const std::string& hash);

    RepositoryStore& store_;
    Latest<std::string, std::string> names_;
    Latest<gitkit::WebLinkRequest, gitkit::ReferenceAddresses> references_;
    Latest<std::string, gitkit::Signature> signature_;
    std::map<std::string, gitkit::Signature> signatures_; ///< that were checked
    std::string clickedIn_; ///< the commit on display when a hash in the message was clicked
    CommitKind kind_;
    gitkit::CommitDetail shown_; ///< without its files
    QScrollArea* area_;
    MessageOverFacts* text_;
    MessageText* message_;
    CommitFactsBox* facts_;
    QWidget* topCover_; ///< over a line that is cut at the edge
    QWidget* bottomCover_;
    bool isPlacing_ = false;
    std::vector<QPropertyNotifier> notifiers_;
};

} // namespace plovik
