// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "app/platform/SignIn.h"
#include "app/store/Observed.h"

#include <deque>
#include <map>
#include <memory>
#include <optional>
#include <set>
#include <string>

namespace gitkit {
struct RunContext;
} // namespace gitkit

namespace plovik {

/// What the programs ask that the changes of one store start. It shows one question after the other, the oldest first,
/// and takes a question away when the program that asked is gone or its change has ended. Owned by Changes; main thread.
class SignIns {
public:
    /// Of one change; each has its own.
    using Number = quint64;

    /// The question that is shown; nothing while none is asked.
    Observed<std::optional<SignInPrompt>, SignIns> prompt;

    /// Lets the runs of `context` ask from now on until end(), where `open` opens a line for them. `action` is the
    /// change's title.
    Number begin(const QString& action, const OpenSignIn& open, gitkit::RunContext& context);
    void end(Number number);
    /// Refuses what a change asks, now and later: a program that tries again is not heard again.
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

    std::map<Number, Action> actions_; ///< under way
    std::deque<Open> open_;            ///< the oldest first
    Number lastNumber_ = 0;
    quint64 lastPrompt_ = 0;
};

} // namespace plovik
