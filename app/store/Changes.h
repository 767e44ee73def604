// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "app/await/Turnstile.h"
#include "app/await/Worker.h"
#include "app/platform/SignIn.h"
#include "app/store/CommandLog.h"
#include "app/store/Failure.h"
#include "app/store/GitAccess.h"
#include "app/store/Observed.h"
#include "app/store/SignIns.h"
#include "app/store/Snapshot.h"
#include "app/store/StepKeeping.h"
#include "app/store/Verb.h"

#include <QCoreApplication>
#include <QString>

#include <algorithm>
#include <chrono>
#include <functional>
#include <initializer_list>
#include <list>
#include <optional>
#include <stop_token>
#include <vector>

namespace plovik {

class ActionRuns;
class Trust;
class WindowState;

/// The description of one change of the repository: what it is, what it runs, and what follows.
struct Change {
    Verb verb;
    /// The text that is shown while it runs ("Fetching…"). A change without a title is meant to take an instant: it shows
    /// nothing until two seconds have passed, and then gets the title of its verb.
    QString title = {};
    /// Runs on the worker before the way back is kept, and fails as the operation does. For what is never taken back.
    GitAccess::Operation prepare = {};
    GitAccess::Operation operation; ///< runs on the worker; its exception is the failure
    /// What keeps it, so that it can be taken back; nullopt for what cannot be.
    std::optional<Undoable> undo = {};
    /// What the user has agreed to for keeping it.
    StepKeeping::Consent consent = StepKeeping::Consent::none;
    /// Called when it begins, which may be after a question. Main thread.
    std::function<void()> begins = {};
    /// What it writes was chosen from a diff, which may have been read without the repository's filters.
    bool isFromDiff = false;
    /// Called after success, before the repository is read again. Main thread.
    std::function<void()> succeeded = {};
    /// Called after a failure, unless the user has cancelled the change. Returns whether it has handled the failure;
    /// otherwise the failure is reported. Main thread.
    std::function<bool(const Failure&)> failed = {};
    /// Called first when the change has ended, however it did, also after a cancel. Main thread.
    std::function<void()> ended = {};
};

/// A change that has begun and has not ended.
struct RunningChange {
    quint64 number = 0; ///< grows with each change
    Verb verb = Verb::fetch;
    QString title;

    bool operator==(const RunningChange&) const = default;
};

/// A hook that git runs for a change.
struct RunningHook {
    CommandLog::Number command = 0; ///< the run of git that has started it
    QString name;                   ///< "pre-commit"
    std::chrono::steady_clock::time_point began;

    bool operator==(const RunningHook&) const = default;
};

/// The one way in: every change of the repository passes through here. This class takes turns, lets git sign in,
/// cancels, shows progress, reports failures and has the repository read again. Owned by the store; main thread.
///
/// Changes that touch the index, the working tree or the stashes run one at a time, in the order of their requests;
/// other changes run beside them. A change without a title waits for its turn. A change with a title is not begun when
/// it would have to wait for another one with a title, or would use the network at the same time: see offers().
class Changes {
    Q_DECLARE_TR_FUNCTIONS(plovik::Changes)

public:
    Changes(const GitAccess& git, const CommandLog& log, Snapshot& snapshot, Trust& trust, WindowState& window,
            OpenSignIn signIn);
    ~Changes();
    Changes(const Changes&) = delete;
    Changes& operator=(const Changes&) = delete;

    /// Begins a change and returns at once. Drops the change and returns false when it has a title and its verb is not
    /// offered. Returns false, too, when the user must trust the repository's programs first: see asksFirst().
    bool run(Change change);
    /// Returns whether run() asks before it begins a change with this verb.
    bool asksFirst(Verb verb) const;

    /// Changes with a title that have begun, the oldest first.
    Observed<std::vector<RunningChange>, Changes> running;
    bool isRunning(std::initializer_list<Verb> verbs) const;
    /// Returns whether a change with a title would begin now.
    bool offers(Verb verb) const { return !isReadOnly() && !obstacle(verb); }
    /// Returns whether no change can begin at all: a bare repository is only shown.
    bool isReadOnly() const { return snapshot_.status.value().isBare; }
    /// Returns the running change that keeps the verb from being offered, or nullopt when it is offered.
    std::optional<RunningChange> obstacle(Verb verb) const;
    /// Returns a sentence that says why a verb is not offered, or an empty text when it is.
    QString whyNot(Verb verb) const;
    /// Returns whether a change that takes a turn is under way, so that the next one has to wait.
    bool isTurnTaken() const { return turnsTaken_ > 0; }
    /// Returns whether changes without a title are under way.
    bool hasUntitled() const { return std::ranges::any_of(runs_, &Run::isQuick); }

