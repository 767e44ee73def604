// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string>
#include <vector>

namespace gitkit {

class GitRepository;

/// Returns the names of what was checked out in this working tree, the latest first, each once, as far as the last 500
/// movements of HEAD tell. Some may exist no more, or may never have been branches. Throws GitError.
std::vector<std::string> recentlyCheckedOut(const GitRepository& repo);

} // namespace gitkit
