// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "GitKit/runner/GitRunner.h"

#include <string>
#include <vector>

namespace gitkit {

/// Runs what says why it failed on either stream: git prints conflicts on one and hints on the other, and so do hooks.
/// The GitError it throws then has both.
void runTelling(const GitRunner& runner, const std::vector<std::string>& arguments);

} // namespace gitkit
