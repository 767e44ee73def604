// SPDX-License-Identifier: GPL-3.0-or-later
#include "GitKit/runner/GitError.h"

#include <utility>

namespace gitkit {

namespace {

std::string description(const std::string& command, int status, const std::string& message)
{
    if (!message.empty())
        return message;
    return "git " + command + " failed (exit code " + std::to_string(status) + ")";
}

} // namespace

GitError::GitError(std::string command, int status, std::string message, ErrorKind kind, Speaker speaker)
    : std::runtime_error(description(command, status, message)), kind_(kind), speaker_(speaker),
      command_(std::move(command)), status_(status), message_(std::move(message))
{}

ErrorKind errorKindOf(const std::exception& failure)
{
    const auto* const error = dynamic_cast<const GitError*>(&failure);
    return error ? error->kind() : ErrorKind::other;
}

Speaker speakerOf(const std::exception& failure)
{
    const auto* const error = dynamic_cast<const GitError*>(&failure);
    if (!error || error->speaker() != Speaker::git)
        return Speaker::plovik;
    return error->kind() == ErrorKind::rejectedByHook ? Speaker::hook : Speaker::git;
}

} // namespace gitkit
