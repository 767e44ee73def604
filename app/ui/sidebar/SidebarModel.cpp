// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/ui/sidebar/SidebarModel.h"

#include "GitKit/records/Commit.h"
#include "GitKit/records/RemoteBranch.h"
#include "app/store/Secrets.h"
#include "app/store/ShownText.h"
#include "app/store/actions/Refs.h"
#include "app/store/actions/Submodules.h"
#include "app/store/actions/Worktrees.h"
#include "app/ui/widgets/RowPainting.h"

#include <QLocale>

#include <algorithm>
#include <string_view>
#include <utility>

namespace plovik {

namespace {

/// Returns the line of a tooltip that tells how far a branch is from its upstream.
QString followingLine(gitkit::Divergence from, const QString& upstream)
{
    const QString ahead = QLocale().toString(from.ahead);
    const QString behind = QLocale().toString(from.behind);
    if (from.ahead > 0 && from.behind > 0)
        return SidebarModel::tr("Follows %1, %2 ahead, %3 behind").arg(upstream, ahead, behind);
    if (from.ahead > 0)
        return SidebarModel::tr("Follows %1, %2 ahead").arg(upstream, ahead);
    if (from.behind > 0)
        return SidebarModel::tr("Follows %1, %2 behind").arg(upstream, behind);
    return SidebarModel::tr("Follows %1").arg(upstream);
}

QString worktreeTip(const gitkit::Worktree& tree)
{
    QStringList lines{shownText(tree.folder.native())};
    if (!tree.branch.empty())
        lines << shownText(tree.branchName());
    else if (!tree.head.empty())
        lines << SidebarModel::tr("HEAD detached at %1").arg(shownText(gitkit::shortHash(tree.head)));
    if (const QString why = actions::whyNotOpened(tree); !why.isEmpty())
        lines << why;
    if (tree.lock)
        lines << (tree.lock->empty() ? SidebarModel::tr("Locked")
                                     : SidebarModel::tr("Locked: %1").arg(shownText(*tree.lock)));
    return lines.join(u'\n');
}

} // namespace

SidebarModel::SidebarModel(const RepositoryStore& store, QObject* parent) : QAbstractItemModel(parent), store_(store)
{
    rebuildNodes();
}

void SidebarModel::rebuild()
{
    beginResetModel();
    rebuildNodes();
    endResetModel();
}

std::array<const void*, 6> SidebarModel::lists() const
{
    const Snapshot& now = store_.snapshot();
    return {now.branches.value().data(),
            now.remoteBranches.value().data(),
            now.tags.value().data(),
            now.remotes.value().data(),
            store_.neighbours().worktrees.value().data(),
            store_.neighbours().submodules.value().data()};
}

void SidebarModel::rebuildIfOld()
{
    if (lists() != read_)
        rebuild();
}

void SidebarModel::setFilter(const QString& text)
{
    if (text == filter_)
        return;
    filter_ = text;
    rebuild();
}

void SidebarModel::countsChanged() { Q_EMIT dataChanged(index(0, 0), index(fixedSidebarItems - 1, 0)); }

void SidebarModel::rebuildNodes()
{
    read_ = lists();
    const Snapshot& now = store_.snapshot();
    SidebarNodes made =
        sidebarNodes({now.branches.value(), now.remoteBranches.value(), now.tags.value(), now.remotes.value(),
                      store_.neighbours().worktrees.value(), store_.neighbours().submodules.value()},
                     filter_);
    nodes_ = std::move(made.all);
    rootCount_ = made.roots;
}

QModelIndex SidebarModel::indexOfNode(int id) const
{
    return createIndex(nodes_[static_cast<std::size_t>(id)].row, 0, static_cast<quintptr>(id));
}

QModelIndex SidebarModel::index(int row, int column, const QModelIndex& parent) const
{
    if (row < 0 || column != 0 || row >= rowCount(parent))
        return {};
    const int id = parent.isValid() ? node(parent).firstChild + row : row;
    return createIndex(row, 0, static_cast<quintptr>(id));
}

QModelIndex SidebarModel::parent(const QModelIndex& child) const
{
    if (!child.isValid() || node(child).parent < 0)
        return {};
    return indexOfNode(node(child).parent);
}

int SidebarModel::rowCount(const QModelIndex& parent) const
{
    return parent.isValid() ? node(parent).childCount : rootCount_;
}

int SidebarModel::columnCount(const QModelIndex& parent) const
{
    Q_UNUSED(parent)
    return 1;
}

bool SidebarModel::hasChildren(const QModelIndex& parent) const { return rowCount(parent) > 0; }

Qt::ItemFlags SidebarModel::flags(const QModelIndex& index) const
{
    // Asked for every row of an open group, so no item is made.
    if (!index.isValid() || kind(index) == Kind::nothingFound)
        return Qt::NoItemFlags;
    const bool isHeading = isGroup(index) || kind(index) == Kind::folder;
    const Qt::ItemFlags row = Qt::ItemIsEnabled | Qt::ItemIsSelectable;
    if (kind(index) == Kind::ref)
        return row | Qt::ItemIsDragEnabled;
    if (kind(index) == Kind::worktree || kind(index) == Kind::submodule)
        return Qt::ItemIsEnabled; // it opens a window and selects nothing in this one
    return isHeading ? Qt::ItemIsEnabled : row;
}

int SidebarModel::count(const QModelIndex& index) const
{
    const Node& shown = node(index);
    if (shown.kind == Kind::workingCopy)
        return static_cast<int>(store_.snapshot().status.value().files.size());
    if (shown.kind == Kind::stashes)
        return static_cast<int>(store_.snapshot().stashes.value().size());
    return shown.refCount;
}

const gitkit::GitRef* SidebarModel::ref(const QModelIndex& index) const
{
    return kind(index) == Kind::ref ? node(index).ref : nullptr;
}

const gitkit::Worktree* SidebarModel::worktree(const Node& node) const
{
    const std::vector<gitkit::Worktree>& all = store_.neighbours().worktrees.value();
    return node.kind == Kind::worktree && node.place < all.size() ? &all[node.place] : nullptr;
}

const gitkit::Submodule* SidebarModel::submodule(const Node& node) const
{
    const std::vector<gitkit::Submodule>& all = store_.neighbours().submodules.value();
    return node.kind == Kind::submodule && node.place < all.size() ? &all[node.place] : nullptr;
}

gitkit::SubmoduleState SidebarModel::submoduleState(const gitkit::Submodule& submodule) const
{
    return stateOf(submodule, store_.snapshot().status.value());
}

std::string SidebarModel::remote(const QModelIndex& index) const
{
    const Node& shown = node(index);
    if (shown.kind != Kind::folder || shown.depth != 1 || shown.ref->kind != gitkit::GitRef::Kind::remote)
        return {};
    const std::string name = shown.ref->name.substr(0, shown.nameEnd);
    const std::vector<std::string>& all = store_.snapshot().remotes.value();
    return std::ranges::find(all, name) == all.end() ? std::string() : name;
}

QString SidebarModel::remoteOfUpstream(const QModelIndex& index) const
{
    const gitkit::GitRef* const branch = ref(index);
    if (!branch || !branch->upstream)
        return {};
    return shownText(gitkit::remoteBranchOf(*branch->upstream, store_.snapshot().remotes.value()).remote);
}

std::optional<SidebarItem> SidebarModel::item(const QModelIndex& index) const
{
    switch (kind(index)) {
    case Kind::workingCopy:
        return SidebarItem::workingCopy();
    case Kind::history:
        return SidebarItem::history();
    case Kind::stashes:
        return SidebarItem::stashes();
    case Kind::timeline:
        return SidebarItem::timeline();
    case Kind::refLog:
        return SidebarItem::refLog("HEAD");
    case Kind::ref:
        return SidebarItem::ref(node(index).ref->fullName);
    default:
        return std::nullopt;
    }
}

QModelIndex SidebarModel::indexOf(const SidebarItem& item) const
{
    const auto found = std::ranges::find_if(nodes_, [&](const Node& node) {
        switch (node.kind) {
        case Kind::workingCopy:
            return item.kind == SidebarItem::Kind::workingCopy;
        case Kind::history:
            return item.kind == SidebarItem::Kind::history;
        case Kind::stashes:
            return item.kind == SidebarItem::Kind::stashes;
        case Kind::timeline:
            return item.kind == SidebarItem::Kind::timeline;
        case Kind::refLog:
            return item.kind == SidebarItem::Kind::refLog;
        case Kind::ref:
            return item.isRef() && node.ref->fullName == item.refName;
        default:
            return false;
        }
    });
    return found == nodes_.end() ? QModelIndex() : indexOfNode(static_cast<int>(found - nodes_.begin()));
}

std::string SidebarModel::key(const QModelIndex& index) const
{
    const Node& shown = node(index);
    if (shown.kind == Kind::ref)
        return shown.ref->fullName;
    if (shown.kind == Kind::folder) {
        // The full name of its first ref says which group it is in; the slash at the end tells it from a ref.
        const std::string& full = shown.ref->fullName;
        return full.substr(0, full.size() - shown.ref->name.size()) + shown.ref->name.substr(0, shown.nameEnd) + "/";
    }
    if (const gitkit::Worktree* const tree = worktree(shown))
        return "worktree " + tree->folder.string();
    if (const gitkit::Submodule* const inside = submodule(shown))
        return "submodule " + inside->path;
    return std::to_string(static_cast<int>(shown.kind));
}

QModelIndex SidebarModel::indexOfKey(const std::string& key) const
{
    for (int id = 0; id < static_cast<int>(nodes_.size()); ++id) {
        const Node& node = nodes_[static_cast<std::size_t>(id)];
        // Refs are compared without key(), which would copy up to 20,000 names.
        if (node.kind == Kind::ref ? node.ref->fullName == key : this->key(indexOfNode(id)) == key)
            return indexOfNode(id);
    }
    return {};
}

std::vector<QModelIndex> SidebarModel::containers() const
{
    std::vector<QModelIndex> found;
    for (int id = 0; id < static_cast<int>(nodes_.size()); ++id) {
        if (nodes_[static_cast<std::size_t>(id)].childCount > 0)
            found.push_back(indexOfNode(id));
    }
    return found;
}

gitkit::Divergence SidebarModel::divergence(const Node& node) const
{
    return node.kind == Kind::ref ? store_.counts().of(node.ref->fullName) : gitkit::Divergence();
}

QString SidebarModel::label(const Node& node) const
{
    switch (node.kind) {
    case Kind::workingCopy:
        return tr("Working Copy");
    case Kind::history:
        return tr("History");
    case Kind::stashes:
        return tr("Stashes");
    case Kind::timeline:
        return tr("Timeline");
    case Kind::refLog:
        return tr("Where HEAD Was");
    case Kind::branches:
        return tr("BRANCHES");
    case Kind::remotes:
        return tr("REMOTES");
    case Kind::tags:
        return tr("TAGS");
    case Kind::worktrees:
        return tr("WORKTREES");
    case Kind::submodules:
        return tr("SUBMODULES");
    case Kind::submodule:
        return submodule(node) ? shownText(submodule(node)->path) : QString();
    case Kind::worktree:
        return worktree(node) ? actions::worktreeName(*worktree(node)) : QString();
    case Kind::nothingFound:
        return tr("No branch or tag matches");
    case Kind::folder:
    case Kind::ref:
        break;
    }
    const std::size_t length = node.nameEnd == std::string::npos ? node.nameEnd : node.nameEnd - node.nameStart;
    return shownText(std::string_view(node.ref->name).substr(node.nameStart, length));
}

QString SidebarModel::accessibleName(const Node& node) const
{
    return node.kind == Kind::ref ? shownText(node.ref->name) : label(node);
}

QString SidebarModel::toolTip(const Node& node) const
{
    if (node.kind == Kind::folder)
        return shownText(std::string_view(node.ref->name).substr(0, node.nameEnd));
    if (const gitkit::Worktree* const tree = worktree(node))
        return worktreeTip(*tree);
    if (const gitkit::Submodule* const inside = submodule(node))
        return shownText(inside->path) + u'\n' + actions::shownState(submoduleState(*inside)) +
               (inside->url.empty() ? QString() : u'\n' + withoutSecrets(shownText(inside->url)));
    if (node.kind != Kind::ref)
        return {};
    QStringList lines{shownText(node.ref->name)};
    if (node.ref->isHead)
        lines << tr("Checked out");
    if (const QString why = actions::damage(*node.ref); !why.isEmpty())
        lines << why;
    if (node.ref->upstream) {
        const QString upstream = shownText(*node.ref->upstream);
        lines << (node.upstreamGone ? tr("Its upstream %1 is gone").arg(upstream)
                                    : followingLine(divergence(node), upstream));
    }
    return lines.join(u'\n');
}

QVariant SidebarModel::data(const QModelIndex& index, int role) const
{
    if (!index.isValid())
        return {};
    switch (role) {
    case Qt::DisplayRole:
        return label(node(index));
    case Qt::AccessibleTextRole:
        return accessibleName(node(index));
    case Qt::AccessibleDescriptionRole:
        if (kind(index) == Kind::ref || kind(index) == Kind::folder || kind(index) == Kind::worktree ||
            kind(index) == Kind::submodule)
            return toolTip(node(index));
        return count(index) == 0 ? QString() : QLocale().toString(count(index));
    case Qt::ToolTipRole:
        return plainToolTip(toolTip(node(index)));
    default:
        return {};
    }
}

} // namespace plovik

#include "moc_SidebarModel.cpp"
