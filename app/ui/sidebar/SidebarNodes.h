// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "GitKit/records/GitRef.h"
#include "GitKit/records/Submodule.h"
#include "GitKit/records/Worktree.h"

#include <QString>

#include <string>
#include <vector>

namespace plovik {

enum class SidebarKind {
    workingCopy,
    history,
    stashes,
    timeline,
    refLog,
    branches,
    remotes,
    tags,
    worktrees,
    submodules,
    folder,
    ref,
    worktree,
    submodule,
    nothingFound
};

/// A row of the sidebar's tree. The children of a node are stored one after another, so a node needs only the first one
/// and their number. Value; refers to refs that it does not own.
struct SidebarNode {
    SidebarKind kind = SidebarKind::history;
    int parent = -1;
    int row = 0;
    int depth = 0;
    int firstChild = 0;
    int childCount = 0;
    int refCount = 0;
    const gitkit::GitRef* ref = nullptr; ///< the row's own ref, or the first ref below a folder
    std::size_t nameStart = 0;           ///< where the shown part of the ref's name begins
    std::size_t nameEnd = std::string::npos;
    bool upstreamGone = false;
    std::size_t place = 0; ///< of a worktree or submodule in its list
};

/// The lists that the tree is made from. Refers to them.
struct SidebarLists {
    const std::vector<gitkit::GitRef>& branches;
    const std::vector<gitkit::GitRef>& remoteBranches;
    const std::vector<gitkit::GitRef>& tags;
    const std::vector<std::string>& remotes;
    const std::vector<gitkit::Worktree>& worktrees;
    const std::vector<gitkit::Submodule>& submodules;
};

constexpr int fixedSidebarItems = 5; ///< the first rows

/// The nodes of the tree, of which the first ones are its roots.
struct SidebarNodes {
    std::vector<SidebarNode> all;
    int roots = 0;
};

/// Returns the four fixed items and the groups of the refs whose names contain `filter`, regardless of case, with a
/// folder for every prefix that at least two refs share. Groups without refs are absent. Worktrees
/// and submodules follow in groups of their own. Pure.
SidebarNodes sidebarNodes(const SidebarLists& lists, const QString& filter);

} // namespace plovik
