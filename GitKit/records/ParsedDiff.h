#pragma once

#include "GitKit/records/DiffLine.h"

#include <optional>
#include <string>
#include <vector>

namespace gitkit {

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

    bool isEmpty() const { return lines.empty() && !isBinary; }

    bool operator==(const ParsedDiff&) const = default;
};

} // namespace gitkit
