// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "GitKit/records/Movable.h"
#include "GitKit/records/RewriteOutcome.h"
#include "GitKit/records/RewritePlan.h"
#include "app/store/Observed.h"
#include "app/store/readers/Latest.h"
#include "app/store/readers/RewriteReaders.h"

#include <QCoreApplication>
#include <QString>

#include <optional>
#include <string>
#include <vector>

namespace plovik {

class Changes;
class History;
class Snapshot;
class WindowState;
struct Change;

/// The plan for the newest commits of a branch, mostly the one that is checked out: what may be changed, what is to become of it, and
/// what that comes to. Nothing is done before apply(). Owned by the store; main thread. Hashes are full.
///
/// A plan stands on the commits as they were when it was opened. When commits are added on top of them, it is made again
/// with those; when they are not there any more, it is dropped, and a notice says so.
class Rewriting {
    Q_DECLARE_TR_FUNCTIONS(plovik::Rewriting)

public:
    using Act = gitkit::RewriteStep::Act;

    Rewriting(const GitAccess& git, WindowState& window, Snapshot& snapshot, Changes& changes, History& history);
    ~Rewriting();
    Rewriting(const Rewriting&) = delete;
    Rewriting& operator=(const Rewriting&) = delete;

    /// Reads from now on what may be changed, also when HEAD has moved.
    void watch();
    /// What may be changed: of the local branch whose history is shown, or else of HEAD. Empty until it was read.
    Observed<gitkit::MovableCommits, Rewriting> movable;
    /// Whether it was read for the commits that there are.
    bool isKnown() const;
    /// The open plan; nullopt while there is none.
    Observed<std::optional<gitkit::RewritePlan>, Rewriting> plan;
    /// What the plan comes to; nullopt while that is found out, and without a plan.
    Observed<std::optional<gitkit::RewriteOutcome>, Rewriting> outcome;
    /// What becomes of the steps, the oldest first, as far as that is found out: the first ones before the rest.
    Observed<std::vector<gitkit::RewriteMark>, Rewriting> marks;

    const gitkit::MovableCommit* find(const std::string& commit) const;
    /// Returns a sentence that says why these cannot be changed; an empty text when they can.
    QString whyNot(const gitkit::Hashes& commits) const;

    // What the plan says of a commit.

    /// Returns nullopt where nothing was found out yet.
    std::optional<gitkit::RewriteMark> markOf(const std::string& commit) const;
    /// Returns the message that the commit will have, with those that are squashed into it.
    std::string messageOf(const std::string& commit) const;
    /// Returns how many commits say that they belong into another one.
    int fixups() const;

    // The words of the bar.

    QString sentence() const;
    /// Says which commits others may have; empty where they have none of them.
    QString publishedSentence() const;
    QString applyTitle() const;
    /// Says why the plan cannot be carried out, whatever runs; empty where it can.
    QString whyNotApplied() const;

    // Changing the plan; the first change opens it. What would change nothing does nothing.

    /// Places commits right above another one; above the oldest that may be changed where `below` is empty.
    void move(const gitkit::Hashes& commits, const std::string& below);
    void moveUp(const gitkit::Hashes& commits);
    void moveDown(const gitkit::Hashes& commits);
    /// `act` is squash or fixUp.
    void squash(const gitkit::Hashes& commits, const std::string& into, Act act);
    void squashIntoParent(const gitkit::Hashes& commits, Act act);
    void drop(const gitkit::Hashes& commits);
    /// Leaves them as they are.
    void keep(const gitkit::Hashes& commits);
    void reword(const std::string& commit, const QString& message);
    /// Makes two commits of one. Without an open plan it is done at once; where that fails, the plan keeps it.
    void split(const std::string& commit, gitkit::CommitPart part, const QString& first, const QString& second);
    void stopAt(const std::string& commit);
    /// Puts the commits that say so into those that they name.
    void squashFixups();
    /// Drops the commits of which nothing is left.
    void dropEmptied();

    /// Carries the plan out. Asks first where no commit would be left.
    void apply();
    void cancel();

    /// Puts commits on top of others, in memory where nothing conflicts. `onto` is what they are put on, as it is shown.
    void rebase(const gitkit::RebaseProposal& proposal, const QString& onto);

private:
    MovableQuestion wantedMovable() const;
    void followBranch();
    void selectWanted();
    void readMovable();
    void takeMovable();
    void takeBeginning();
    void takeOutcome();
    void rehearse(const gitkit::RewritePlan& next);
    void follow(const gitkit::MovableCommits& now);
    gitkit::RewritePlan current() const;
    void take(gitkit::RewritePlan next);
    void show(std::optional<gitkit::RewritePlan> next);
    void applyNow();
    Change inMemory(const gitkit::RewritePlan& plan);
    Change byGit(const gitkit::RewritePlan& plan);
    void tellBranches(Change& change, const gitkit::RewritePlan& what) const;
    static QString shownBranch(const std::string& branch);

    WindowState& window_;
    Snapshot& snapshot_;
    Changes& changes_;
    History& history_;
    bool isWatching_ = false;
    std::string wanted_; ///< commit that is selected once the history shows it
    QPropertyNotifier rowsNotifier_;
    QPropertyNotifier selectionNotifier_;
    Latest<MovableQuestion, gitkit::MovableCommits> movableReading_;
    Latest<gitkit::RewritePlan, gitkit::RewriteOutcome> beginning_; ///< of the plan, which is there soon
    Latest<gitkit::RewritePlan, gitkit::RewriteOutcome> rehearsal_;
};

} // namespace plovik
