// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "GitKit/runner/GitRunner.h"

#include <string>
#include <vector>

namespace gitkit {

/// Runs a git command on exactly these paths, even if their names hold wildcards. Does nothing for an empty list, which
/// git would read as all paths. A list that is too long for a command line goes to standard input, so that it is still
/// one command and one change of the index. Throws as GitRunner::accepted() does.
void runOnPaths(const GitRunner& runner, std::vector<std::string> arguments, const std::vector<std::string>& paths);

} // namespace gitkit
