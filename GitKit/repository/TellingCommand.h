// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "GitKit/runner/GitRunner.h"

#include <string>
#include <vector>

namespace gitkit {

class GitRepository;

/// Waits until no other git holds the lock of the working tree's index, for about a second. For commands that take the
/// lock several times, so that a failure may leave half of their work: these cannot be repeated.
void waitForIndex(const GitRepository& repo);

/// Runs a command that may explain a failure on both streams: git prints conflicts on one and hints on the other.
/// Throws a GitError with the text of both.
GitOutput runTelling(const GitRunner& runner, const std::vector<std::string>& arguments,
                     const RunOptions& options = {});

} // namespace gitkit
