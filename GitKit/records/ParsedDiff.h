// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "GitKit/records/DiffLine.h"

#include <optional>
#include <string>
#include <vector>

namespace gitkit {

/// Whether a diff shows lines that differ in white space only.
enum class WhiteSpace { compared, ignored };

/// A parsed patch of one file (or, from some commands, of several).
struct ParsedDiff {
    std::vector<DiffLine> lines;
    bool isBinary = false;
    bool isTruncated = false; ///< the diff is longer than what was read
    int additions = 0;
    int deletions = 0;
    /// The file's header lines as bytes, joined by line feeds, without a final one. Present only for a diff of exactly
    /// one text file, because parts of such a diff can be applied.
    std::optional<std::string> patchHeader;
    /// The compared blobs, if the diff is of exactly one file and names them; all zeros when there is no file. Of a
    /// conflicted binary file these are the two sides, ours and theirs.
    std::optional<std::string> oldBlob, newBlob;
    /// A diff that ignores white space is for reading only; it cannot be applied.
    WhiteSpace whiteSpace = WhiteSpace::compared;

    bool isEmpty() const { return lines.empty() && !isBinary; }

    bool operator==(const ParsedDiff&) const = default;
};

} // namespace gitkit
