// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "GitKit/records/CommitMode.h"
#include "GitKit/records/Identity.h"
#include "app/store/GitAccess.h"
#include "app/store/MessageWriter.h"
#include "app/store/Observed.h"

#include <QCoreApplication>
#include <QString>

#include <optional>
#include <stop_token>
#include <string>
#include <vector>

namespace gitkit {
struct UndoStep;
}

namespace plovik {

class Changes;
class Snapshot;
class Undo;
class WindowState;
struct Failure;

/// The commit that is being written: subject, body and whether it amends; and the messages that git has prepared, that
/// are amended or that a language model writes. Owned by the store; main thread.
class CommitDraft {
    Q_DECLARE_TR_FUNCTIONS(plovik::CommitDraft)

public:
    CommitDraft(const GitAccess& git, WindowState& window, Snapshot& snapshot, Changes& changes, Undo& undo,
                MessageWriter writer);
    ~CommitDraft();
    CommitDraft(const CommitDraft&) = delete;
    CommitDraft& operator=(const CommitDraft&) = delete;

    Observed<QString, CommitDraft> commitSubject;
    Observed<QString, CommitDraft> commitBody;
    Observed<bool, CommitDraft> amend{false};
    Observed<bool, CommitDraft> generatingMessage{false};

    void setSubject(const QString& subject);
    void setBody(const QString& body);
    /// Sets `amend`. Fills an empty commit box with the message to amend.
    void setAmend(bool amends);
    struct Text {
        QString subject;
        QString body;
        bool operator==(const Text&) const = default;
    };
    Text text() const { return {commitSubject.value(), commitBody.value()}; }
    /// Returns the text without a template that was not edited.
    Text ownText() const { return holdsTemplate() ? Text{} : text(); }
    /// Shows a message that was written earlier, when HEAD was `head`, and was perhaps to amend it. It is dropped once the
    /// status shows that it was recorded since, and amends only the commit for which it was written.
    void restore(const Text& text, bool amends, const std::string& head);
    /// Empties the draft after `text` was recorded. What was typed meanwhile stays.
    void recorded(const Text& text);
    /// Splits a message into subject and body, and fills the commit box with them.
    void fillCommitFields(const QString& message);
    /// Starts a new message, with the template if there is one.
    void empty();

    bool canCommit() const;
    /// Commits. When a hook refuses, the alert offers to run it again, or to commit without hooks.
    void commit(gitkit::CommitHooks hooks = gitkit::CommitHooks::run);
    /// Writes into the configuration who makes the commits, and commits.
    void commitAs(const gitkit::Identity& identity, gitkit::IdentityPlace place);
    /// Returns the message to record, in UTF-8; or the original bytes of an amended message that was not edited.
    std::string message() const;
    /// Returns whether the commit box contains exactly the message that git has prepared and takes by itself.
    bool holdsPreparedMessage() const { return prepared_ && text() == *prepared_; }

    /// Returns whether the commit box contains nothing but the template that `commit.template` names.
    bool holdsTemplate() const;

    /// Fills the commit box with another message; undoMessage() brings back the text before it.
    void useMessage(const QString& message);
    /// Has a message written for the staged changes and fills the commit box with it. Returns whether it did; a failure
    /// is reported. Does nothing while a message is being written or when nothing is staged.
    QCoro::Task<bool> generateCommitMessage();
    /// Ends the writing of a message; the commit box stays as it is.
    void cancelCommitMessage();
    /// Returns what generateCommitMessage() would send. Throws std::exception when the changes cannot be read.
    QCoro::Task<MessageRequest> commitMessageRequest();
    /// Whether the commit box contains a generated or chosen message unchanged, so that undoMessage() can bring back the text
    /// before it.
    Observed<bool, CommitDraft> canUndoMessage{false};
    void undoMessage();

private:
    void commitAfter(const GitAccess::Operation& preparation, gitkit::CommitHooks hooks);
    bool offersWayOn(const Failure& failure);
    QCoro::Task<> askingWhoCommits();
    void takenBack(const gitkit::UndoStep& commit, bool isUndone);
    void setText(const Text& text);
    void showPrepared(const QString& message);
    QCoro::Task<> readingTemplate();
    QCoro::Task<> fillingAmended();
    void statusRead();
    QCoro::Task<> droppingIfRecorded(Text text);
    QCoro::Task<QString> writingMessage(std::stop_token stop);
    void updateMessageUndo();

    const GitAccess& git_;
    WindowState& window_;
    Snapshot& snapshot_;
    Changes& changes_;
    struct Amended {
        std::string bytes; ///< as git recorded them
        Text text;         ///< with which the box was filled
    };
    std::optional<Amended> amended_;
    struct Restored {
        Text text;
        bool amends = false;
        std::string head;
    };
    std::optional<Restored> restored_; ///< until the first status has been read
    std::optional<Text> prepared_;     ///< git's message that the box was filled with
    Text template_;                    ///< with which new messages begin
    struct Written {
        Text before;
        Text after;
    };
    /// The language model that writes messages.
    struct Writing {
        MessageWriter writer;
        std::stop_source stop = {};          ///< of the message that is being written
        std::optional<Written> written = {}; ///< the last one
    };
    Writing writing_;
};

} // namespace plovik
