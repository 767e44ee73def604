// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "GitKit/records/OperationInProgress.h"

namespace gitkit {

class GitRepository;

// A rebase that has stopped behind a commit so that it can be changed (OperationInProgress::edits). Any thread; these block
// and throw as the methods of GitRepository do.

/// Throws ErrorKind::notCommitted, with the files named, where git would not go on from here: files are changed but not
/// staged, or something is staged while HEAD is no longer the commit that it could become a part of.
void requireEditDone(const GitRepository& repo, const OperationInProgress& operation);

/// Moves HEAD to the parent of the commit. Nothing of the commit is staged then, and no file is touched. Callers keep the
/// writers of one repository apart. Throws ErrorKind::changedMeanwhile when git is not stopped behind that commit any
/// more, and nothingToDo when it has no parent.
void takeApart(const GitRepository& repo, const OperationInProgress& operation);

} // namespace gitkit
