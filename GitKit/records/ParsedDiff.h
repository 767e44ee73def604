// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "GitKit/records/DiffLine.h"

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

namespace gitkit {

/// Whether a diff shows lines that differ in white space only.
enum class WhiteSpace { compared, ignored };

/// How much of a long diff is read.
enum class DiffReach {
    beginning, ///< what is shown at first
    counted,   ///< the same, and how many lines there are to read
    whole,     ///< as much as can be read: 64 MiB, and no more lines than ParsedDiff::mostLines
};

/// How a diff is to be read. Value.
struct DiffReading {
    WhiteSpace whiteSpace = WhiteSpace::compared;
    DiffReach reach = DiffReach::beginning;

    bool operator==(const DiffReading&) const = default;
};

/// How much there is of a diff beyond its beginning. Value.
struct DiffExtent {
    int lines = 0;     ///< from the first one, as many as can be read
    bool isAll = true; ///< the diff has no more lines than those

    bool operator==(const DiffExtent&) const = default;
};

/// Lines that a diff removes in one place and adds in another. Value.
struct MovedBlock {
    int removed = 0; ///< id of the first removed line
    int added = 0;   ///< id of the first added line
    int count = 0;   ///< of lines, which have the ids that follow

    bool operator==(const MovedBlock&) const = default;
};

/// A parsed patch of one file (or, from some commands, of several).
struct ParsedDiff {
    /// The longest diff that is shown at first, and of which parts can be applied, in lines.
    static constexpr int shownLines = 5000;
    /// The longest diff that is read, in lines.
    static constexpr int mostLines = 200'000;

    std::vector<DiffLine> lines;
    bool isBinary = false;
    bool isTruncated = false;         ///< the diff is longer than what was read
    std::optional<DiffExtent> extent; ///< of a truncated diff whose lines were counted
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
    std::vector<MovedBlock> moved; ///< in the order of the added lines
    /// Columns from one tab stop to the next, if the working tree says so of the file.
    std::optional<int> tabWidth;

    /// Returns whether the diff is too long to have parts of it applied.
    bool isLong() const { return isTruncated || lines.size() > static_cast<std::size_t>(shownLines); }
    bool isEmpty() const { return lines.empty() && !isBinary; }

    bool operator==(const ParsedDiff&) const = default;
};

} // namespace gitkit
