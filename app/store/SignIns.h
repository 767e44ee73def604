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

/// The questions of the programs that the changes of one store start. Shows one question after the other, the oldest
/// first, and removes a question when the program that asked or its change has ended. Owned by Changes; main thread.
class SignIns {
public:
    /// Identifies one change.
    using Number = quint64;

    /// The question that is shown; nullopt while there is none.
    Observed<std::optional<SignInPrompt>, SignIns> prompt;

    /// Lets the runs of `context` ask until end() is called. `open` opens the line on which they ask. `action` is the
    /// change's title.
    Number begin(const QString& action, const OpenSignIn& open, gitkit::RunContext& context);
    void end(Number number);
    /// Refuses all questions of a change, now and later, so that a program that tries again is refused too.
    void refuse(Number number);

    void answer(quint64 id, const QString& text);
    struct Cancelled {
        Number number = 0;
        SignInKind kind = SignInKind::answer;
    };
    /// Refuses all questions of the change that asked this one. Returns nullopt when the question is gone.
    std::optional<Cancelled> cancel(quint64 id);

private:
    struct Action {
        QString name;
        std::unique_ptr<SignInLine> line; ///< null when its programs ask somewhere else
        bool isRefused = false;
        std::set<std::string> answered; ///< texts of the answered questions
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

    std::map<Number, Action> actions_; ///< of the changes under way
    std::deque<Open> open_;            ///< the oldest first
    Number lastNumber_ = 0;
    quint64 lastPrompt_ = 0;
};

} // namespace plovik
