// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "GitKit/records/ErrorKind.h"

#include <exception>
#include <stdexcept>
#include <string>

namespace gitkit {

/// Git ran and ended with a status that its caller does not accept, or was not run because the request made no sense.
/// what() is the description.
class GitError : public std::runtime_error {
public:
    /// `command` is the git subcommand, empty when there was none; `message` is what git said, trimmed.
    GitError(std::string command, int status, std::string message, ErrorKind kind = ErrorKind::other,
             Speaker speaker = Speaker::plovik);

    ErrorKind kind() const { return kind_; }
    Speaker speaker() const { return speaker_; }
    const std::string& command() const { return command_; }
    /// The exit status; 128 plus the signal's number when a signal ended git, as a shell reports it.
    int status() const { return status_; }
    const std::string& message() const { return message_; }

private:
    ErrorKind kind_;
    Speaker speaker_;
    std::string command_;
    int status_;
    std::string message_;
};

/// The kind of a GitError; ErrorKind::other for every other exception.
ErrorKind errorKindOf(const std::exception& failure);

/// Whose words what() is: git's own, those of one of its hooks, or ours for every other exception.
Speaker speakerOf(const std::exception& failure);

/// Git could not be started at all. what() is a sentence that a person can act on: git is missing, the folder is gone
/// or may not be entered.
class LaunchError : public std::runtime_error {
public:
    using Cause = LaunchCause;

    LaunchError(Cause cause, const std::string& sentence) : std::runtime_error(sentence), cause_(cause) {}

    Cause cause() const { return cause_; }

private:
    Cause cause_;
};

} // namespace gitkit
