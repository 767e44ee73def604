// SPDX-License-Identifier: GPL-3.0-or-later
#include "GitKit/MovedLines.h"

#include <algorithm>
#include <cstddef>
#include <functional>
#include <iterator>
#include <string>
#include <string_view>
#include <unordered_map>

namespace gitkit {

namespace {

using Kind = DiffLine::Kind;

constexpr int fewestLines = 3;
constexpr int fewestLetters = 20;
/// A line that is removed in more places, such as a brace, says nothing about where it went.
constexpr std::size_t mostPlaces = 4;

bool isWhite(char c) { return c == ' ' || (c >= '\t' && c <= '\r'); }

bool isLetter(char c)
{
    const auto byte = static_cast<unsigned char>(c);
    return (c >= '0' && c <= '9') || (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || byte >= 0xC0;
}

class MoveSearch {
public:
    explicit MoveSearch(const ParsedDiff& diff) : diff_(diff), keys_(diff.lines.size()), isTaken_(diff.lines.size())
    {
        std::hash<std::string_view> hash;
        for (std::size_t i = 0; i < diff.lines.size(); ++i) {
            keys_[i] = hash(keyOf(i));
            if (diff.lines[i].kind == Kind::deletion && !isBlank(i))
                removed_[keys_[i]].push_back(index(i));
        }
    }

    std::vector<MovedBlock> blocks()
    {
        std::vector<MovedBlock> found;
        if (removed_.empty())
            return found;
        for (int line = 0; line < index(diff_.lines.size()); ++line) {
            if (!is(line, Kind::addition))
                continue;
            const MovedBlock block = longestAt(line);
            if (block.count == 0)
                continue;
            for (int i = 0; i < block.count; ++i)
                isTaken_[at(block.removed + i)] = isTaken_[at(block.added + i)] = true;
            found.push_back(block);
            line = block.added + block.count - 1;
        }
        return found;
    }

private:
    static int index(std::size_t i) { return static_cast<int>(i); }
    static std::size_t at(int i) { return static_cast<std::size_t>(i); }

    bool is(int line, Kind kind) const
    {
        return line >= 0 && at(line) < diff_.lines.size() && diff_.lines[at(line)].kind == kind && !isTaken_[at(line)];
    }
    bool isBlank(std::size_t line) const { return std::ranges::all_of(diff_.lines[line].text, isWhite); }

    std::string_view keyOf(std::size_t line)
    {
        const std::string& text = diff_.lines[line].bytes();
        if (diff_.whiteSpace == WhiteSpace::compared)
            return text;
        key_.clear();
        std::ranges::remove_copy_if(text, std::back_inserter(key_), isWhite);
        return key_;
    }
    bool areAlike(int removed, int added)
    {
        if (keys_[at(removed)] != keys_[at(added)])
            return false;
        const std::string before(keyOf(at(removed)));
        return before == keyOf(at(added));
    }

    /// Returns the longest block that a line is in; one without lines if it is in none.
    MovedBlock longestAt(int line)
    {
        MovedBlock best;
        const auto places = removed_.find(keys_[at(line)]);
        if (places == removed_.end() || places->second.size() > mostPlaces)
            return best;
        for (const int removed : places->second) {
            // Lines of the same distance are in the same block, which was measured once.
            const auto measured = measured_.find(line - removed);
            if (!is(removed, Kind::deletion) || (measured != measured_.end() && line < measured->second))
                continue;
            const MovedBlock block = blockAround(removed, line);
            if (block.count > best.count && isLong(block))
                best = block;
        }
        return best;
    }

    MovedBlock blockAround(int removed, int added)
    {
        int before = 0;
        while (is(removed - before - 1, Kind::deletion) && is(added - before - 1, Kind::addition) &&
               areAlike(removed - before - 1, added - before - 1))
            ++before;
        int behind = 0;
        while (is(removed + behind, Kind::deletion) && is(added + behind, Kind::addition) &&
               areAlike(removed + behind, added + behind))
            ++behind;
        measured_[added - removed] = added + std::max(behind, 1);
        return {removed - before, added - before, before + behind};
    }

    bool isLong(const MovedBlock& block) const
    {
        int lines = 0;
        std::ptrdiff_t letters = 0;
        for (int i = 0; i < block.count && (lines < fewestLines || letters < fewestLetters); ++i) {
            lines += isBlank(at(block.added + i)) ? 0 : 1;
            letters += std::ranges::count_if(diff_.lines[at(block.added + i)].text, isLetter);
        }
        return lines >= fewestLines && letters >= fewestLetters;
    }

    const ParsedDiff& diff_;
    std::vector<std::size_t> keys_;                             ///< hashes of the lines' texts
    std::vector<bool> isTaken_;                                 ///< which lines are in a block
    std::unordered_map<std::size_t, std::vector<int>> removed_; ///< lines by hash
    std::unordered_map<int, int> measured_; ///< by distance, the line behind the block that was measured last
    std::string key_;
};

} // namespace

std::vector<MovedBlock> movedBlocks(const ParsedDiff& diff)
{
    const bool isOfMerge = !diff.lines.empty() && diff.lines.front().text.starts_with("@@@");
    if (isOfMerge || diff.deletions < fewestLines || diff.additions < fewestLines)
        return {};
    return MoveSearch(diff).blocks();
}

} // namespace gitkit
