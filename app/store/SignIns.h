// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "GitKit/runner/RunContext.h"
#include "app/platform/SignIn.h"

#include <QProperty>

#include <deque>
#include <map>
#include <memory>
#include <optional>
#include <set>
#include <string>

namespace plovik {

/// What the programs ask that one store's actions start: puts one question after the other into `prompt`, the oldest
/// first, and takes it away when whoever asked is gone or its action has ended. Owned by the store. Main thread.
class SignIns {
public:
    /// One action's; each has its own.
    using Number = quint64;

    /// `prompt` outlives this.
    explicit SignIns(QProperty<std::optional<SignInPrompt>>& prompt) : prompt_(prompt) {}

    /// Lets the runs of `context` ask from now on until end(), where `open` opens a line for them. `action` is what the
    /// user sees it called.
    Number begin(const QString& action, const OpenSignIn& open, gitkit::RunContext& context);
    void end(Number number);
    /// Refuses what an action asks, now and later: whoever tries several times, or forever, is not listened to again.
    void refuse(Number number);

    void answer(quint64 id, const QString& text);
    struct Cancelled {
        Number number = 0;
        SignInKind kind = SignInKind::answer;
    };
    /// Refuses that question's action; nothing when the question is not open any more.
    std::optional<Cancelled> cancel(quint64 id);

private:
    struct Action {
        QString name;
        std::unique_ptr<SignInLine> line; ///< null where its programs ask elsewhere
        bool isRefused = false;
        std::set<std::string> answered; ///< questions, not answers
    };
    struct Open {
        SignInPrompt prompt;
        Number number = 0;
        std::unique_ptr<SignInQuestion> question;
    };

    void asked(Number number, std::unique_ptr<SignInQuestion> question);
    std::deque<Open>::iterator find(quint64 id);
    std::optional<Open> take(quint64 id);
    void show();

    QProperty<std::optional<SignInPrompt>>& prompt_;
    std::map<Number, Action> actions_; ///< under way
    std::deque<Open> open_;            ///< the oldest first
    Number lastNumber_ = 0;
    quint64 lastPrompt_ = 0;
};

} // namespace plovik
