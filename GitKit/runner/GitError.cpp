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

GitError::GitError(std::string command, int status, std::string message)
    : std::runtime_error(description(command, status, message)), command_(std::move(command)), status_(status),
      message_(std::move(message))
{}

} // namespace gitkit
