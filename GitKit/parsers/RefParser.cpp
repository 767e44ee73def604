// SPDX-License-Identifier: GPL-3.0-or-later
#include "GitKit/parsers/RefParser.h"

#include "GitKit/parsers/Fields.h"

#include <optional>
#include <utility>

namespace gitkit {

namespace {

struct Name {
    GitRef::Kind kind;
    std::string_view text;
};

std::optional<Name> shortName(std::string_view fullName)
{
    constexpr std::array<std::pair<std::string_view, GitRef::Kind>, 3> groups{{
        {"refs/heads/", GitRef::Kind::local},
        {"refs/remotes/", GitRef::Kind::remote},
        {"refs/tags/", GitRef::Kind::tag},
    }};
    for (const auto& [prefix, kind] : groups) {
        if (!fullName.starts_with(prefix))
            continue;
        // A remote's HEAD only repeats one of its branches.
        if (kind == GitRef::Kind::remote && fullName.ends_with("/HEAD"))
            return std::nullopt;
        return Name{kind, fullName.substr(prefix.size())};
    }
    return std::nullopt;
}

/// Returns the number after `word` in git's track text, such as "[ahead 2, behind 1]".
int trackNumber(std::string_view track, std::string_view word)
{
    const std::size_t found = track.find(word);
    if (found == std::string_view::npos)
        return 0;
    const std::string_view rest = track.substr(found + word.size());
    return readNumber(rest.substr(0, rest.find_first_not_of("0123456789")));
}

enum class FourthField { track, upstreamRef };

std::optional<GitRef> parseLine(std::string_view line, FourthField meaning)
{
    const auto fields = splitFields<5>(line, fieldSeparator);
    if (!fields)
        return std::nullopt;
    const auto& [fullName, hash, upstream, fourth, head] = *fields;
    const auto name = shortName(fullName);
    if (!name)
        return std::nullopt;
    GitRef ref;
    ref.fullName = fullName;
    ref.name = name->text;
    ref.kind = name->kind;
    ref.hash = hash;
    ref.isHead = head.substr(0, head.find(fieldSeparator)) == "*";
    if (!upstream.empty())
        ref.upstream = upstream;
    if (meaning == FourthField::upstreamRef) {
        ref.upstreamRef = fourth;
    } else {
        ref.ahead = trackNumber(fourth, "ahead ");
        ref.behind = trackNumber(fourth, "behind ");
    }
    return ref;
}

std::vector<GitRef> parseLines(std::string_view output, FourthField meaning)
{
    std::vector<GitRef> refs;
    Pieces lines(output, '\n');
    while (const auto line = lines.next()) {
        if (auto ref = parseLine(*line, meaning))
            refs.push_back(std::move(*ref));
    }
    return refs;
}

} // namespace

std::vector<GitRef> RefParser::parse(std::string_view output) { return parseLines(output, FourthField::track); }

std::vector<GitRef> RefParser::parseListing(std::string_view output)
{
    return parseLines(output, FourthField::upstreamRef);
}

std::optional<GitRef> RefParser::unreadable(const std::string& fullName)
{
    const auto name = shortName(fullName);
    if (!name)
        return std::nullopt;
    return GitRef{
        .fullName = fullName, .name = std::string(name->text), .kind = name->kind, .hash = {}, .upstream = {}};
}

} // namespace gitkit
