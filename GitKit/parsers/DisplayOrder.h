// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "GitKit/records/FileChange.h"

#include <string>
#include <string_view>
#include <vector>

namespace gitkit {

/// Appends a key whose bytes compare as a file browser orders `path`: folder by folder, upper and lower case and
/// accented letters alike, runs of digits as numbers.
void appendDisplayKey(std::string& keys, std::string_view path);

/// Sorts `files` by their paths as a file browser does; paths that it takes for equal by their bytes. Stable. Costs
/// little where git's order already agrees.
void sortForDisplay(std::vector<FileChange>& files);

} // namespace gitkit
