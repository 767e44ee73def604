// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <filesystem>
#include <vector>

namespace plovik::recentRepositories {

/// Puts a repository first in the stored list, which holds 25 at most. Main thread.
void add(const std::filesystem::path& root);

/// Takes a repository out of the stored list.
void remove(const std::filesystem::path& root);

/// The stored repositories at whose paths something exists, the latest first. Touches the disk once a path.
std::vector<std::filesystem::path> all();

} // namespace plovik::recentRepositories
