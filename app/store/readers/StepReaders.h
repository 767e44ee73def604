// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "GitKit/records/UndoStep.h"

#include <string>
#include <vector>

namespace gitkit {
class GitRepository;
} // namespace gitkit

namespace plovik {

// What the store reads of what has happened in a working tree. The functions may be called on any thread, block, and throw
// gitkit::GitError.

/// Returns the newest steps that can be taken back, the newest first.
std::vector<gitkit::UndoStep> readSteps(const gitkit::GitRepository& repo);

/// HEAD was moved.
struct HeadLogEntry {
    std::string from; ///< full hash; empty for the first entry
    std::string to;   ///< full hash
    gitkit::Date date;
    std::string text; ///< git's line, as "commit: Fix the parser"
};
/// Returns the newest entries of HEAD's log, the newest first.
std::vector<HeadLogEntry> readHeadLog(const gitkit::GitRepository& repo);

} // namespace plovik
