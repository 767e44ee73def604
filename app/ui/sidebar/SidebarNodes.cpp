// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/ui/sidebar/SidebarNodes.h"

#include "app/ui/widgets/TypedText.h"

#include <algorithm>
#include <optional>
#include <string_view>
#include <unordered_map>
#include <unordered_set>
#include <utility>

namespace plovik {

namespace {

/// Makes the nodes of one tree.
class SidebarTree {
public:
    SidebarTree(const SidebarLists& lists, const QString& filter) : lists_(lists), filter_(filter) {}

    SidebarNodes made();

private:
    using Kind = SidebarKind;
    using Node = SidebarNode;
    using Refs = std::vector<const gitkit::GitRef*>;

    int addNode(Node node);
    Refs matching(const std::vector<gitkit::GitRef>& refs) const;
    std::size_t prefixLength(Kind group, const gitkit::GitRef& ref, std::size_t start, bool isGroup) const;
    void fill(int parent, Kind group, const Refs& refs, std::size_t nameStart);
    std::vector<std::size_t> matchingWorktrees() const;
    std::vector<std::size_t> matchingSubmodules() const;
    void addPlaces(Kind kind, int parent, const std::vector<std::size_t>& places);
    void markGoneUpstreams();

    const SidebarLists& lists_;
    const QString& filter_;
    std::vector<Node> nodes_;
};

int SidebarTree::addNode(Node node)
{
    nodes_.push_back(node);
    return static_cast<int>(nodes_.size()) - 1;
}

SidebarNodes SidebarTree::made()
{
    nodes_.reserve(lists_.branches.size() + lists_.remoteBranches.size() + lists_.tags.size() + 16);
    struct Group {
        Kind kind;
        Refs refs;
    };
    std::vector<Group> groups;
    for (auto [kind, list] : {std::pair{Kind::branches, &lists_.branches},
                              std::pair{Kind::remotes, &lists_.remoteBranches}, std::pair{Kind::tags, &lists_.tags}})
    {
        if (Refs refs = matching(*list); !refs.empty())
            groups.push_back({kind, std::move(refs)});
    }

    int row = 0;
    for (const Kind kind : {Kind::workingCopy, Kind::history, Kind::stashes, Kind::timeline, Kind::refLog})
        addNode({.kind = kind, .row = row++});
    for (const Group& group : groups)
        addNode({.kind = group.kind, .row = row++, .refCount = static_cast<int>(group.refs.size())});
    const std::vector<std::size_t> worktrees = matchingWorktrees();
    const std::vector<std::size_t> submodules = matchingSubmodules();
    int nextGroup = static_cast<int>(nodes_.size());
    for (const auto& [kind, places] :
         {std::pair(Kind::worktrees, &worktrees), std::pair(Kind::submodules, &submodules)})
    {
        if (!places->empty())
            addNode({.kind = kind, .row = row++, .refCount = static_cast<int>(places->size())});
    }
    if (groups.empty() && worktrees.empty() && submodules.empty() && !filter_.isEmpty())
        addNode({.kind = Kind::nothingFound, .row = row++});
    for (std::size_t i = 0; i < groups.size(); ++i)
        fill(static_cast<int>(i) + fixedSidebarItems, groups[i].kind, groups[i].refs, 0);
    if (!worktrees.empty())
        addPlaces(Kind::worktree, nextGroup++, worktrees);
    if (!submodules.empty())
        addPlaces(Kind::submodule, nextGroup, submodules);
    markGoneUpstreams();
    return {std::move(nodes_), row};
}

SidebarTree::Refs SidebarTree::matching(const std::vector<gitkit::GitRef>& refs) const
{
    Refs found;
    found.reserve(refs.size());
    for (const gitkit::GitRef& ref : refs) {
        if (filter_.isEmpty() || containsTyped(ref.name, filter_))
            found.push_back(&ref);
    }
    return found;
}

/// Returns how many bytes of the name after `start` name a folder; 0 when the rest is the ref's own name.
std::size_t SidebarTree::prefixLength(Kind group, const gitkit::GitRef& ref, std::size_t start, bool isGroup) const
{
    const std::string_view rest = std::string_view(ref.name).substr(start);
    if (group == Kind::remotes && isGroup) {
        // A remote's name may contain slashes.
        std::size_t longest = 0;
        for (const std::string& remote : lists_.remotes) {
            if (remote.size() > longest && rest.size() > remote.size() + 1 && rest.starts_with(remote) &&
                rest[remote.size()] == '/')
                longest = remote.size();
        }
        if (longest > 0)
            return longest;
    }
    const std::size_t slash = rest.find('/');
    return slash == std::string_view::npos ? 0 : slash;
}

void SidebarTree::fill(int parent, Kind group, const Refs& refs, std::size_t nameStart)
{
    const int parentDepth = nodes_[static_cast<std::size_t>(parent)].depth;
    const bool isGroup = nodes_[static_cast<std::size_t>(parent)].kind != Kind::folder;

    // The refs of a folder mostly follow one another, so a prefix is looked up only where it changes.
    struct Prefix {
        std::string_view text;
        int sharing = 0;
        std::optional<std::size_t> folder = {};
    };
    std::unordered_map<std::string_view, Prefix> prefixes;
    std::vector<Prefix*> prefixOf;
    prefixOf.reserve(refs.size());
    for (const gitkit::GitRef* ref : refs) {
        const std::string_view text =
            std::string_view(ref->name).substr(nameStart, prefixLength(group, *ref, nameStart, isGroup));
        if (prefixOf.empty() || prefixOf.back()->text != text)
            prefixOf.push_back(&prefixes.try_emplace(text, Prefix{text}).first->second);
        else
            prefixOf.push_back(prefixOf.back());
        ++prefixOf.back()->sharing;
    }

    // A single ref gets no folder of its own, but a remote always is a folder.
    const bool isRemotes = group == Kind::remotes && isGroup;
    std::vector<std::pair<std::string_view, Refs>> folders; // in the order of their first refs
    Refs leaves;
    for (std::size_t place = 0; place < refs.size(); ++place) {
        Prefix& prefix = *prefixOf[place];
        if (prefix.text.empty() || (prefix.sharing == 1 && !isRemotes)) {
            leaves.push_back(refs[place]);
            continue;
        }
        if (!prefix.folder) {
            prefix.folder = folders.size();
            folders.emplace_back(prefix.text, Refs{});
            folders.back().second.reserve(static_cast<std::size_t>(prefix.sharing));
        }
        folders[*prefix.folder].second.push_back(refs[place]);
    }

    const int first = static_cast<int>(nodes_.size());
    int row = 0;
    for (const gitkit::GitRef* ref : leaves)
        addNode({.kind = Kind::ref,
                 .parent = parent,
                 .row = row++,
                 .depth = parentDepth + 1,
                 .refCount = 1,
                 .ref = ref,
                 .nameStart = nameStart});
    for (const auto& [prefix, inside] : folders)
        addNode({.kind = Kind::folder,
                 .parent = parent,
                 .row = row++,
                 .depth = parentDepth + 1,
                 .refCount = static_cast<int>(inside.size()),
                 .ref = inside.front(),
                 .nameStart = nameStart,
                 .nameEnd = nameStart + prefix.size()});
    nodes_[static_cast<std::size_t>(parent)].firstChild = first;
    nodes_[static_cast<std::size_t>(parent)].childCount = row;
    int folderId = first + static_cast<int>(leaves.size());
    for (const auto& [prefix, inside] : folders)
        fill(folderId++, group, inside, nameStart + prefix.size() + 1);
}

std::vector<std::size_t> SidebarTree::matchingWorktrees() const
{
    std::vector<std::size_t> found;
    for (std::size_t place = 0; place < lists_.worktrees.size(); ++place) {
        const gitkit::Worktree& tree = lists_.worktrees[place];
        if (filter_.isEmpty() || containsTyped(tree.folder.filename().string(), filter_) ||
            containsTyped(tree.branchName(), filter_))
            found.push_back(place);
    }
    return found;
}

std::vector<std::size_t> SidebarTree::matchingSubmodules() const
{
    std::vector<std::size_t> found;
    for (std::size_t place = 0; place < lists_.submodules.size(); ++place) {
        if (filter_.isEmpty() || containsTyped(lists_.submodules[place].path, filter_))
            found.push_back(place);
    }
    return found;
}

void SidebarTree::addPlaces(Kind kind, int parent, const std::vector<std::size_t>& places)
{
    nodes_[static_cast<std::size_t>(parent)].firstChild = static_cast<int>(nodes_.size());
    nodes_[static_cast<std::size_t>(parent)].childCount = static_cast<int>(places.size());
    int row = 0;
    for (const std::size_t place : places)
        addNode({.kind = kind, .parent = parent, .row = row++, .depth = 1, .refCount = 1, .place = place});
}

void SidebarTree::markGoneUpstreams()
{
    const auto hasUpstream = [](const Node& node) {
        return node.kind == Kind::ref && node.ref->kind == gitkit::GitRef::Kind::local && node.ref->upstream;
    };
    if (std::ranges::none_of(nodes_, hasUpstream))
        return;
    std::unordered_set<std::string_view> known;
    for (const auto* list : {&lists_.remoteBranches, &lists_.branches}) {
        for (const gitkit::GitRef& ref : *list)
            known.insert(ref.name);
    }
    for (Node& node : nodes_) {
        if (hasUpstream(node))
            node.upstreamGone = !known.contains(*node.ref->upstream);
    }
}

} // namespace

SidebarNodes sidebarNodes(const SidebarLists& lists, const QString& filter)
{
    return SidebarTree(lists, filter).made();
}

} // namespace plovik
