// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/ui/diff/LinesInHead.h"

namespace plovik {

namespace {

/// Returns the old number of a new line; nullopt for one that was added.
std::optional<int> oldNumberOf(const std::vector<gitkit::DiffLine>& diff, int number)
{
    int more = 0; // new lines than old ones so far
    for (const gitkit::DiffLine& line : diff) {
        if (line.newNumber && *line.newNumber == number)
            return line.oldNumber;
        if (line.newNumber && *line.newNumber > number)
            break;
        more += line.kind == gitkit::DiffLine::Kind::addition ? 1 : 0;
        more -= line.kind == gitkit::DiffLine::Kind::deletion ? 1 : 0;
    }
    return number - more;
}

} // namespace

std::optional<gitkit::LineRange> LinesInHead::rangeOf(const gitkit::LineRange& lines) const
{
    // Of lines that were added in between, the next one inside the range counts.
    int first = lines.first;
    int last = lines.last;
    while (first <= last && !oldNumberOf(staged, first))
        ++first;
    while (first <= last && !oldNumberOf(staged, last))
        --last;
    if (first > last)
        return std::nullopt;
    return gitkit::LineRange{*oldNumberOf(staged, first), *oldNumberOf(staged, last)};
}

} // namespace plovik
