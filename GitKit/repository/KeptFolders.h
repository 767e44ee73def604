// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "GitKit/records/Date.h"

#include <filesystem>
#include <string>
#include <vector>

namespace gitkit {

// The folders in which files are kept: one for each time that something was taken, in `plovik/kept` of the working tree's
// own git directory, named for that time. Any thread.

std::filesystem::path keepingFolder(const std::filesystem::path& gitDirectory);

/// Returns the names of the folders, the oldest first.
std::vector<std::string> keptNames(const std::filesystem::path& gitDirectory);

/// Returns the time in a name; the epoch for what is no such name.
Date keptDate(const std::string& name);

/// Makes a new folder, which nobody else may read, and removes those that are older than thirty days. Throws GitError.
std::filesystem::path makeKeptFolder(const std::filesystem::path& gitDirectory);

} // namespace gitkit
