// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "GitKit/runner/GitRunner.h"

#include <string>
#include <vector>

namespace gitkit {

/// Runs a git command on exactly these paths, whatever wildcards their names hold. Does nothing without a path: to git
/// that would mean all. A list too long for a command line goes on standard input, so that it stays one command and
/// one change of the index. Throws as GitRunner::accepted() does.
void runOnPaths(const GitRunner& runner, std::vector<std::string> arguments, const std::vector<std::string>& paths);

} // namespace gitkit
