// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/store/Neighbours.h"

#include "app/store/Snapshot.h"
#include "app/store/WindowState.h"

#include <algorithm>
#include <utility>

namespace plovik {

Neighbours::Neighbours(const GitAccess& git, WindowState& window, Snapshot& snapshot)
    : window_(window), snapshot_(snapshot), notifier_(snapshot.status.addNotifier([this] { lookForOutdated(); })),
      read_(git, &readNeighbours, [this] { wereRead(); })
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
    if (std::exchange(hasRead_, true))
        noteRecorded(read_.result()->submodules);
    submodules = read_.result()->submodules;
    lookForOutdated();
}

/// Compares what is recorded with what was.
void Neighbours::noteRecorded(const std::vector<gitkit::Submodule>& now)
{
    const std::vector<gitkit::Submodule>& before = submodules.value();
    for (const gitkit::Submodule& each : now) {
        const auto known = std::ranges::find(before, each.path, &gitkit::Submodule::path);
        if (known == before.end() || known->recorded != each.recorded)
            rerecorded_.insert(each.path);
    }
}

void Neighbours::lookForOutdated()
{
    using enum gitkit::SubmoduleState;
    if (rerecorded_.empty() && outdated.value().empty())
        return;
    std::vector<gitkit::Submodule> found;
    std::set<std::string> left;
    for (const gitkit::Submodule& each : submodules.value()) {
        const gitkit::SubmoduleState state = stateOf(each, snapshot_.status.value());
        if (!rerecorded_.contains(each.path) || (state != otherCommit && state != notInitialised))
            continue;
        found.push_back(each);
        left.insert(each.path);
    }
    rerecorded_ = std::move(left);
    outdated = std::move(found);
}

void Neighbours::leaveOutdated()
{
    rerecorded_.clear();
    outdated = std::vector<gitkit::Submodule>();
}

void Neighbours::tellUnreadable(int count)
{
    if (count > std::exchange(told_, count))
        window_.tell(tr("%Ln worktree(s) cannot be listed by this version of git: there is a line feed in the path.",
                        nullptr, count));
}

} // namespace plovik
