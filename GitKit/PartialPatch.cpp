// SPDX-License-Identifier: GPL-3.0-or-later
#include "GitKit/PartialPatch.h"

#include "GitKit/records/HunkStart.h"

#include <algorithm>
#include <array>
#include <span>
#include <vector>

namespace gitkit {

namespace {

constexpr std::string_view noNewlineNote = "\\ No newline at end of file";

/// One line of a file on its way into a hunk.
struct PatchLine {
    enum class Side { both, old, now };

    Side side = Side::both;
    const std::string* bytes = nullptr;
    bool endsFile = false; ///< carries the note that the file ends without a newline

    bool isOn(Side which) const { return side == Side::both || side == which; }
};

/// The side that applying the patch produces.
constexpr PatchLine::Side producedSide(PatchDirection direction)
{
    return direction == PatchDirection::forward ? PatchLine::Side::now : PatchLine::Side::old;
}

constexpr PatchLine::Side targetSide(PatchDirection direction)
{
    return direction == PatchDirection::forward ? PatchLine::Side::old : PatchLine::Side::now;
}

/// Returns a diff's line as a patch of the `selected` changes has it; nullopt when the patch leaves it out.
std::optional<PatchLine> lineInPatch(const DiffLine& line, bool selected, PatchDirection direction)
{
    using Side = PatchLine::Side;
    if (line.kind == DiffLine::Kind::context)
        return PatchLine{Side::both, &line.bytes(), false};
    const Side own = line.kind == DiffLine::Kind::deletion ? Side::old : Side::now;
    if (selected)
        return PatchLine{own, &line.bytes(), false};
    // The target side keeps an unselected line that it has, and does not get one that it lacks.
    if (own == targetSide(direction))
        return PatchLine{Side::both, &line.bytes(), false};
    return std::nullopt;
}

struct Hunk {
    std::string_view header;
    std::vector<PatchLine> lines;
    int selected = 0;
};

Hunk hunkInPatch(std::span<const DiffLine> body, const std::set<int>& selected, PatchDirection direction)
{
    Hunk hunk;
    bool lastWasTaken = false;
    for (const DiffLine& line : body) {
        if (line.kind == DiffLine::Kind::meta) {
            if (lastWasTaken)
                hunk.lines.back().endsFile = true;
            continue;
        }
        const bool isSelected = line.isChange() && selected.contains(line.id);
        hunk.selected += isSelected ? 1 : 0;
        const std::optional<PatchLine> taken = lineInPatch(line, isSelected, direction);
        lastWasTaken = taken.has_value();
        if (taken)
            hunk.lines.push_back(*taken);
    }
    return hunk;
}

/// Adds a newline on the produced side to a line that ended the file without one and is now followed by others.
void keepLinesApart(std::vector<PatchLine>& lines, PatchDirection direction)
{
    const PatchLine::Side produced = producedSide(direction);
    bool somethingFollows = false;
    for (std::size_t i = lines.size(); i-- > 0;) {
        PatchLine& line = lines[i];
        if (!line.isOn(produced))
            continue;
        if (line.endsFile && somethingFollows) {
            if (line.side == PatchLine::Side::both) {
                // Replace the target's line by the same line with a newline.
                PatchLine with = line;
                PatchLine without = line;
                with.side = produced;
                with.endsFile = false;
                without.side = targetSide(direction);
                const bool oldFirst = without.side == PatchLine::Side::old;
                line = oldFirst ? without : with;
                lines.insert(lines.begin() + static_cast<std::ptrdiff_t>(i) + 1, oldFirst ? with : without);
            } else {
                line.endsFile = false;
            }
        }
        somethingFollows = true;
    }
}

int countOn(PatchLine::Side side, const std::vector<PatchLine>& lines)
{
    return static_cast<int>(std::ranges::count_if(lines, [side](const PatchLine& line) { return line.isOn(side); }));
}

struct HunkCounts {
    int old = 0;
    int now = 0;
};

/// `shift` is the number of lines that the hunks before this one add to the new side.
std::string hunkHeader(std::string_view original, HunkCounts counts, int shift, PatchDirection direction)
{
    const HunkStart start = HunkStart::of(original);
    int old = start.old;
    int now = start.now;
    // By convention a side without lines starts at the line before it.
    if (direction == PatchDirection::forward)
        now = old + (counts.old == 0 ? 1 : 0) + shift - (counts.now == 0 ? 1 : 0);
    else
        old = now + (counts.now == 0 ? 1 : 0) - shift - (counts.old == 0 ? 1 : 0);
    return "@@ -" + std::to_string(old) + ',' + std::to_string(counts.old) + " +" + std::to_string(now) + ',' +
           std::to_string(counts.now) + " @@\n";
}

void append(std::string& patch, const std::vector<PatchLine>& lines)
{
    constexpr std::array<char, 3> signs{' ', '-', '+'};
    for (const PatchLine& line : lines) {
        patch += signs[static_cast<std::size_t>(line.side)];
        patch += *line.bytes;
        patch += '\n';
        if (line.endsFile) {
            patch += noNewlineNote;
            patch += '\n';
        }
    }
}

std::vector<std::string_view> splitLines(std::string_view text)
{
    std::vector<std::string_view> lines;
    while (true) {
        const std::size_t end = text.find('\n');
        lines.push_back(text.substr(0, end));
        if (end == std::string_view::npos)
            return lines;
        text.remove_prefix(end + 1);
    }
}

/// The value of the header line that begins with `key`.
std::optional<std::string_view> headerValue(std::string_view header, std::string_view key)
{
    for (const std::string_view line : splitLines(header)) {
        if (line.starts_with(key))
            return line.substr(key.size());
    }
    return std::nullopt;
}

bool hasMode(std::string_view header, std::string_view mode)
{
    for (const std::string_view line : splitLines(header)) {
        const bool namesMode = line.starts_with("index ") || line.starts_with("old mode ") ||
                               line.starts_with("new mode ") || line.starts_with("new file mode ") ||
                               line.starts_with("deleted file mode ");
        if (namesMode && line.ends_with(mode) && line[line.size() - mode.size() - 1] == ' ')
            return true;
    }
    return false;
}

/// Turns "--- a/x" into "+++ b/x" and back. Changes the leading prefix only, which may be inside git's quotes.
std::string mirroredName(std::string_view line, std::string_view marker, char prefix)
{
    std::string name(line.substr(3));
    const std::size_t at = name.starts_with(" \"") ? 2 : 1;
    if (at < name.size())
        name[at] = prefix;
    return std::string(marker) + name;
}

/// Returns a header for a part of a file's changes. It neither creates nor deletes a file that stays on both sides, and
/// it does not change the mode.
std::string headerForPart(std::string_view header, PatchDirection direction)
{
    const bool forward = direction == PatchDirection::forward;
    const bool wholeFile = headerValue(header, forward ? "deleted file mode " : "new file mode ").has_value();
    const std::string oldName = "--- " + std::string(headerValue(header, "--- ").value_or(""));
    const std::string newName = "+++ " + std::string(headerValue(header, "+++ ").value_or(""));

    std::string result;
    for (const std::string_view line : splitLines(header)) {
        if (line.starts_with("old mode ") || line.starts_with("new mode "))
            continue;
        if (wholeFile &&
            (line.starts_with(forward ? "deleted file mode " : "new file mode ") || line.starts_with("index ")))
            continue;
        if (!result.empty())
            result += '\n';
        if (wholeFile && forward && line == "+++ /dev/null")
            result += mirroredName(oldName, "+++", 'b');
        else if (wholeFile && !forward && line == "--- /dev/null")
            result += mirroredName(newName, "---", 'a');
        else
            result += line;
    }
    return result;
}

/// Returns the header of a renamed file's changes without the rename, which goes with the whole file only. The target
/// side has the file under one name already.
std::string headerWithoutRename(std::string_view header, PatchDirection direction)
{
    const bool forward = direction == PatchDirection::forward;
    const std::string name(headerValue(header, forward ? "--- " : "+++ ").value_or(""));
    const std::string old = mirroredName("---" + (' ' + name), "---", 'a').substr(3);
    const std::string now = mirroredName("---" + (' ' + name), "---", 'b').substr(3);
    std::string result = "diff --git" + old + now;
    if (const auto index = headerValue(header, "index "))
        result += "\nindex " + std::string(*index);
    return result + "\n---" + old + "\n+++" + now;
}

bool isRename(std::string_view header) { return headerValue(header, "rename from ").has_value(); }

bool isWhole(const ParsedDiff& diff, int selected) { return selected >= diff.additions + diff.deletions; }

} // namespace

PartialRefusal partialRefusal(const ParsedDiff& diff)
{
    if (!diff.patchHeader || diff.isLong() || diff.lines.empty())
        return PartialRefusal::noPatch;
    if (diff.whiteSpace == WhiteSpace::ignored)
        return PartialRefusal::whiteSpace;
    if (hasMode(*diff.patchHeader, "120000"))
        return PartialRefusal::symlink;
    if (hasMode(*diff.patchHeader, "160000"))
        return PartialRefusal::submodule;
    return PartialRefusal::none;
}

std::optional<std::string> partialPatch(const ParsedDiff& diff, const std::set<int>& selected, PatchDirection direction)
{
    const PartialRefusal refusal = partialRefusal(diff);
    if (refusal == PartialRefusal::noPatch || refusal == PartialRefusal::whiteSpace)
        return std::nullopt;

    std::string hunks;
    int selectedTotal = 0;
    int shift = 0;
    const std::span<const DiffLine> lines = diff.lines;
    for (std::size_t i = 0; i < lines.size();) {
        std::size_t end = i + 1;
        while (end < lines.size() && lines[end].kind != DiffLine::Kind::hunk)
            ++end;
        if (lines[i].kind == DiffLine::Kind::hunk) {
            Hunk hunk = hunkInPatch(lines.subspan(i + 1, end - i - 1), selected, direction);
            if (hunk.selected > 0) {
                keepLinesApart(hunk.lines, direction);
                const HunkCounts counts{countOn(PatchLine::Side::old, hunk.lines),
                                        countOn(PatchLine::Side::now, hunk.lines)};
                hunks += hunkHeader(lines[i].bytes(), counts, shift, direction);
                append(hunks, hunk.lines);
                shift += counts.now - counts.old;
                selectedTotal += hunk.selected;
            }
        }
        i = end;
    }
    if (selectedTotal == 0)
        return std::nullopt;
    const bool whole = isWhole(diff, selectedTotal);
    if (!whole && refusal != PartialRefusal::none)
        return std::nullopt;
    if (isRename(*diff.patchHeader))
        return headerWithoutRename(*diff.patchHeader, direction) + '\n' + hunks;
    return (whole ? *diff.patchHeader : headerForPart(*diff.patchHeader, direction)) + '\n' + hunks;
}

std::optional<PartialChange> partialChange(const std::string& path, const ParsedDiff& diff,
                                           const std::set<int>& selected, PatchDirection direction)
{
    std::optional<std::string> patch = partialPatch(diff, selected, direction);
    if (!patch)
        return std::nullopt;
    return PartialChange{path, std::move(*patch), direction, blobBefore(diff, direction)};
}

std::optional<std::string> blobBefore(const ParsedDiff& diff, PatchDirection direction)
{
    if (!diff.patchHeader)
        return std::nullopt;
    const std::optional<std::string_view> index = headerValue(*diff.patchHeader, "index ");
    if (!index)
        return std::nullopt;
    const std::size_t dots = index->find("..");
    if (dots == std::string_view::npos)
        return std::nullopt;
    const std::string_view rest = index->substr(dots + 2);
    return std::string(direction == PatchDirection::forward ? index->substr(0, dots) : rest.substr(0, rest.find(' ')));
}

} // namespace gitkit
