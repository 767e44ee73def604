// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "GitKit/records/Rebase.h"

namespace gitkit {

class GitRepository;

/// Finds out what putting commits on top of another one comes to, and leaves nothing behind. Commits whose change is there
/// already are dropped, as git's rebase does. Any thread; blocks and throws as the methods of GitRepository do, and throws
/// ErrorKind::noSuchRef, checkedOutElsewhere for a branch that another working tree has, nothingToDo where the commits stand
/// there already, and other where there is a merge among them.
RebaseProposal rebaseProposal(const GitRepository& repo, const RebaseQuestion& question);

} // namespace gitkit
