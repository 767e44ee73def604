#include "GitKit/parsers/NameStatusParser.h"

#include "GitKit/parsers/Fields.h"

#include <utility>

namespace gitkit {

namespace {

bool takesTwoPaths(char status) { return status == 'R' || status == 'C'; }

/// Only around a status: a path may begin or end with a line feed of its own.
std::string_view withoutLineFeeds(std::string_view text)
{
    while (text.starts_with('\n'))
        text.remove_prefix(1);
    while (text.ends_with('\n'))
        text.remove_suffix(1);
    return text;
}

bool isOctal(char character) { return character >= '0' && character <= '7'; }

/// The byte that an escape stands for. `rest` begins behind the backslash and is moved behind the escape.
char readEscape(std::string_view& rest)
{
    if (rest.size() >= 3 && rest[0] <= '3' && isOctal(rest[0]) && isOctal(rest[1]) && isOctal(rest[2])) {
        const int value = (rest[0] - '0') * 64 + (rest[1] - '0') * 8 + (rest[2] - '0');
        rest.remove_prefix(3);
        return static_cast<char>(static_cast<unsigned char>(value));
    }
    constexpr std::string_view letters = "abtnvfr";
    constexpr std::string_view meanings = "\a\b\t\n\v\f\r";
    const char letter = rest.front();
    rest.remove_prefix(1);
    const std::size_t index = letters.find(letter);
    return index == std::string_view::npos ? letter : meanings[index];
}

} // namespace

std::vector<CommitFile> NameStatusParser::parse(std::string_view output)
{
    std::vector<CommitFile> files;
    Pieces pieces(output, '\0');
    while (const auto piece = pieces.next()) {
        const std::string_view status = withoutLineFeeds(*piece);
        if (status.empty())
            continue;
        CommitFile file;
        file.status = status.front();
        if (takesTwoPaths(file.status))
            file.originalPath = pieces.next();
        const auto path = pieces.next();
        if (!path)
            break;
        file.path = *path;
        files.push_back(std::move(file));
    }
    return files;
}

std::optional<CommitFile> NameStatusParser::parseLine(std::string_view line)
{
    const auto fields = splitFields<2>(line, '\t');
    if (!fields || fields->front().empty())
        return std::nullopt;
    CommitFile file;
    file.status = fields->front().front();
    std::string_view path = fields->back();
    if (const std::size_t tab = path.find('\t'); tab != std::string_view::npos) {
        file.originalPath = unquoted(path.substr(0, tab));
        path.remove_prefix(tab + 1);
    }
    if (path.find('\t') != std::string_view::npos)
        return std::nullopt;
    file.path = unquoted(path);
    return file;
}

std::string NameStatusParser::unquoted(std::string_view name)
{
    if (name.size() < 2 || !name.starts_with('"') || !name.ends_with('"'))
        return std::string(name);
    std::string bytes;
    std::string_view rest = name.substr(1, name.size() - 2);
    while (!rest.empty()) {
        const char character = rest.front();
        rest.remove_prefix(1);
        bytes += character == '\\' && !rest.empty() ? readEscape(rest) : character;
    }
    return bytes;
}

} // namespace gitkit
