#include "GitKit/parsers/BlameParser.h"

#include "GitKit/Text.h"
#include "GitKit/parsers/Fields.h"

#include <algorithm>
#include <charconv>
#include <map>

namespace gitkit {

namespace {

struct Info {
    std::string authorName;
    Date date;
    std::string summary;
};

bool isHash(std::string_view word)
{
    const auto isHexDigit = [](char c) {
        return (c >= '0' && c <= '9') || (c >= 'a' && c <= 'f') || (c >= 'A' && c <= 'F');
    };
    return (word.size() == 40 || word.size() == 64) && std::ranges::all_of(word, isHexDigit);
}

/// The second of the header's numbers, which is the line's number in the blamed file.
std::optional<int> finalNumber(std::string_view numbers)
{
    const std::size_t blank = numbers.find(' ');
    if (blank == std::string_view::npos)
        return std::nullopt;
    numbers.remove_prefix(blank + 1);
    const std::string_view word = numbers.substr(0, numbers.find(' '));
    int number = 0;
    const auto [end, error] = std::from_chars(word.data(), word.data() + word.size(), number);
    return error == std::errc{} && end == word.data() + word.size() ? std::optional(number) : std::nullopt;
}

void takeKey(Info& info, std::string_view key, std::string_view value)
{
    if (key == "author")
        info.authorName = repairedUtf8(std::string(value));
    else if (key == "author-time")
        info.date = readDate(value);
    else if (key == "summary")
        info.summary = repairedUtf8(std::string(value));
}

} // namespace

std::vector<BlameLine> BlameParser::parse(std::string_view output)
{
    std::vector<BlameLine> lines;
    std::map<std::string, Info, std::less<>> commits;
    auto current = commits.emplace().first; // the empty hash, for lines before any header
    int number = 0;
    while (!output.empty()) {
        const std::size_t end = output.find('\n');
        const std::string_view line = output.substr(0, end);
        output.remove_prefix(end == std::string_view::npos ? output.size() : end + 1);

        if (line.starts_with('\t')) {
            const Info& info = current->second;
            lines.push_back(
                {number, current->first, info.authorName, info.date, info.summary, std::string(line.substr(1))});
            continue;
        }
        const std::size_t blank = line.find(' ');
        if (blank == std::string_view::npos)
            continue;
        const std::string_view word = line.substr(0, blank);
        const std::string_view rest = line.substr(blank + 1);
        if (isHash(word)) {
            current = commits.find(word);
            if (current == commits.end())
                current = commits.emplace(std::string(word), Info{}).first;
            number = finalNumber(rest).value_or(number + 1);
        } else {
            takeKey(current->second, word, rest);
        }
    }
    return lines;
}

} // namespace gitkit
