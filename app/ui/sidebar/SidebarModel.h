// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "app/store/RepositoryStore.h"
#include "app/store/SidebarItem.h"
#include "app/ui/sidebar/SidebarNodes.h"

#include <QAbstractItemModel>

#include <array>
#include <optional>
#include <string>
#include <vector>

namespace plovik {

/// The tree of the sidebar: the four fixed items, then one group each for branches, remotes, tags, worktrees and submodules, with a folder
/// for every prefix that at least two refs share. Groups without refs are absent. Main thread.
///
/// Refers to the refs in the store's lists and copies none, so the owner must call rebuildIfOld() as soon as a list changes.
/// Texts are made when a view asks for them, so that rows out of sight cost nothing.
class SidebarModel : public QAbstractItemModel {
    Q_OBJECT

public:
    using Kind = SidebarKind;

    /// `store` outlives the model.
    explicit SidebarModel(const RepositoryStore& store, QObject* parent = nullptr);

    /// Reads the store's lists again and resets the model.
    void rebuild();
    /// The same, unless the lists are those that were read last.
    void rebuildIfOld();
    /// Announces that the counts of the fixed items may have changed.
    void countsChanged();

    /// Shows only the refs whose names contain `text`, regardless of case. Resets the model.
    void setFilter(const QString& text);
    bool isFiltered() const { return !filter_.isEmpty(); }

    Kind kind(const QModelIndex& index) const { return node(index).kind; }
    /// Returns the level of a row: 0 for fixed items and groups.
    int depth(const QModelIndex& index) const { return node(index).depth; }
    bool isGroup(const QModelIndex& index) const
    {
        return kind(index) == Kind::branches || kind(index) == Kind::remotes || kind(index) == Kind::tags ||
               kind(index) == Kind::worktrees || kind(index) == Kind::submodules;
    }
    /// Returns the number of refs at and below a row, or the count of a fixed item.
    int count(const QModelIndex& index) const;
    /// Returns the ref of a row, or nullptr when the row is no ref. Valid until rebuild().
    const gitkit::GitRef* ref(const QModelIndex& index) const;
    /// Returns the worktree of a row, or nullptr when the row is none. Valid until rebuild().
    const gitkit::Worktree* worktree(const QModelIndex& index) const { return worktree(node(index)); }
    /// The same for a submodule.
    const gitkit::Submodule* submodule(const QModelIndex& index) const { return submodule(node(index)); }
    /// Returns the state of a submodule's row.
    gitkit::SubmoduleState submoduleState(const gitkit::Submodule& submodule) const;
    /// Returns the name of the remote whose row this is; empty for others.
    std::string remote(const QModelIndex& index) const;
    /// Returns how far the branch of a row is from its upstream, as far as that is known.
    gitkit::Divergence divergence(const QModelIndex& index) const { return divergence(node(index)); }
    /// Returns whether the ref has an upstream that does not exist any more.
    bool isUpstreamGone(const QModelIndex& index) const { return node(index).upstreamGone; }
    /// Returns the name of the remote that had it; empty where no remote of now did.
    QString remoteOfUpstream(const QModelIndex& index) const;
    /// Returns what the row selects, or nullopt when it cannot be selected.
    std::optional<SidebarItem> item(const QModelIndex& index) const;
    QModelIndex indexOf(const SidebarItem& item) const;

    /// Returns a name of the row that stays the same across rebuilds.
    std::string key(const QModelIndex& index) const;
    /// Returns all rows that have children.
    std::vector<QModelIndex> containers() const;
    /// Returns the row with that key; invalid when it is gone.
    QModelIndex indexOfKey(const std::string& key) const;

    QModelIndex index(int row, int column, const QModelIndex& parent = {}) const override;
    QModelIndex parent(const QModelIndex& child) const override;
    using QObject::parent;
    int rowCount(const QModelIndex& parent = {}) const override;
    int columnCount(const QModelIndex& parent = {}) const override;
    bool hasChildren(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role) const override;
    Qt::ItemFlags flags(const QModelIndex& index) const override;

private:
    using Node = SidebarNode;

    const Node& node(const QModelIndex& index) const { return nodes_[static_cast<std::size_t>(index.internalId())]; }
    QModelIndex indexOfNode(int id) const;
    void rebuildNodes();
    std::array<const void*, 6> lists() const;

    gitkit::Divergence divergence(const Node& node) const;
    const gitkit::Worktree* worktree(const Node& node) const;
    const gitkit::Submodule* submodule(const Node& node) const;
    QString label(const Node& node) const;
    QString accessibleName(const Node& node) const;
    QString toolTip(const Node& node) const;

    const RepositoryStore& store_;
    QString filter_;
    /// The lists that the nodes refer to, by their places in memory. A list that replaces another one is at another place.
    std::array<const void*, 6> read_{};
    std::vector<Node> nodes_;
    int rootCount_ = 0;
};

} // namespace plovik
