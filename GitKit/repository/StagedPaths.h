// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "GitKit/runner/GitRunner.h"

#include <string>
#include <vector>

namespace gitkit {

// Changes of the index at exact paths. `git add` and `git reset` would also take what is in a folder that has the name
// of a deleted file, and `git add` fails for files in ignored folders. Callers run these one after another. They throw
// as GitRunner::accepted() does.

/// Stages files that stand in the working tree, and removes those from the index that do not. Changes nothing when git
/// cannot stage one of them.
void stagePaths(const GitRunner& runner, const std::vector<std::string>& standing,
                const std::vector<std::string>& gone);

/// Gives the index what HEAD has at these paths. Throws and changes nothing when it would have to drop other staged
/// files for it: an index holds either a file or a folder of one name.
void unstagePaths(const GitRunner& runner, const std::vector<std::string>& paths);

/// Removes the entries at these paths, if there are any.
void forgetPaths(const GitRunner& runner, const std::vector<std::string>& paths);

} // namespace gitkit
