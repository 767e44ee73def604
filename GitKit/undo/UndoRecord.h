// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "GitKit/undo/UndoStep.h"

namespace gitkit {

class GitRepository;

// A step as a commit of git's: its tree holds a list of what changed and the trees that are kept, and its parents are the
// commits that must stay. Blocking; throws as the methods of GitRepository do.

/// Returns the hash of the commit.
std::string writeUndoRecord(const GitRepository& repo, const UndoStep& step);

/// Reads records, in the order of the commits; nullopt for a commit that is no such record, or one of a later version of
/// the program.
std::vector<std::optional<UndoStep>> readUndoRecords(const GitRepository& repo,
                                                     const std::vector<std::string>& commits);

/// Makes the annotated tags again that refs of the step pointed to and that git has removed since.
void restoreTags(const GitRepository& repo, const UndoStep& step);

} // namespace gitkit
