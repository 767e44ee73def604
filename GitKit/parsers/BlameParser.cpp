// SPDX-License-Identifier: GPL-3.0-or-later
#include "GitKit/parsers/BlameParser.h"

#include "GitKit/Text.h"
#include "GitKit/parsers/Fields.h"
#include "GitKit/parsers/NameStatusParser.h"
#include "GitKit/records/QuotedName.h"

#include <algorithm>
#include <charconv>
#include <map>
#include <utility>

namespace gitkit {

namespace {

struct Info {
    std::string authorName;
    Date date;
    std::string summary;
    std::shared_ptr<const BlameOrigin> origin;
};

bool isHash(std::string_view word)
{
    const auto isHexDigit = [](char c) {
        return (c >= '0' && c <= '9') || (c >= 'a' && c <= 'f') || (c >= 'A' && c <= 'F');
    };
    return (word.size() == 40 || word.size() == 64) && std::ranges::all_of(word, isHexDigit);
}

std::optional<int> numberIn(std::string_view word)
{
    int number = 0;
    const auto [end, error] = std::from_chars(word.data(), word.data() + word.size(), number);
    return error == std::errc{} && end == word.data() + word.size() ? std::optional(number) : std::nullopt;
}

/// The two numbers in a header: those of the line in its commit and in the blamed file.
struct Numbers {
    std::optional<int> original, final;

    explicit Numbers(std::string_view text)
    {
        const std::size_t blank = text.find(' ');
        original = numberIn(text.substr(0, blank));
        if (blank == std::string_view::npos)
            return;
        text.remove_prefix(blank + 1);
        final = numberIn(text.substr(0, text.find(' ')));
    }
};

std::optional<BlameOrigin::Place> previousPlace(std::string_view value)
{
    const std::size_t blank = value.find(' ');
    if (blank == std::string_view::npos)
        return std::nullopt;
    return BlameOrigin::Place{std::string(value.substr(0, blank)), unquotedName(value.substr(blank + 1))};
}

/// Reads the keys of one group of lines after another.
class Keys {
public:
    void beginGroup() { previous_.reset(); }

    void take(Info& info, std::string_view key, std::string_view value)
    {
        if (key == "author")
            info.authorName = shownLine(value);
        else if (key == "author-time")
            info.date = readDate(value);
        else if (key == "summary")
            info.summary = shownLine(value);
        else if (key == "previous")
            previous_ = previousPlace(value);
        else if (key == "filename")
            takeOrigin(info, {unquotedName(value), std::exchange(previous_, std::nullopt)});
    }

private:
    /// Keeps one origin for each commit and path, because git repeats them when a commit wrote lines in several files.
    static void takeOrigin(Info& info, BlameOrigin origin)
    {
        if (!info.origin || *info.origin != origin)
            info.origin = std::make_shared<const BlameOrigin>(std::move(origin));
    }

    std::optional<BlameOrigin::Place> previous_; ///< printed before the name of the file that it belongs to
};

} // namespace

std::vector<BlameLine> BlameParser::parse(std::string_view output)
{
    std::vector<BlameLine> lines;
    std::map<std::string, Info, std::less<>> commits;
    auto current = commits.emplace().first; // an empty hash, for lines before the first header
    Keys keys;
    int number = 0;
    int originalNumber = 0;
    while (!output.empty()) {
        const std::size_t end = output.find('\n');
        const std::string_view line = output.substr(0, end);
        output.remove_prefix(end == std::string_view::npos ? output.size() : end + 1);

        if (line.starts_with('\t')) {
            const Info& info = current->second;
            lines.push_back({number, current->first, info.authorName, info.date, info.summary,
                             std::string(line.substr(1)), originalNumber, info.origin});
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
            const Numbers numbers(rest);
            number = numbers.final.value_or(number + 1);
            originalNumber = numbers.original.value_or(0);
            keys.beginGroup();
        } else {
            keys.take(current->second, word, rest);
        }
    }
    return lines;
}

} // namespace gitkit
