// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "GitKit/records/CommitKind.h"
#include "app/store/RepositoryStore.h"
#include "app/store/readers/CommitReaders.h"
#include "app/store/readers/Latest.h"

#include <QWidget>

#include <QCoroTask>

#include <string>
#include <vector>

class QLabel;
class QScrollArea;

namespace plovik {

class CommitRefs;
class HashField;
class MessageText;

/// A commit in words: its message, who made it and when, its hash, its parents and its refs. Of a stash, what it is
/// called, when it was made and on what.
///
/// Shows what it is given; its links go to other commits through the store. Main thread.
class CommitHeader : public QWidget {
    Q_OBJECT

public:
    using CommitKind = gitkit::CommitKind;

    /// `store` outlives the header.
    CommitHeader(RepositoryStore& store, CommitKind kind, QWidget* parent = nullptr);

    /// Shows what the lists of the store know of a commit; the rest is to come.
    void expect(const std::string& hash);
    void showDetail(const gitkit::CommitDetail& detail);
    /// Says something quietly, until another commit is shown.
    void say(const QString& sentence);

    QSize sizeHint() const override;

protected:
    void changeEvent(QEvent* event) override;

private:
    void nameRead();

    const gitkit::Commit* commitOnPage(const std::string& hash) const;
    void take(const gitkit::CommitDetail& detail);
    void showFacts();
    void showRefs();
    void goTo(const std::string& hash);

    RepositoryStore& store_;
    Latest<std::string, std::string> names_;
    std::string clickedIn_; ///< the commit that was shown when a name was clicked
    CommitKind kind_;
    gitkit::CommitDetail shown_; ///< without its files
    QScrollArea* area_;
    MessageText* message_;
    CommitRefs* refs_;
    QLabel* people_;
    HashField* hash_;
    QLabel* parents_;
    QLabel* notice_;
    std::vector<QPropertyNotifier> notifiers_;
};

} // namespace plovik
