// SPDX-License-Identifier: GPL-3.0-or-later
#include "GitKit/repository/PreparedMessage.h"

#include "GitKit/Text.h"

#include <algorithm>
#include <vector>

namespace gitkit {

namespace {

std::vector<std::string_view> linesOf(std::string_view text)
{
    std::vector<std::string_view> lines;
    while (!text.empty()) {
        lines.push_back(text.substr(0, text.find('\n')));
        text.remove_prefix(std::min(lines.back().size() + 1, text.size()));
    }
    return lines;
}

bool isScissors(std::string_view line)
{
    const std::size_t blank = line.find(' ');
    return blank != std::string_view::npos && blank >= 1 && blank <= 4 &&
           line.substr(blank + 1).starts_with("------------------------ >8 -");
}

/// The line without the comment character and the blank that git writes before a comment; empty for any other line.
std::string_view comment(std::string_view line) { return line.size() > 2 && line[1] == ' ' ? line.substr(2) : ""; }

/// Whether git explains here what to write, or says which of several messages it put together follows.
bool isExplanation(std::string_view line)
{
    const std::string_view said = comment(line);
    return said.starts_with("Please enter ") || said.starts_with("Lines starting with ") ||
           said.starts_with("This is a combination of ") || said.starts_with("This is the ") ||
           said.starts_with("The commit message #") || said.starts_with("The 1st commit message");
}

/// Returns the number of the line that begins git's list of conflicts, or that of all lines.
std::size_t conflictList(const std::vector<std::string_view>& lines)
{
    for (std::size_t start = lines.size(); start-- > 0;) {
        if (lines[start].empty())
            continue;
        if (comment(lines[start]) == "Conflicts:")
            return start;
        if (lines[start].size() < 2 || lines[start][1] != '\t')
            break;
    }
    return lines.size();
}

} // namespace

std::string beforeScissors(std::string_view prepared)
{
    for (const std::string_view line : linesOf(prepared)) {
        if (isScissors(line))
            return std::string(prepared.substr(0, static_cast<std::size_t>(line.data() - prepared.data())));
    }
    return std::string(prepared);
}

std::optional<std::string> writtenMessage(std::string_view prepared)
{
    const std::string before = beforeScissors(prepared);
    const std::vector<std::string_view> lines = linesOf(before);
    if (before.starts_with("Merge tag") || std::ranges::any_of(lines, isExplanation))
        return std::nullopt;
    std::size_t end = conflictList(lines);
    while (end > 0 && trimmed(lines[end - 1]).empty())
        --end;
    std::string written;
    for (std::size_t index = 0; index < end; ++index)
        written.append(lines[index]).push_back('\n');
    return written;
}

std::optional<char> commentCharacter(std::string_view prepared)
{
    const std::vector<std::string_view> lines = linesOf(prepared);
    const auto found = std::ranges::find_if(lines, isExplanation);
    return found == lines.end() ? std::nullopt : std::optional(found->front());
}

char unusedCommentCharacter(std::string_view message)
{
    constexpr std::string_view candidates = "#;@!$%^&|:";
    const std::vector<std::string_view> lines = linesOf(message);
    const auto* const unused = std::ranges::find_if(candidates, [&](char candidate) {
        return std::ranges::none_of(lines, [&](std::string_view line) { return line.starts_with(candidate); });
    });
    return unused == candidates.end() ? '\x01' : *unused;
}

} // namespace gitkit
