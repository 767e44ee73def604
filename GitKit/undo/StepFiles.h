// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "GitKit/records/Trash.h"
#include "GitKit/records/UndoStep.h"

#include <filesystem>
#include <string>
#include <vector>

namespace gitkit {

class GitRepository;

// What can be done with a recorded step besides taking it back. All functions block and throw as the methods of
// GitRepository do; callers keep the writers of one repository apart. `gitDirectory` is what gitDirectories() calls the
// working tree's own.

/// Returns the paths of the files that a step has changed.
std::vector<std::string> filesOfStep(const GitRepository& repo, const UndoStep& step);

/// Writes these files as they were before the step, whatever they are now. The index stays as it is.
void restoreFiles(const GitRepository& repo, const std::filesystem::path& gitDirectory, const UndoStep& step);

/// Moves to the Trash what steps had moved out of the way more than thirty days ago, which git has forgotten by now.
void clearAside(const std::filesystem::path& gitDirectory, const Trash& trash);

/// Removes what is kept of a step for good, also the files that it had moved out of the way.
void forgetStep(const GitRepository& repo, const std::filesystem::path& gitDirectory, const UndoStep& step);

} // namespace gitkit
