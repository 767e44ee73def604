// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArray>
#include <QString>

#include <functional>
#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace plovik {

/// What a program that git started asks the user for.
enum class SignInKind {
    answer,     ///< a text: a name, a secret, "yes"
    permission, ///< yes or no
    notice,     ///< nothing to type, as when a security key is to be touched
};

/// A program that waits for an answer; destroying the question refuses it. Main thread.
class SignInQuestion {
public:
    virtual ~SignInQuestion() = default;

    SignInKind kind = SignInKind::answer;
    std::string text;        ///< as the program asks it
    std::string destination; ///< of ssh, "user@host" as git gave it; empty where it is not known

    /// To be called once. `text` is one line in UTF-8; no copy of it is kept.
    virtual void answer(QByteArray text) = 0;
    /// Called once, when the program is gone before it was answered; it may destroy the question.
    std::function<void()> gone = {};
};

/// The line over which the processes of one action ask. It is open as long as this object lives. Main thread.
class SignInLine {
public:
    virtual ~SignInLine() = default;

    /// Returns the variables that git must be started with.
    virtual std::vector<std::pair<std::string, std::string>> environment() const = 0;
};

/// Opens a line; `asked` is called for each question. Returns null when Plovik does not answer questions. Main thread.
using OpenSignIn =
    std::function<std::unique_ptr<SignInLine>(std::function<void(std::unique_ptr<SignInQuestion>)> asked)>;

/// A question as the user sees it.
struct SignInPrompt {
    quint64 id = 0;
    SignInKind kind = SignInKind::answer;
    std::string text;        ///< see SignInQuestion
    std::string destination; ///< see SignInQuestion
    QString action;          ///< "Fetching…"; empty for what shows no activity
    bool isRepeated = false; ///< the same was asked, and answered, before in this action

    bool operator==(const SignInPrompt&) const = default;
};

} // namespace plovik
