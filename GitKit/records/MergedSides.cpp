// SPDX-License-Identifier: GPL-3.0-or-later
#include "GitKit/records/MergedSides.h"

namespace gitkit {

namespace {

using Kind = MergeSegment::Kind;

/// Returns the sides whose lines a decided segment becomes, in their order.
std::vector<MergeSide> sidesOf(Kind kind, MergeChoice choice)
{
    switch (choice) {
    case MergeChoice::undecided:
        return {kind == Kind::changedRight ? MergeSide::right : MergeSide::left};
    case MergeChoice::left:
        return {MergeSide::left};
    case MergeChoice::right:
        return {MergeSide::right};
    case MergeChoice::leftThenRight:
        return {MergeSide::left, MergeSide::right};
    case MergeChoice::rightThenLeft:
        return {MergeSide::right, MergeSide::left};
    case MergeChoice::base:
        return {MergeSide::base};
    case MergeChoice::none:
        break;
    }
    return {};
}

bool isMarked(const MergeSegment& segment, MergeChoice choice)
{
    return segment.kind == Kind::conflict && choice == MergeChoice::undecided;
}

void appendMarker(std::string& text, char mark, std::size_t size, const std::string& name, bool isCrLf)
{
    text.append(size, mark);
    if (!name.empty())
        text.append(" ").append(name);
    text.append(isCrLf ? "\r\n" : "\n");
}

/// The side whose last line became that of the result; changed on neither side, if it is of both.
struct LastLine {
    MergeSide side = MergeSide::left;
    bool isOfBoth = true;
};

/// Returns how many bytes of line end the result does not have.
std::size_t addedEnd(const MergedSides& sides, LastLine last)
{
    if (!last.isOfBoth)
        return last.side == MergeSide::left    ? sides.addedToLeft
               : last.side == MergeSide::right ? sides.addedToRight
                                               : sides.addedToBase;
    // Who has changed it decides.
    const bool hasLeftChanged = (sides.addedToLeft > 0) != (sides.addedToBase > 0);
    return hasLeftChanged || !sides.hasBase ? sides.addedToLeft : sides.addedToRight;
}

void append(std::string& text, const MergedSides& sides, const MergeSegment& segment, MergeChoice choice,
            const MergeMarkers& markers)
{
    if (!isMarked(segment, choice)) {
        for (const MergeSide side : sidesOf(segment.kind, choice))
            text += sides.lines(segment, side);
        return;
    }
    const bool isCrLf = segment.areMarkersInCrLf;
    appendMarker(text, '<', markers.size, markers.left, isCrLf);
    text += sides.lines(segment, MergeSide::left);
    if (markers.showsBase) {
        appendMarker(text, '|', markers.size, markers.base, isCrLf);
        text += sides.lines(segment, MergeSide::base);
    }
    appendMarker(text, '=', markers.size, {}, isCrLf);
    text += sides.lines(segment, MergeSide::right);
    appendMarker(text, '>', markers.size, markers.right, isCrLf);
}

} // namespace

MergeText::MergeText(std::string bytes) : bytes_(std::move(bytes))
{
    ends_.reserve(static_cast<std::size_t>(std::ranges::count(bytes_, '\n')) + 1);
    for (std::size_t at = 0; at < bytes_.size();) {
        const std::size_t end = bytes_.find('\n', at);
        at = end == std::string::npos ? bytes_.size() : end + 1;
        ends_.push_back(at);
    }
}

std::string_view MergeText::lines(LineSpan span) const
{
    if (span.count == 0 || span.end() > ends_.size())
        return {};
    const std::size_t start = span.first == 0 ? 0 : ends_[span.first - 1];
    return std::string_view(bytes_).substr(start, ends_[span.end() - 1] - start);
}

std::string textOf(const MergedSides& sides, const MergeSegment& segment, MergeChoice choice,
                   const MergeMarkers& markers)
{
    std::string text;
    append(text, sides, segment, choice, markers);
    return text;
}

std::string joined(const MergedSides& sides, std::span<const MergeChoice> choices, const MergeMarkers& markers)
{
    std::string text;
    LastLine last;
    bool isMarkerLast = false;
    for (std::size_t index = 0; index < sides.segments.size(); ++index) {
        const MergeSegment& segment = sides.segments[index];
        const MergeChoice choice = index < choices.size() ? choices[index] : MergeChoice::undecided;
        const std::size_t before = text.size();
        append(text, sides, segment, choice, markers);
        if (text.size() == before)
            continue;
        isMarkerLast = isMarked(segment, choice);
        last.isOfBoth = segment.kind == Kind::equal || segment.kind == Kind::changedBoth;
        for (const MergeSide side : sidesOf(segment.kind, choice)) {
            if (!segment.on(side).isEmpty())
                last.side = side;
        }
    }
    if (!isMarkerLast)
        text.resize(text.size() - std::min(text.size(), addedEnd(sides, last)));
    return text;
}

} // namespace gitkit
