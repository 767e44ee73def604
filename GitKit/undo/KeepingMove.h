// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "GitKit/undo/TreeMove.h"

namespace gitkit {

// Moving index and files to other commits while what was edited or staged stays. Blocking; throws as the methods of
// GitRepository do; callers keep the writers of one repository apart. `command` is the one that a failure names.

/// Throws ErrorKind::wouldOverwriteLocalChanges where a file that moves was edited or staged.
void requireUnedited(const GitRepository& repo, const std::filesystem::path& gitDirectory, const TreeMove& move,
                     const char* command);

/// Moves index and files by what differs between the commits. What fails half-way is taken back.
void moveKeeping(const GitRepository& repo, const std::filesystem::path& gitDirectory, const TreeMove& move);

} // namespace gitkit
