// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "GitKit/records/OutsideTool.h"

#include <string>
#include <vector>

namespace gitkit {

class GitRepository;

/// Returns the arguments with which git starts the tool that the user's configuration names for diffs or merges. `path`
/// must be taken literally. Throws GitError when none is named, when it needs a terminal, and when the repository's own
/// configuration says what to run, which nobody has agreed to; and otherwise as the methods of GitRepository do. Blocks.
std::vector<std::string> outsideToolCommand(const GitRepository& repo, OutsideTool tool, const std::string& path);

} // namespace gitkit
