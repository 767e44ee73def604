// SPDX-License-Identifier: GPL-3.0-or-later
#include "tests/architecture/IncludeRules.h"

#include <algorithm>
#include <span>

namespace architecture {

namespace {

enum class Qt { none, coreOnly, any };

/// A room and what its files may include of ours, besides the room itself. Every entry is the beginning of a path.
struct Room {
    std::string_view path;
    std::vector<std::string_view> mayInclude;
    Qt qt = Qt::any;
    std::vector<std::string_view> never = {};
};

// The first room that a path begins with is its room, so the inner ones stand before the outer ones.
const std::vector<Room>& rooms()
{
    static const std::vector<Room> table = {
        {"GitKit/records/", {}, Qt::none},
        {"GitKit/parsers/", {"GitKit/records/", "GitKit/Text.h"}, Qt::none},
        {"GitKit/runner/",
         {"GitKit/Text.h", "GitKit/UniqueFd.h", "GitKit/records/Run.h", "GitKit/records/ErrorKind.h"},
         Qt::none},
        {"GitKit/CommitGraph", {"GitKit/records/"}, Qt::none},
        {"GitKit/PartialPatch", {"GitKit/records/"}, Qt::none},
        {"GitKit/", {}, Qt::none},
        {"app/await/", {}, Qt::coreOnly},
        {"app/store/", {"GitKit/", "app/await/", "app/platform/SignIn.h"}, Qt::coreOnly},
        {"app/ui/",
         {"app/store/", "GitKit/records/", "GitKit/PartialPatch.h", "app/settings/", "app/platform/"},
         Qt::any,
         {"GitKit/runner/GitRunner.h", "app/platform/linux/"}},
        {"app/services/",
         {"app/await/", "app/settings/", "app/platform/", "GitKit/"},
         Qt::any,
         {"app/platform/linux/"}},
        {"app/settings/", {"app/platform/"}, Qt::any, {"app/platform/linux/"}},
        {"app/platform/linux/", {"app/platform/", "GitKit/UniqueFd.h"}},
        {"app/platform/", {}, Qt::any, {"app/platform/linux/"}},
        {"app/translations/", {}, Qt::coreOnly},
        {"app/shell/", {"app/", "GitKit/"}, Qt::any, {"app/platform/linux/"}},
        {"cli/", {"GitKit/"}, Qt::none},
    };
    return table;
}

bool beginsWithAny(std::string_view path, std::span<const std::string_view> beginnings)
{
    return std::ranges::any_of(beginnings, [&](std::string_view beginning) { return path.starts_with(beginning); });
}

bool mayInclude(const Room& room, const std::string& name)
{
    return !beginsWithAny(name, room.never) && (name.starts_with(room.path) || beginsWithAny(name, room.mayInclude));
}

/// Qt's headers and those of the libraries around it are the only ones of ours or theirs that begin with Q or qt.
bool isQt(std::string_view header) { return header.starts_with('Q') || header.starts_with("qt"); }

bool qtAllowed(const Room& room, const std::string& header, const std::set<std::string>& qtCoreHeaders)
{
    switch (room.qt) {
    case Qt::none:
        return !isQt(header);
    case Qt::coreOnly:
        return !isQt(header) || header.starts_with("QCoro") || qtCoreHeaders.contains(header);
    case Qt::any:
        break;
    }
    return true;
}

/// What moc writes is included by the file it was made from.
bool isGenerated(std::string_view name) { return name.ends_with(".moc") || name.starts_with("moc_"); }

std::string withoutComments(std::string_view text)
{
    std::string code;
    code.reserve(text.size());
    for (std::size_t at = 0; at < text.size();) {
        if (text.substr(at, 2) == "//") {
            at = std::min(text.find('\n', at), text.size());
        } else if (text.substr(at, 2) == "/*") {
            const auto end = text.find("*/", at + 2);
            at = end == std::string_view::npos ? text.size() : end + 2;
        } else {
            code += text[at++];
        }
    }
    return code;
}

std::string_view withoutIndent(std::string_view text)
{
    return text.substr(std::min(text.find_first_not_of(" \t"), text.size()));
}

/// The file name if a line is an include directive.
std::vector<Include> includeOf(std::string_view line)
{
    line = withoutIndent(line);
    if (!line.starts_with('#'))
        return {};
    line = withoutIndent(line.substr(1));
    if (!line.starts_with("include"))
        return {};
    line = withoutIndent(line.substr(std::string_view("include").size()));
    if (line.empty() || (line.front() != '"' && line.front() != '<'))
        return {};
    const bool quoted = line.front() == '"';
    const auto end = line.find(quoted ? '"' : '>', 1);
    return {{std::string(line.substr(1, end - 1)), quoted}};
}

std::vector<std::string> violationsOf(const Room& room, const std::string& path, const SourceTree& tree,
                                      const std::set<std::string>& qtCoreHeaders)
{
    std::vector<std::string> found;
    for (const auto& [name, quoted] : includesOf(tree.at(path))) {
        if (!quoted) {
            if (!qtAllowed(room, name, qtCoreHeaders))
                found.push_back(path + " may not include <" + name + ">");
        } else if (!isGenerated(name)) {
            if (!tree.contains(name))
                found.push_back(path + " includes \"" + name + "\", which is no file named from the top of the tree");
            else if (!mayInclude(room, name))
                found.push_back(path + " may not include \"" + name + "\"");
        }
    }
    return found;
}

} // namespace

std::vector<Include> includesOf(std::string_view text)
{
    const auto code = withoutComments(text);
    std::vector<Include> includes;
    for (std::size_t at = 0; at < code.size();) {
        const auto end = std::min(code.find('\n', at), code.size());
        for (auto& include : includeOf(std::string_view(code).substr(at, end - at)))
            includes.push_back(std::move(include));
        at = end + 1;
    }
    return includes;
}

std::vector<std::string> violations(const SourceTree& tree, const std::set<std::string>& qtCoreHeaders)
{
    std::vector<std::string> found;
    for (const auto& [path, text] : tree) {
        const auto room = std::ranges::find_if(rooms(), [&](const Room& each) { return path.starts_with(each.path); });
        if (room == rooms().end()) {
            found.push_back(path + " stands in no room");
            continue;
        }
        std::ranges::move(violationsOf(*room, path, tree, qtCoreHeaders), std::back_inserter(found));
        if (path.ends_with(".h") && withoutComments(text).find("#pragma once") == std::string::npos)
            found.push_back(path + " can be read twice: #pragma once is missing");
    }
    return found;
}

} // namespace architecture