    // The following describe the newest running change with a title.

    /// Its title; nullopt while none runs.
    Observed<std::optional<QString>, Changes> activity;
    /// Its progress in git's words; empty while git reports none.
    Observed<QString, Changes> progress;
    /// The hook that git runs for it now; nullopt while it runs none, or does not say so.
    Observed<std::optional<RunningHook>, Changes> hook;
    /// Whether it has been cancelled and has not ended yet.
    Observed<bool, Changes> isCancelling{false};
    /// Ends it together with all processes that git has started: asks them to end, and kills them after two seconds. No
    /// failure is reported.
    void cancelActivity();

    /// Returns whether a command belongs to a change that runs and was not cancelled.
    bool isOfRunning(CommandLog::Number command) const;
    /// Ends the change that a command belongs to, as cancelActivity() does.
    void cancelChangeOf(CommandLog::Number command);

    /// What git, or a program that it started, asks during a change: one question at a time, the oldest first. A
    /// question disappears when the program that asked it or its change has ended.
    const Observed<std::optional<SignInPrompt>, SignIns>& prompt() const { return signIns_.prompt; }
    /// Answers a prompt; "yes" gives a permission. Does nothing when the prompt is gone.
    void answerPrompt(quint64 id, const QString& text) { signIns_.answer(id, text); }
    /// Refuses this question and all later ones of its change, which then fails with git's own message.
    void cancelPrompt(quint64 id);

    const CommandLog& commandLog() const { return log_; }

    /// Sets the function that is told of every change that was kept, after it has ended. For Undo alone.
    void tellKept(std::function<void(const StepKeeping&)> tell) { tellKept_ = std::move(tell); }

    /// Sets the function that is told first of every failure that its change has not handled. Returns whether it takes it.
    /// For Conflicts alone.
    void tellStops(std::function<bool(const Failure&)> tell) { tellStops_ = std::move(tell); }

    /// Returns how many changes have ended. A read that began before the last one ended may not show its result.
    qint64 ended() const { return ended_; }

private:
    struct Run {
        RunningChange shown;
        std::stop_source stop;
        SignIns::Number signIn = 0;
        QString progress = {};
        bool isCancelling = false;
        bool isQuick = false;   ///< it began without a title
        bool isWaiting = false; ///< for its turn
        std::unique_ptr<Worker::Delay> untilShown = {};
        std::optional<RunningHook> hook = {};
        std::shared_ptr<const ActionRuns> commands = {};
    };
    void askToTrust(Change change);
    QCoro::Task<> running_(Change change, quint64 number);
    QCoro::Task<> keepingEnd(std::shared_ptr<StepKeeping> keeping, Verb verb, bool hasFailed);
    bool asksToKeep(const Change& change, const std::exception& thrown);
    void askToMoveAside(Change change, const std::vector<std::string>& paths);
    void askToDoWithoutUndo(Change change, const NotKept& why);
    std::shared_ptr<ActionRuns> listenTo(quint64 number);
    std::list<Run>::iterator find(quint64 number);
    void showIfSlow(quint64 number);
    static bool isShown(const Run& run);
    void cancel(Run& run);
    std::list<Run>::const_iterator findWith(CommandLog::Number command) const;
    void offerAgain(const Change& change, const ActionRuns& runs);
    void show();

    const GitAccess& git_;
    const CommandLog& log_;
    Snapshot& snapshot_;
    Trust& trust_;
    WindowState& window_;
    OpenSignIn openSignIn_;
    Turnstile turns_;
    SignIns signIns_;
    std::list<Run> runs_; ///< the changes under way, the oldest first
    int turnsTaken_ = 0;  ///< the number of changes that hold or wait for a turn
    quint64 lastNumber_ = 0;
    qint64 ended_ = 0;
    std::function<void(const StepKeeping&)> tellKept_;
    std::function<bool(const Failure&)> tellStops_;
};

} // namespace plovik
