// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "GitKit/runner/GitRunner.h"

#include <string>
#include <vector>

namespace gitkit {

/// Runs a command that may explain a failure on both streams: git prints conflicts on one and hints on the other.
/// Throws a GitError with the text of both.
void runTelling(const GitRunner& runner, const std::vector<std::string>& arguments, const RunOptions& options = {});

} // namespace gitkit
