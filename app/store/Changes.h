// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "app/await/Turnstile.h"
#include "app/platform/SignIn.h"
#include "app/store/CommandLog.h"
#include "app/store/Failure.h"
#include "app/store/GitAccess.h"
#include "app/store/Observed.h"
#include "app/store/SignIns.h"
#include "app/store/Snapshot.h"
#include "app/store/Verb.h"

#include <QCoreApplication>
#include <QString>

#include <functional>
#include <initializer_list>
#include <list>
#include <optional>
#include <stop_token>
#include <vector>

namespace plovik {

class ActionRuns;
class WindowState;

/// One change of the repository, described: what it is, what it runs, and what follows.
struct Change {
    Verb verb;
    /// What it is called while it runs ("Fetching…"). Without a title it shows nothing and cannot be cancelled, as
    /// suits what takes an instant.
    QString title = {};
    GitAccess::Operation operation; ///< runs on the worker; what it throws is the failure
    /// After success, before the repository is read again. Main thread.
    std::function<void()> succeeded = {};
    /// After a failure that the user did not ask for. Returns whether it dealt with it; otherwise it is reported.
    std::function<bool(const Failure&)> failed = {};
};

/// A change that has begun and not ended.
struct RunningChange {
    quint64 number = 0; ///< grows with each change
    Verb verb = Verb::fetch;
    QString title;

    bool operator==(const RunningChange&) const = default;
};

/// The one way in: whatever changes the repository passes through here. It alone takes turns, lets git sign in, cancels,
/// tells progress, reports the failure and has the repository read again. Owned by the store; main thread.
///
/// What touches the index, the working tree or the stashes passes one at a time, in the order in which it came; the
/// rest runs beside it. Changes without a title wait. Of those with one, a change that would have to wait for another,
/// or that would use the network beside another, is not begun: see offers().
class Changes {
    Q_DECLARE_TR_FUNCTIONS(plovik::Changes)

public:
    Changes(const GitAccess& git, const CommandLog& log, Snapshot& snapshot, WindowState& window, OpenSignIn signIn);
    ~Changes();
    Changes(const Changes&) = delete;
    Changes& operator=(const Changes&) = delete;

    /// Begins a change and returns at once. Returns false, and drops it, when its verb is not offered.
    bool run(Change change);

    /// Changes with a title that have begun, the oldest first.
    Observed<std::vector<RunningChange>, Changes> running;
    bool isRunning(std::initializer_list<Verb> verbs) const;
    /// Whether a change with a title would begin now.
    bool offers(Verb verb) const { return !obstacle(verb); }
    /// Returns the running change for which the verb is not offered.
    std::optional<RunningChange> obstacle(Verb verb) const;
    /// Returns a sentence that says why a verb is not offered, and nothing while it is.
    QString whyNot(Verb verb) const;
    /// Whether something that passes one at a time is under way, so that what is asked for now waits.
    bool isTurnTaken() const { return turnsTaken_ > 0; }
    /// Whether changes without a title are under way.
    bool hasUntitled() const { return runs_.size() > running.value().size(); }

    // Of the running changes the newest is shown.

    /// Its title; nothing while none runs.
    Observed<std::optional<QString>, Changes> activity;
    /// How far git says it has come, in git's words; empty while git says nothing.
    Observed<QString, Changes> progress;
    /// It has been asked to end.
    Observed<bool, Changes> isCancelling{false};
    /// Ends it, with all that git has started for it: gently, and after two seconds firmly. Nothing is reported.
    void cancelActivity();

    /// What git, or a program that it started, asks during a change: one question at a time, the oldest first. It goes
    /// away with the program that asked it and when its change ends.
    const Observed<std::optional<SignInPrompt>, SignIns>& prompt() const { return signIns_.prompt; }
    /// For a permission, "yes" gives it. Does nothing when that prompt stands no more.
    void answerPrompt(quint64 id, const QString& text) { signIns_.answer(id, text); }
    /// Refuses this question and all later ones of its change, which then fails in git's words.
    void cancelPrompt(quint64 id);

    const CommandLog& commandLog() const { return log_; }

    /// How many changes have ended: a read that began before the last one ended may not know of it.
    qint64 ended() const { return ended_; }

private:
    struct Run {
        RunningChange shown;
        std::stop_source stop;
        SignIns::Number signIn = 0;
        QString progress = {};
        bool isCancelling = false;
    };
    QCoro::Task<> running_(Change change, quint64 number);
    std::shared_ptr<ActionRuns> listenTo(quint64 number);
    std::list<Run>::iterator find(quint64 number);
    void cancel(Run& run);
    void show();

    const GitAccess& git_;
    const CommandLog& log_;
    Snapshot& snapshot_;
    WindowState& window_;
    OpenSignIn openSignIn_;
    Turnstile turns_;
    SignIns signIns_;
    std::list<Run> runs_; ///< those under way, the oldest first
    int turnsTaken_ = 0;  ///< by changes that have come and not ended
    quint64 lastNumber_ = 0;
    qint64 ended_ = 0;
};

} // namespace plovik
