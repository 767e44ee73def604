// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "GitKit/records/UndoStep.h"

#include <optional>
#include <string>
#include <string_view>

namespace gitkit {

class GitRepository;

// A step as a commit of git's: its message lists what changed, its tree holds the trees that are kept, and its parents are
// the commits that must stay. Blocking; throws as the methods of GitRepository do.

/// Returns the hash of the commit.
std::string writeUndoRecord(const GitRepository& repo, const UndoStep& step);

/// Reads the message of a record; nullopt for one that is no record, or one of a later version of the program.
std::optional<UndoStep> readUndoRecord(std::string_view message);

/// Makes the annotated tags again that refs of the step pointed to and that git has removed since.
void restoreTags(const GitRepository& repo, const UndoStep& step);

} // namespace gitkit
