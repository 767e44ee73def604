// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "GitKit/records/CommitMode.h"
#include "app/store/CommitDraft.h"
#include "app/store/Observed.h"
#include "app/store/actions/Actors.h"

#include <QCoreApplication>
#include <QString>

#include <optional>
#include <string>

namespace plovik {

/// The commit box while it writes into an older commit: what is staged goes there, and its message is edited. Meanwhile the
/// message of the next commit is kept aside, and comes back afterwards. Owned by the store; main thread.
class CommitInto {
    Q_DECLARE_TR_FUNCTIONS(plovik::CommitInto)

public:
    /// The parts of `actors` outlive this one.
    explicit CommitInto(const Actors& actors) : actors_(actors) {}
    CommitInto(const CommitInto&) = delete;
    CommitInto& operator=(const CommitInto&) = delete;

    /// Full hash of the commit; empty while the box is about the next commit.
    Observed<std::string, CommitInto> target;
    bool isChosen() const { return !target.value().empty(); }
    const QString& subject() const { return subject_; }
    /// Returns the message of the next commit that waits.
    const CommitDraft::Text& keptText() const { return kept_; }
    bool keptAmends() const { return keptAmends_; }

    /// Turns the box to a commit of Rewriting::movable and fills it with its message. Does nothing for others.
    void choose(const std::string& commit);
    /// Turns it back to the next commit. A message that was edited comes back by undoing the message.
    void leave();

    /// Whether the message is another than the commit has.
    bool isEdited() const { return actors_.draft.text() != filled_; }

    /// Returns a sentence that says why it cannot be committed; empty when it can.
    QString whyNot() const;
    /// Commits into it, and then turns the box back.
    void commit();

private:
    void restore();

    Actors actors_;
    QString subject_;
    std::string subjectBytes_;
    CommitDraft::Text filled_; ///< the commit's own message, as the box shows it
    CommitDraft::Text kept_;
    bool keptAmends_ = false;
};

} // namespace plovik
