// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <stdexcept>
#include <string>

namespace gitkit {

/// Git ran and ended with a status that its caller does not accept. what() is the description.
class GitError : public std::runtime_error {
public:
    /// `command` is the git subcommand, empty when there was none; `message` is what git said, trimmed.
    GitError(std::string command, int status, std::string message);

    const std::string& command() const { return command_; }
    /// The exit status; a git that a signal ended reports 128 plus the signal, as a shell does.
    int status() const { return status_; }
    const std::string& message() const { return message_; }

private:
    std::string command_;
    int status_;
    std::string message_;
};

/// Git could not be started at all. what() is a sentence that a person can act on: git is missing, the folder is gone
/// or may not be entered.
class LaunchError : public std::runtime_error {
public:
    enum class Cause { gitMissing, folderMissing, notPermitted, other };

    LaunchError(Cause cause, const std::string& sentence) : std::runtime_error(sentence), cause_(cause) {}

    Cause cause() const { return cause_; }

private:
    Cause cause_;
};

} // namespace gitkit
