// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "GitKit/records/DiffLine.h"

#include <optional>
#include <string>
#include <vector>

namespace gitkit {

/// What a diff makes of lines that differ in blanks alone.
enum class WhiteSpace { compared, ignored };

/// A parsed patch of one file (or, from some commands, of several).
struct ParsedDiff {
    std::vector<DiffLine> lines;
    bool isBinary = false;
    bool isTruncated = false; ///< the diff is longer than what was read
    int additions = 0;
    int deletions = 0;
    /// The file's header lines as bytes, joined by line feeds, without a final one. Only where the diff is of exactly
    /// one text file, so that parts of it can be applied.
    std::optional<std::string> patchHeader;
    /// The blobs that are compared, where the diff is of exactly one file and names them; all zeros for no file.
    std::optional<std::string> oldBlob, newBlob;
    /// Made with white space ignored: it tells what to read, and is nothing to apply.
    WhiteSpace whiteSpace = WhiteSpace::compared;

    bool isEmpty() const { return lines.empty() && !isBinary; }

    bool operator==(const ParsedDiff&) const = default;
};

} // namespace gitkit
