// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string>
#include <vector>

namespace gitkit {

class GitRepository;

// Hooks that a plan runs in git's place. Any thread; these block and throw as the methods of GitRepository do.

bool hasHook(const GitRepository& repo, const std::string& name);

/// Asks the hook whether the branch may be rewritten. `upstream` is the commit beneath, and `branch` its name where it is not
/// what is checked out. Throws ErrorKind::rejectedByHook with what it has said when it refuses.
void askPreRebase(const GitRepository& repo, const std::string& upstream, const std::string& branch = {});

/// Asks the hooks whether what is staged may become part of commits above `base`: pre-rebase as askPreRebase() does, and
/// pre-commit, which judges all that is staged and may stage more. Throws ErrorKind::rejectedByHook.
void askBeforeStaged(const GitRepository& repo, const std::string& base);

/// Asks the hook commit-msg about a message, and returns it as the hook leaves it. Throws ErrorKind::rejectedByHook.
std::string askCommitMessage(const GitRepository& repo, const std::string& message);

/// Tells the hook which commits have become others, and copies notes, as git does after a rebase. What fails is not told:
/// the commits are rewritten.
void tellRewritten(const GitRepository& repo, const std::vector<std::pair<std::string, std::string>>& commits);

} // namespace gitkit
