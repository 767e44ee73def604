// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string>

namespace gitkit {

class GitRepository;

/// Fetches what a pull or merge request of a forge proposes, by its number, as GitHub, GitLab, Gitea, Forgejo and
/// Bitbucket offer it. Returns the full hash of its newest commit; no ref moves. Throws GitError with ErrorKind::noSuchRef
/// when the remote offers none of this number, and otherwise as the methods of GitRepository do. Blocks.
std::string fetchRequest(const GitRepository& repo, const std::string& remote, int number);

} // namespace gitkit
