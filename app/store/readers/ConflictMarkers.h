// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "GitKit/records/FileChange.h"

#include <string>
#include <vector>

namespace gitkit {
class GitRepository;
} // namespace gitkit

namespace plovik {

/// The paths of those conflicted `files` that still hold a line which git wrote to mark a conflict. Blocks; reads the
/// files. What cannot be read holds none.
std::vector<std::string> filesWithConflictMarkers(const gitkit::GitRepository& repo,
                                                  const std::vector<gitkit::FileChange>& files);

} // namespace plovik
