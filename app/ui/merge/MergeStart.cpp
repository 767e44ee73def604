// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/ui/merge/MergeStart.h"

#include <array>
#include <optional>

namespace plovik {

namespace {

using Choice = gitkit::MergeChoice;
using Start = MergeResult::Start;
using gitkit::MergeSegment;
using gitkit::MergeSide;

/// Returns the end of the line that begins at `at`.
std::size_t endOfLine(std::string_view file, std::size_t at)
{
    const std::size_t end = file.find('\n', at);
    return end == std::string_view::npos ? file.size() : end + 1;
}

bool isMarker(std::string_view file, std::size_t at, char sign, std::size_t size)
{
    const std::string_view line = file.substr(at, endOfLine(file, at) - at);
    return line.size() > size && line.find_first_not_of(sign) == size &&
           (line[size] == ' ' || line[size] == '\r' || line[size] == '\n');
}

class Finder {
public:
    Finder(const gitkit::MergedSides& sides, std::string_view file, std::size_t markerSize)
        : sides_(sides), file_(file), markerSize_(markerSize)
    {}

    std::vector<Start> starts()
    {
        const std::size_t count = sides_.segments.size();
        std::vector<Start> found(count);
        for (std::size_t index = 0; index < count;) {
            if (const auto choice = choiceHere(index)) {
                found[index].choice = *choice;
                ++index;
                continue;
            }
            index = giveUpTo(index, found);
        }
        return found;
    }

    /// Whether all of the file was found.
    bool isWhole() const { return at_ == file_.size(); }

private:
    /// Finds a form of a segment at the place that has been reached, and goes behind it.
    std::optional<Choice> choiceHere(std::size_t index)
    {
        const MergeSegment& segment = sides_.segments[index];
        if (segment.kind == MergeSegment::Kind::conflict) {
            if (const auto end = endOfMarked(segment); end && goesOn(index + 1, *end)) {
                at_ = *end;
                return Choice::undecided;
            }
        } else if (takes(index, Choice::undecided)) {
            return Choice::undecided;
        }
        if (segment.kind == MergeSegment::Kind::equal)
            return std::nullopt;
        constexpr std::array choices{Choice::leftThenRight, Choice::rightThenLeft, Choice::left,
                                     Choice::right,         Choice::base,          Choice::none};
        for (const Choice choice : choices) {
            if (takes(index, choice))
                return choice;
        }
        return std::nullopt;
    }

    bool takes(std::size_t index, Choice choice)
    {
        const std::string text = gitkit::textOf(sides_, sides_.segments[index], choice);
        std::size_t end = at_ + text.size();
        if (file_.substr(at_, text.size()) != text) {
            // The last line of the file may have no end.
            const bool isLast = index + 1 == sides_.segments.size() && text.ends_with('\n');
            if (!isLast || file_.substr(at_) != std::string_view(text).substr(0, text.size() - 1))
                return false;
            end = file_.size();
        }
        if (!goesOn(index + 1, end))
            return false;
        at_ = end;
        return true;
    }

    /// Returns the end of a conflict with markers. Git may have written lines that both sides have before, between and
    /// behind them.
    std::optional<std::size_t> endOfMarked(const MergeSegment& segment) const
    {
        std::string_view left = sides_.lines(segment, MergeSide::left);
        std::string_view right = sides_.lines(segment, MergeSide::right);
        bool hasMarkers = false;
        std::size_t at = at_;
        const auto take = [&](std::string_view& rest) {
            const std::string_view line = file_.substr(at, endOfLine(file_, at) - at);
            if (!rest.starts_with(line))
                return false;
            rest.remove_prefix(line.size());
            return true;
        };
        const auto goBehind = [&](char sign) {
            const bool isThere = at < file_.size() && isMarker(file_, at, sign, markerSize_);
            if (isThere)
                at = endOfLine(file_, at);
            return isThere;
        };
        while (!left.empty() || !right.empty()) {
            if (at >= file_.size())
                return std::nullopt;
            if (!goBehind('<')) {
                if (!take(left) || !take(right))
                    return std::nullopt;
                at = endOfLine(file_, at);
                continue;
            }
            hasMarkers = true;
            while (at < file_.size() && !isMarker(file_, at, '=', markerSize_) &&
                   !isMarker(file_, at, '|', markerSize_))
            {
                if (!take(left))
                    return std::nullopt;
                at = endOfLine(file_, at);
            }
            while (at < file_.size() && !isMarker(file_, at, '=', markerSize_))
                at = endOfLine(file_, at);
            if (!goBehind('='))
                return std::nullopt;
            while (at < file_.size() && !isMarker(file_, at, '>', markerSize_)) {
                if (!take(right))
                    return std::nullopt;
                at = endOfLine(file_, at);
            }
            if (!goBehind('>'))
                return std::nullopt;
        }
        return hasMarkers ? std::optional(at) : std::nullopt;
    }

    /// Returns whether what follows can be the next segment: an unchanged one, or the end of the file.
    bool goesOn(std::size_t index, std::size_t at) const
    {
        if (index == sides_.segments.size())
            return at == file_.size();
        const MergeSegment& next = sides_.segments[index];
        if (next.kind != MergeSegment::Kind::equal)
            return true;
        const std::string_view text = sides_.lines(next, MergeSide::left);
        const std::string_view first = text.substr(0, endOfLine(text, 0));
        return file_.substr(at, first.size()) == first || file_.substr(at) == first.substr(0, first.size() - 1);
    }

    /// Takes all up to the next unchanged segment that the file still has for one that was edited. Returns that segment.
    std::size_t giveUpTo(std::size_t index, std::vector<Start>& found)
    {
        const std::size_t count = sides_.segments.size();
        std::size_t next = index + 1;
        std::size_t place = file_.size();
        for (; next < count; ++next) {
            if (sides_.segments[next].kind != MergeSegment::Kind::equal)
                continue;
            const std::string_view text = sides_.lines(sides_.segments[next], MergeSide::left);
            if (const std::size_t at = lineWith(text); at != std::string_view::npos) {
                place = at;
                break;
            }
        }
        // A segment that is changed is meant rather than an unchanged one beside it.
        std::size_t edited = index;
        while (edited + 1 < next && sides_.segments[edited].kind == MergeSegment::Kind::equal)
            ++edited;
        for (std::size_t each = index; each < next; ++each)
            found[each].bytes = std::string();
        found[edited].bytes = std::string(file_.substr(at_, place - at_));
        at_ = place;
        return next;
    }

    /// Returns where a text stands at the start of a line, from the place on that has been reached.
    std::size_t lineWith(std::string_view text) const
    {
        for (std::size_t at = file_.find(text, at_); at != std::string_view::npos; at = file_.find(text, at + 1)) {
            if (at == 0 || file_[at - 1] == '\n')
                return at;
        }
        return std::string_view::npos;
    }

    const gitkit::MergedSides& sides_;
    std::string_view file_;
    std::size_t markerSize_;
    std::size_t at_ = 0;
};

} // namespace

std::vector<MergeResult::Start> startsFrom(const gitkit::MergedSides& sides, std::string_view file,
                                           std::size_t markerSize)
{
    Finder finder(sides, file, markerSize);
    std::vector<Start> starts = finder.starts();
    if (!finder.isWhole() && !starts.empty()) {
        // Nothing of the file may be missing from the result.
        starts.assign(starts.size(), Start{.choice = Choice::undecided, .bytes = std::string()});
        starts.front().bytes = std::string(file);
    }
    return starts;
}

} // namespace plovik
