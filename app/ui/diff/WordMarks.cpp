// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/ui/diff/WordMarks.h"

#include <algorithm>

namespace plovik {

namespace {

/// How many words are compared with each other. In longer lines, all between the equal ends is marked as one.
constexpr std::size_t mostWords = 160;
/// How many units a line with marks may have.
constexpr qsizetype longestLine = 4000;

enum class Class { word, blank, other };

Class classOf(QChar unit)
{
    if (unit.isLetterOrNumber() || unit == u'_' || unit.isMark() || unit.isSurrogate())
        return Class::word;
    return unit.isSpace() ? Class::blank : Class::other;
}

/// Splits a line into words, runs of blanks, and single other characters.
std::vector<TextRange> wordsOf(QStringView line)
{
    std::vector<TextRange> words;
    for (qsizetype at = 0; at < line.size();) {
        const Class kind = classOf(line[at]);
        qsizetype end = at + 1;
        while (kind != Class::other && end < line.size() && classOf(line[end]) == kind)
            ++end;
        words.push_back({at, end});
        at = end;
    }
    return words;
}

struct Line {
    QStringView text;
    std::vector<TextRange> words;
    std::vector<bool> isKept;

    explicit Line(QStringView line) : text(line), words(wordsOf(line)), isKept(words.size(), false) {}

    QStringView word(std::size_t index) const
    {
        return text.sliced(words[index].begin, words[index].end - words[index].begin);
    }
};

/// Marks the words of a longest common subsequence of [first, …End) as kept.
void keepCommon(Line& before, Line& after, std::size_t first, std::size_t beforeEnd, std::size_t afterEnd)
{
    const std::size_t rows = beforeEnd - first;
    const std::size_t columns = afterEnd - first;
    if (rows > mostWords || columns > mostWords)
        return;
    std::vector<int> length((rows + 1) * (columns + 1), 0);
    const auto at = [&](std::size_t row, std::size_t column) -> int& { return length[row * (columns + 1) + column]; };
    for (std::size_t row = rows; row-- > 0;) {
        for (std::size_t column = columns; column-- > 0;) {
            at(row, column) = before.word(first + row) == after.word(first + column)
                                  ? at(row + 1, column + 1) + 1
                                  : std::max(at(row + 1, column), at(row, column + 1));
        }
    }
    for (std::size_t row = 0, column = 0; row < rows && column < columns;) {
        if (before.word(first + row) == after.word(first + column)) {
            before.isKept[first + row++] = true;
            after.isKept[first + column++] = true;
        } else if (at(row + 1, column) >= at(row, column + 1)) {
            ++row;
        } else {
            ++column;
        }
    }
}

void compare(Line& before, Line& after)
{
    std::size_t beforeEnd = before.words.size();
    std::size_t afterEnd = after.words.size();
    std::size_t first = 0;
    for (; first < std::min(beforeEnd, afterEnd) && before.word(first) == after.word(first); ++first)
        before.isKept[first] = after.isKept[first] = true;
    while (beforeEnd > first && afterEnd > first && before.word(beforeEnd - 1) == after.word(afterEnd - 1)) {
        before.isKept[--beforeEnd] = true;
        after.isKept[--afterEnd] = true;
    }
    keepCommon(before, after, first, beforeEnd, afterEnd);
}

/// Counts the units that were kept, without blanks, which say nothing about likeness.
qsizetype keptInk(const Line& line)
{
    qsizetype kept = 0;
    for (std::size_t i = 0; i < line.words.size(); ++i) {
        if (line.isKept[i] && classOf(line.text[line.words[i].begin]) != Class::blank)
            kept += line.words[i].end - line.words[i].begin;
    }
    return kept;
}

qsizetype ink(const Line& line)
{
    return std::ranges::count_if(line.text, [](QChar unit) { return classOf(unit) != Class::blank; });
}

std::vector<TextRange> changedParts(const Line& line)
{
    std::vector<TextRange> parts;
    for (std::size_t i = 0; i < line.words.size(); ++i) {
        if (line.isKept[i])
            continue;
        // A kept blank between two changed words is marked with them, because one mark reads better than two.
        const bool bridges = !parts.empty() && i >= 2 && !line.isKept[i - 2] &&
                             parts.back().end == line.words[i - 2].end &&
                             classOf(line.text[line.words[i - 1].begin]) == Class::blank;
        if (!parts.empty() && (parts.back().end == line.words[i].begin || bridges))
            parts.back().end = line.words[i].end;
        else
            parts.push_back(line.words[i]);
    }
    return parts;
}

} // namespace

WordMarks wordMarks(QStringView before, QStringView after)
{
    if (before == after || before.size() > longestLine || after.size() > longestLine)
        return {};
    Line old(before);
    Line now(after);
    compare(old, now);
    // For a line that is mostly new, the background says enough.
    const qsizetype all = std::min(ink(old), ink(now));
    if (all == 0 || 3 * std::max(keptInk(old), keptInk(now)) < all)
        return {};
    return {changedParts(old), changedParts(now)};
}

} // namespace plovik
