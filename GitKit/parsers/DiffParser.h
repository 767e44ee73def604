// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "GitKit/records/HunkStart.h"
#include "GitKit/records/ParsedDiff.h"

#include <string_view>

namespace gitkit {

/// Reads the unified diffs that git prints. Pure; never fails, and skips unknown lines.
class DiffParser {
public:
    /// Reads up to `maxLines` lines of hunks; a longer diff is marked truncated.
    static ParsedDiff parse(std::string_view text, int maxLines = ParsedDiff::shownLines);
    /// Returns how many lines of hunks a diff has.
    static int lineCount(std::string_view text);

    /// The two start line numbers of "@@ -12,7 +12,9 @@ …"; 0 for a side that cannot be read.
    static HunkStart hunkStart(std::string_view header) { return HunkStart::of(header); }
};

} // namespace gitkit
