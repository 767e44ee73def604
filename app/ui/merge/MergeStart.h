// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "app/ui/merge/MergeResult.h"

#include <string_view>
#include <vector>

namespace plovik {

/// Finds in a file what has become of each segment of a merge, when it was begun before or edited elsewhere. `markerSize`
/// is the length of the markers in the file. What the segments become makes up the file, byte for byte, but for the words of
/// the markers. Pure; the cost is linear but for files that have lost most of their lines.
std::vector<MergeResult::Start> startsFrom(const gitkit::MergedSides& sides, std::string_view file,
                                           std::size_t markerSize);

} // namespace plovik
