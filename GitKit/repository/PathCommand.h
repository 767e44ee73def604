// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "GitKit/runner/GitRunner.h"

#include <string>
#include <vector>

namespace gitkit {

// How paths reach git, so that they are read as the bytes that they are. No variable of the environment is used for it:
// hooks and filters would inherit it.

/// The argument that names a path, even if its name holds wildcards or begins with ":". It also names everything in a
/// folder of this name.
std::string literalPathspec(const std::string& path);

/// The arguments that name exactly these files: nothing in a folder that has the name of one, unless that is the folder
/// of another.
std::vector<std::string> exactPathspecs(const std::vector<std::string>& paths);

/// Runs a git command on these paths. Does nothing for an empty list, which git would read as all paths. A list that is
/// too long for a command line goes to standard input, so that it is still one command and one change of the index.
/// Throws as GitRunner::accepted() does.
void runOnPaths(const GitRunner& runner, std::vector<std::string> arguments, const std::vector<std::string>& paths);

/// Runs a command that reads a list of exact paths, each ended by a NUL, from its standard input. Does nothing for an
/// empty list. Throws as GitRunner::accepted() does.
void runOnExactPaths(const GitRunner& runner, const std::vector<std::string>& arguments,
                     const std::vector<std::string>& paths);

} // namespace gitkit
