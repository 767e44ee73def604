// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "GitKit/records/ParsedDiff.h"
#include "app/ui/diff/FileLines.h"

#include <string_view>
#include <vector>

namespace plovik {

/// The unchanged lines that a diff leaves out, and how many of them are shown all the same: one gap before each hunk,
/// and one behind the last. Value; shares the file.
class DiffGaps {
public:
    struct Gap {
        int oldFirst = 1; ///< number of its first line in the old file
        int newFirst = 1;
        int size = 0;
        int top = 0;    ///< lines shown at its start, behind the hunk before
        int bottom = 0; ///< lines shown at its end, before the hunk behind

        int rest() const { return size - top - bottom; }
        bool operator==(const Gap&) const = default;
    };
    enum class End { top, bottom };

    DiffGaps() = default;
    /// None where the diff is cut, combined or binary, or where the files are not those that it was made from.
    static DiffGaps of(const gitkit::ParsedDiff& diff, const DiffTexts& texts);

    bool areKnown() const { return !gaps_.empty(); }
    /// The gap before a hunk; behind the last one for their number.
    const Gap& gap(int index) const { return gaps_[static_cast<std::size_t>(index)]; }
    int count() const { return static_cast<int>(gaps_.size()); }
    bool hidesLines() const;
    bool showsLines() const;
    /// A line of a gap by its numbers, in the file that it is taken from.
    std::string_view line(int oldNumber, int newNumber) const;

    void showMore(int index, End end, int lines);
    void showAll();
    void showNone();
    /// Shows what `other` shows, where both are of the same diff.
    void showAs(const DiffGaps& other);

private:
    std::vector<Gap> gaps_;
    std::shared_ptr<const FileLines> file_;
    bool isOld_ = true; ///< which side `file_` is
};

} // namespace plovik
