// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "GitKit/records/FileChange.h"

#include <string>
#include <vector>

namespace gitkit {
class GitRepository;
} // namespace gitkit

namespace plovik {

/// Returns the paths of those conflicted `files` that still contain a line with which git marks a conflict. Reads the
/// files and blocks. Files that cannot be read count as having none.
std::vector<std::string> filesWithConflictMarkers(const gitkit::GitRepository& repo,
                                                  const std::vector<gitkit::FileChange>& files);

/// Whether a text has such a line. Pure.
bool holdsConflictMarkers(const std::string& text);

} // namespace plovik
