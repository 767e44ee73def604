// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "GitKit/runner/GitRunner.h"

#include <string>
#include <utility>
#include <vector>

namespace gitkit {

/// The environment in which git reads every path as it is, even if its name holds wildcards.
inline const std::vector<std::pair<std::string, std::string>> literalPaths{{"GIT_LITERAL_PATHSPECS", "1"}};

/// Runs a git command on exactly these paths, even if their names hold wildcards. Does nothing for an empty list, which
/// git would read as all paths. A list that is too long for a command line goes to standard input, so that it is still
/// one command and one change of the index. Throws as GitRunner::accepted() does.
void runOnPaths(const GitRunner& runner, std::vector<std::string> arguments, const std::vector<std::string>& paths);

} // namespace gitkit
