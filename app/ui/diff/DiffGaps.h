// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "GitKit/records/ParsedDiff.h"
#include "app/ui/diff/FileLines.h"

#include <string_view>
#include <vector>

namespace plovik {

/// The gaps of a diff: the unchanged lines that it leaves out before each hunk and behind the last one, and how many of
/// them are shown nevertheless. Value; shares the file.
class DiffGaps {
public:
    struct Gap {
        int oldFirst = 1; ///< the number of its first line in the old file
        int newFirst = 1;
        int size = 0;
        int top = 0;    ///< lines shown at its start, behind the hunk before
        int bottom = 0; ///< lines shown at its end, before the hunk behind

        int rest() const { return size - top - bottom; }
        bool operator==(const Gap&) const = default;
    };
    enum class End { top, bottom };
    /// How many lines are shown at a time.
    static constexpr int step = 10;

    DiffGaps() = default;
    /// Returns the gaps of a diff; none if it is cut, combined or binary, or if it was not made from these files.
    static DiffGaps of(const gitkit::ParsedDiff& diff, const DiffTexts& texts);

    bool areKnown() const { return !gaps_.empty(); }
    /// Returns the gap before a hunk. The index behind the last hunk is the gap behind it.
    const Gap& gap(int index) const { return gaps_[static_cast<std::size_t>(index)]; }
    int count() const { return static_cast<int>(gaps_.size()); }
    bool hidesLines() const;
    bool showsLines() const;
    /// Returns a line of a gap by its numbers in both files.
    std::string_view line(int oldNumber, int newNumber) const;

    void showMore(int index, End end, int lines);
    void showAll();
    void showNone();
    /// Shows as many lines in each gap as `other` does.
    void showAs(const DiffGaps& other);

private:
    std::vector<Gap> gaps_;
    std::shared_ptr<const FileLines> file_;
    bool isOld_ = true; ///< whether file_ is the old file
};

} // namespace plovik
