// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/ui/diff/DiffGaps.h"

#include "GitKit/records/HunkStart.h"

#include <algorithm>

namespace plovik {

namespace {

using LineKind = gitkit::DiffLine::Kind;

struct Span {
    int oldFirst = 0, oldEnd = 0; ///< the end is one past the last line
    int newFirst = 0, newEnd = 0;
};

std::vector<Span> spansOf(const gitkit::ParsedDiff& diff)
{
    std::vector<Span> spans;
    for (const gitkit::DiffLine& line : diff.lines) {
        if (line.kind == LineKind::hunk) {
            if (line.text.starts_with("@@@"))
                return {};
            const auto start = gitkit::HunkStart::of(line.text);
            spans.push_back({start.old, start.old, start.now, start.now});
        } else if (spans.empty()) {
            continue;
        }
        spans.back().oldEnd += line.kind == LineKind::context || line.kind == LineKind::deletion ? 1 : 0;
        spans.back().newEnd += line.kind == LineKind::context || line.kind == LineKind::addition ? 1 : 0;
    }
    // For a side without lines, git gives the number of the line before.
    for (Span& span : spans) {
        if (span.oldEnd == span.oldFirst)
            span.oldFirst = ++span.oldEnd;
        if (span.newEnd == span.newFirst)
            span.newFirst = ++span.newEnd;
    }
    return spans;
}

std::string_view withoutReturn(std::string_view line)
{
    return line.ends_with('\r') ? line.substr(0, line.size() - 1) : line;
}

/// Returns whether every line that the diff shows of a side is the line of that number in the file.
bool belongs(const gitkit::ParsedDiff& diff, const FileLines& file, bool isOld)
{
    return std::ranges::all_of(diff.lines, [&](const gitkit::DiffLine& line) {
        const std::optional<int>& number = isOld ? line.oldNumber : line.newNumber;
        const bool isCode = line.kind != LineKind::hunk && line.kind != LineKind::meta;
        return !isCode || !number ||
               (*number <= file.count() && withoutReturn(file.line(*number)) == withoutReturn(line.bytes()));
    });
}

} // namespace

DiffGaps DiffGaps::of(const gitkit::ParsedDiff& diff, const DiffTexts& texts)
{
    const std::vector<Span> spans = spansOf(diff);
    if (diff.isBinary || diff.isTruncated || spans.empty())
        return {};
    DiffGaps gaps;
    // Without white space, lines are shown as in the new file. Otherwise the old file is preferred, because a working
    // file may have other line endings.
    const bool oldFirst = diff.whiteSpace == gitkit::WhiteSpace::compared;
    for (const bool isOld : {oldFirst, !oldFirst}) {
        const auto& file = isOld ? texts.before : texts.after;
        if (!gaps.file_ && file && belongs(diff, *file, isOld)) {
            gaps.file_ = file;
            gaps.isOld_ = isOld;
        }
    }
    if (!gaps.file_)
        return {};
    Gap next;
    for (const Span& span : spans) {
        next.size = span.oldFirst - next.oldFirst;
        if (next.size < 0 || next.size != span.newFirst - next.newFirst)
            return {};
        gaps.gaps_.push_back(next);
        next = {span.oldEnd, span.newEnd};
    }
    next.size = gaps.file_->count() + 1 - (gaps.isOld_ ? next.oldFirst : next.newFirst);
    if (next.size < 0)
        return {};
    gaps.gaps_.push_back(next);
    return gaps;
}

bool DiffGaps::hidesLines() const
{
    return std::ranges::any_of(gaps_, [](const Gap& gap) { return gap.rest() > 0; });
}

bool DiffGaps::showsLines() const
{
    return std::ranges::any_of(gaps_, [](const Gap& gap) { return gap.top + gap.bottom > 0; });
}

std::string_view DiffGaps::line(int oldNumber, int newNumber) const
{
    return file_ ? file_->line(isOld_ ? oldNumber : newNumber) : std::string_view();
}

void DiffGaps::showMore(int index, End end, int lines)
{
    Gap& gap = gaps_[static_cast<std::size_t>(index)];
    (end == End::top ? gap.top : gap.bottom) += std::min(lines, gap.rest());
}

void DiffGaps::showAll()
{
    for (Gap& gap : gaps_)
        gap.top += gap.rest();
}

void DiffGaps::showNone()
{
    for (Gap& gap : gaps_)
        gap.top = gap.bottom = 0;
}

void DiffGaps::showAs(const DiffGaps& other)
{
    for (std::size_t i = 0; i < std::min(gaps_.size(), other.gaps_.size()); ++i) {
        gaps_[i].top = std::min(other.gaps_[i].top, gaps_[i].size);
        gaps_[i].bottom = std::min(other.gaps_[i].bottom, gaps_[i].size - gaps_[i].top);
    }
}

} // namespace plovik
