// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <chrono>
#include <filesystem>
#include <optional>
#include <string>
#include <vector>

namespace gitkit {

class GitRepository;

// Locks that are in the way of a run of git. Any thread; these block and throw as the methods of GitRepository do.

/// A lock that another git holds, or has left behind.
struct HeldLock {
    std::filesystem::path file; ///< absolute
    std::chrono::seconds age{0};
    std::vector<std::string> programs; ///< those that work in this repository, as "vim (1234)"

    /// Whether nobody can still need it: it is older than a minute, and no program works in the repository. An editor that
    /// a commit waits for holds no file open, so where programs work is all there is to go by.
    bool isLeftBehind() const { return programs.empty() && age > std::chrono::minutes(1); }

    bool operator==(const HeldLock&) const = default;
};

/// Finds the lock that a message of git tells of; nullopt when it tells of none of this repository, or it is gone.
std::optional<HeldLock> heldLock(const GitRepository& repo, const std::string& message);

/// Moves a lock away from where git looks for it, and keeps it. Throws ErrorKind::lockHeld when it is not left behind any
/// more, and changedMeanwhile when it is gone.
void moveLockAway(const GitRepository& repo, const std::filesystem::path& file);

} // namespace gitkit
