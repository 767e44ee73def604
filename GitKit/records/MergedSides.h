// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace gitkit {

/// Lines of a text that follow one another, counted from 0.
struct LineSpan {
    std::size_t first = 0;
    std::size_t count = 0;

    std::size_t end() const { return first + count; }
    bool isEmpty() const { return count == 0; }
    bool operator==(const LineSpan&) const = default;
};

/// The bytes of one side of a merge and where its lines are. A line ends after its line feed; the last one may have none.
class MergeText {
public:
    MergeText() = default;
    explicit MergeText(std::string bytes);

    const std::string& bytes() const { return bytes_; }
    std::size_t lineCount() const { return ends_.size(); }
    /// Returns a line with its line end, and lines that follow one another. Valid as long as this text.
    std::string_view line(std::size_t index) const { return lines({index, 1}); }
    std::string_view lines(LineSpan span) const;

    bool operator==(const MergeText&) const = default;

private:
    std::string bytes_;
    std::vector<std::size_t> ends_; ///< of the lines, as places in bytes_
};

/// The sides of a merge, and the version that both come from.
enum class MergeSide : std::uint8_t { base, left, right };

/// A piece of a merge. The pieces of a side, one after another, are the whole side.
struct MergeSegment {
    enum class Kind : std::uint8_t {
        equal,        ///< nobody has changed it
        changedLeft,  ///< clean: the left side alone has changed it
        changedRight, ///< clean: the right side alone has changed it
        changedBoth,  ///< clean: both have changed it in the same way
        conflict,
    };

    Kind kind = Kind::equal;
    LineSpan base = {}, left = {}, right = {};
    bool isWhitespaceOnly = false; ///< left and right are the same but for white space
    bool isLineEndsOnly = false;   ///< left and right are the same but for carriage returns at the line ends
    bool areMarkersInCrLf = false; ///< of a conflict: git would end its markers with a carriage return, too

    const LineSpan& on(MergeSide side) const
    {
        return side == MergeSide::left ? left : side == MergeSide::right ? right : base;
    }
    bool operator==(const MergeSegment&) const = default;
};

/// The two sides of a merge, taken apart. While the sides are compared, each has a line end after its last line.
struct MergedSides {
    MergeText base, left, right;
    std::vector<MergeSegment> segments;
    bool hasBase = true; ///< without one, whatever differs is in conflict
    /// How many bytes of line end were given to the last line of a side, which has none in truth.
    std::size_t addedToBase = 0, addedToLeft = 0, addedToRight = 0;
    bool lineEndsDiffer = false; ///< one of left and right is written with CR LF, the other with LF
    std::size_t markerSize = 7;  ///< the least with which no line of a side can be taken for a marker

    const MergeText& text(MergeSide side) const
    {
        return side == MergeSide::left ? left : side == MergeSide::right ? right : base;
    }
    std::string_view lines(const MergeSegment& segment, MergeSide side) const
    {
        return text(side).lines(segment.on(side));
    }
    std::size_t conflictCount() const
    {
        return static_cast<std::size_t>(
            std::ranges::count(segments, MergeSegment::Kind::conflict, &MergeSegment::kind));
    }
    bool operator==(const MergedSides&) const = default;
};

/// What a segment becomes in the result.
enum class MergeChoice : std::uint8_t {
    undecided, ///< a conflict with its markers; the change of a clean segment
    left,
    right,
    leftThenRight,
    rightThenLeft,
    base, ///< as it was: what a clean change becomes that is turned down
    none, ///< no line at all
};

/// How conflicts are marked in a file. Names are bytes without line feeds.
struct MergeMarkers {
    std::size_t size = 7;
    std::string left = "left", base = "base", right = "right";
    bool showsBase = true;
};

/// Returns the text that a segment becomes.
std::string textOf(const MergedSides& sides, const MergeSegment& segment, MergeChoice choice,
                   const MergeMarkers& markers = {});

/// Returns the result with these choices, one for each segment; without any, all are undecided. The last line has no
/// line end if the side that it is taken from has none; if it is of both, if one of them has removed or added it. Cost:
/// linear.
std::string joined(const MergedSides& sides, std::span<const MergeChoice> choices = {},
                   const MergeMarkers& markers = {});

} // namespace gitkit
