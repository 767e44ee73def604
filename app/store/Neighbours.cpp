// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/store/Neighbours.h"

#include "app/store/Snapshot.h"
#include "app/store/WindowState.h"

#include <utility>

namespace plovik {

Neighbours::Neighbours(const GitAccess& git, WindowState& window, Snapshot& snapshot)
    : window_(window), read_(git, &readNeighbours, [this] { wereRead(); })
{
    snapshot.follow({.afterListings = [this] { return readingAgain(); }});
}

/// The listings that every window shows come first, and do not wait for these.
QCoro::Task<> Neighbours::readingAgain()
{
    read_.askAgain({});
    co_return;
}

void Neighbours::wereRead()
{
    problem = read_.failure() ? read_.failure()->message : QString();
    if (read_.failure() || !read_.result())
        return;
    gitkit::WorktreeList list = read_.result()->worktrees;
    if (list.trees.size() < 2)
        list.trees.clear();
    worktrees = std::move(list.trees);
    tellUnreadable(list.unreadable);
}

void Neighbours::tellUnreadable(int count)
{
    if (count > std::exchange(told_, count))
        window_.tell(tr("%Ln worktree(s) cannot be listed by this version of git: there is a line feed in the path.",
                        nullptr, count));
}

} // namespace plovik
