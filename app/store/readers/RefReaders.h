// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace gitkit {
class GitRepository;
} // namespace gitkit

namespace plovik {

/// Reads the short names of the branches that were checked out, the latest first, for Latest. None where no commit was
/// made yet. Any thread; blocks; throws gitkit::GitError. Each question has a number of its own.
std::vector<std::string> readRecentBranches(const gitkit::GitRepository& repo, const std::int64_t& question);

} // namespace plovik
