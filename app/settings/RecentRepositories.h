// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <filesystem>
#include <vector>

namespace plovik::recentRepositories {

/// Puts a repository first in the stored list, which holds 25 at most. Main thread.
void add(const std::filesystem::path& root);

/// Removes a repository from the stored list.
void remove(const std::filesystem::path& root);

/// Returns the stored repositories whose paths exist, the latest first. Looks at the disk once for each path.
std::vector<std::filesystem::path> all();

/// Returns the pinned repositories whose paths exist, in the order in which they were pinned.
std::vector<std::filesystem::path> pinned();
bool isPinned(const std::filesystem::path& root);
/// Pins a repository, which puts it before all others in lists, or unpins it.
void pin(const std::filesystem::path& root, bool isPinned);

} // namespace plovik::recentRepositories
