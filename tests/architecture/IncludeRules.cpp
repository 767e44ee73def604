// SPDX-License-Identifier: GPL-3.0-or-later
#include "tests/architecture/IncludeRules.h"

#include <algorithm>
#include <deque>
#include <optional>
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
    std::vector<std::string_view> neverReach = {}; ///< through any number of headers
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
        // Readers are used by the parts of the store and by views, so they know no part; no action knows the whole.
        {"app/store/readers/",
         {"GitKit/", "app/await/", "app/store/"},
         Qt::coreOnly,
         {},
         {"app/store/WindowState", "app/store/Snapshot", "app/store/Changes", "app/store/Staging",
          "app/store/CommitDraft", "app/store/History.h", "app/store/Trail", "app/store/actions/",
          "app/store/RepositoryStore"}},
        {"app/store/actions/",
         {"GitKit/", "app/await/", "app/platform/SignIn.h", "app/store/"},
         Qt::coreOnly,
         {},
         {"app/store/RepositoryStore"}},
        {"app/store/", {"GitKit/", "app/await/", "app/platform/SignIn.h"}, Qt::coreOnly},
        {"app/ui/",
         {"app/store/", "GitKit/records/", "GitKit/PartialPatch.h", "app/settings/", "app/platform/"},
         Qt::any,
         {"app/platform/linux/"},
         {"GitKit/repository/", "GitKit/runner/", "GitKit/rewrite/"}},
        {"app/services/",
         {"app/await/", "app/settings/", "app/platform/", "GitKit/"},
         Qt::any,
         {"app/platform/linux/"},
         {"app/store/", "app/ui/", "app/shell/"}},
        {"app/settings/", {"app/platform/"}, Qt::any, {"app/platform/linux/"}},
        {"app/platform/linux/", {"app/platform/", "GitKit/UniqueFd.h"}},
        {"app/platform/", {}, Qt::any, {"app/platform/linux/"}},
        {"app/translations/", {}, Qt::coreOnly},
        {"app/shell/", {"app/", "GitKit/"}, Qt::any, {"app/platform/linux/"}},
        {"cli/askpass/", {}, Qt::none},
        {"cli/", {"GitKit/", "app/translations/"}, Qt::coreOnly},
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

/// What each file includes.
using Graph = std::map<std::string, std::vector<Include>>;

Graph graphOf(const SourceTree& tree)
{
    Graph graph;
    for (const auto& [path, text] : tree)
        graph.emplace(path, includesOf(text));
    return graph;
}

std::vector<std::string> violationsOf(const Room& room, const std::string& path, const Graph& graph,
                                      const std::set<std::string>& qtCoreHeaders)
{
    std::vector<std::string> found;
    for (const auto& [name, quoted] : graph.at(path)) {
        if (!quoted) {
            if (!qtAllowed(room, name, qtCoreHeaders))
                found.push_back(path + " may not include <" + name + ">");
        } else if (!isGenerated(name)) {
            if (!graph.contains(name))
                found.push_back(path + " includes \"" + name + "\", which is no file named from the top of the tree");
            else if (!mayInclude(room, name))
                found.push_back(path + " may not include \"" + name + "\"");
        }
    }
    return found;
}

using Chain = std::vector<std::string>;

std::string written(const Chain& chain)
{
    std::string text = chain.front();
    for (const auto& name : std::span(chain).subspan(1))
        text += " -> " + name;
    return text;
}

bool mayReach(const Room& room, const Include& include, const std::set<std::string>& qtCoreHeaders)
{
    return include.quoted ? !beginsWithAny(include.name, room.neverReach)
                          : qtAllowed(room, include.name, qtCoreHeaders);
}

/// Returns the shortest way by which a file reaches through headers of other rooms what its own room must not reach.
/// Where the way goes on inside the room, the violation is that of the next file.
std::optional<Chain> wayOut(const Room& room, const std::string& path, const Graph& graph,
                            const std::set<std::string>& qtCoreHeaders)
{
    std::set<std::string> seen = {path};
    std::deque<Chain> open = {{path}};
    for (; !open.empty(); open.pop_front()) {
        const auto chain = open.front();
        for (const auto& include : graph.at(chain.back())) {
            auto next = chain;
            next.push_back(include.name);
            if (!mayReach(room, include, qtCoreHeaders)) {
                // What a file of the room includes itself has been told already, unless its room allows it.
                if (chain.size() > 1 || (include.quoted && mayInclude(room, include.name)))
                    return next;
            } else if (include.quoted && !include.name.starts_with(room.path) && graph.contains(include.name) &&
                       seen.insert(include.name).second)
            {
                open.push_back(std::move(next));
            }
        }
    }
    return std::nullopt;
}

/// A header and its source are one part, known by their common name.
std::string partOf(const std::string& path) { return path.substr(0, path.rfind('.')); }

std::map<std::string, std::set<std::string>> partsOfStore(const Graph& graph)
{
    std::map<std::string, std::set<std::string>> known;
    for (const auto& [path, includes] : graph) {
        if (!path.starts_with("app/store/"))
            continue;
        for (const auto& include : includes) {
            if (graph.contains(include.name) && partOf(include.name) != partOf(path))
                known[partOf(path)].insert(partOf(include.name));
        }
    }
    return known;
}

/// Returns the shortest way from a part of the store back to itself, if it is the first of its circle by name.
std::optional<Chain> circleOf(const std::string& part, const std::map<std::string, std::set<std::string>>& known)
{
    std::set<std::string> seen;
    std::deque<Chain> open = {{part}};
    for (; !open.empty(); open.pop_front()) {
        const auto chain = open.front();
        const auto knows = known.find(chain.back());
        if (knows == known.end())
            continue;
        for (const auto& name : knows->second) {
            auto next = chain;
            next.push_back(name);
            if (name == part)
                return next;
            if (name > part && seen.insert(name).second)
                open.push_back(std::move(next));
        }
    }
    return std::nullopt;
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
    const auto graph = graphOf(tree);
    std::vector<std::string> found;
    for (const auto& [path, text] : tree) {
        const auto room = std::ranges::find_if(rooms(), [&](const Room& each) { return path.starts_with(each.path); });
        if (room == rooms().end()) {
            found.push_back(path + " stands in no room");
            continue;
        }
        std::ranges::move(violationsOf(*room, path, graph, qtCoreHeaders), std::back_inserter(found));
        if (const auto way = wayOut(*room, path, graph, qtCoreHeaders))
            found.push_back(path + " may not reach " + way->back() + ": " + written(*way));
        if (path.ends_with(".h") && withoutComments(text).find("#pragma once") == std::string::npos)
            found.push_back(path + " can be read twice: #pragma once is missing");
    }
    const auto known = partsOfStore(graph);
    for (const auto& [part, unused] : known) {
        if (const auto circle = circleOf(part, known))
            found.push_back("the store's parts form a circle: " + written(*circle));
    }
    return found;
}

} // namespace architecture
