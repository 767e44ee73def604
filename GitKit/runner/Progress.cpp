// SPDX-License-Identifier: GPL-3.0-or-later
#include "GitKit/runner/Progress.h"

#include "GitKit/Text.h"

#include <algorithm>

namespace gitkit {

namespace {

bool isDigit(char character) { return character >= '0' && character <= '9'; }
bool isLetter(char character)
{
    return (character >= 'a' && character <= 'z') || (character >= 'A' && character <= 'Z');
}

/// "Counting objects: 100% (5/5), done." or "Enumerating objects: 5, done."; also with "remote: " before it. A line that
/// is to be overwritten ends in a carriage return; any other says that it is done, which a hook's "Errors: 12" does not.
bool isProgress(std::string_view line)
{
    const bool isOverwritten = line.ends_with('\r');
    line = trimmed(line);
    if (!isOverwritten && !line.ends_with(", done."))
        return false;
    constexpr std::string_view remote = "remote: ";
    if (line.starts_with(remote))
        line.remove_prefix(remote.size());
    const std::size_t colon = line.find(':');
    if (colon == std::string_view::npos || colon == 0)
        return false;
    const auto isTitle = [](char character) { return isLetter(character) || character == ' '; };
    if (!std::ranges::all_of(line.substr(0, colon), isTitle))
        return false;
    std::string_view rest = trimmed(line.substr(colon + 1));
    const std::size_t digits = std::min(rest.find_first_not_of("0123456789"), rest.size());
    if (digits == 0 || !isDigit(rest.front()))
        return false;
    rest.remove_prefix(digits);
    return rest.empty() || rest.starts_with("% (") || rest.starts_with(", done");
}

/// Takes the first line from `text`, together with the \n or \r that ends it.
std::string_view takeLine(std::string_view& text)
{
    const std::size_t end = text.find_first_of("\r\n");
    const std::size_t size = end == std::string_view::npos ? text.size() : end + 1;
    const std::string_view line = text.substr(0, size);
    text.remove_prefix(size);
    return line;
}

} // namespace

std::optional<std::string> lastProgress(std::string_view chunk)
{
    std::string_view last;
    while (!chunk.empty()) {
        const std::string_view line = takeLine(chunk);
        if (isProgress(line))
            last = trimmed(line);
    }
    return last.empty() ? std::nullopt : std::optional<std::string>(last);
}

std::string withoutProgress(std::string_view text)
{
    std::string kept;
    while (!text.empty()) {
        const std::string_view line = takeLine(text);
        if (!isProgress(line))
            kept += line;
    }
    return kept;
}

} // namespace gitkit
