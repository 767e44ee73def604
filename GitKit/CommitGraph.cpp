// SPDX-License-Identifier: GPL-3.0-or-later
#include "GitKit/CommitGraph.h"

#include <algorithm>
#include <utility>

namespace gitkit {

/// Returns the leftmost lane that leads to `hash`; that of an empty one is free.
std::optional<std::size_t> GraphLayout::awaiting(std::string_view hash) const
{
    const auto found = std::ranges::find(lanes_, hash);
    if (found == lanes_.end())
        return std::nullopt;
    return static_cast<std::size_t>(found - lanes_.begin());
}

/// Returns the leftmost free lane; adds one at the right when all are taken.
std::size_t GraphLayout::freeLane()
{
    if (const auto lane = awaiting({}))
        return *lane;
    lanes_.emplace_back();
    return lanes_.size() - 1;
}

/// Divides the lanes into those that end at `hash`, which become free, and those that pass it.
void GraphLayout::arrive(const std::string& hash, GraphRow& row)
{
    for (std::size_t lane = 0; lane < lanes_.size(); ++lane) {
        if (lanes_[lane].empty() || lanes_[lane].front() == '@')
            continue;
        if (lanes_[lane] == hash) {
            row.top.push_back(static_cast<int>(lane));
            lanes_[lane].clear();
        } else {
            row.pass.push_back(static_cast<int>(lane));
        }
    }
}

/// Returns the lane from a dot in lane `own` to one of its parents.
std::size_t GraphLayout::placeParent(const std::string& parent, bool isFirst, std::size_t own)
{
    if (const auto joined = awaiting(parent))
        return *joined;
    const std::size_t lane = isFirst ? own : freeLane();
    lanes_[lane] = parent;
    return lane;
}

/// Frees the lane that is kept for `hash`, so that its commit finds it.
void GraphLayout::takeKeptLane(const std::string& hash)
{
    if (!lanes_.empty() && lanes_.front() == kept(hash))
        lanes_.front().clear();
}

GraphRow GraphLayout::add(const Commit& commit)
{
    GraphRow row;
    const bool isOnLineOfHead = commit.hash == lineOfHead_;
    if (isOnLineOfHead)
        takeKeptLane(commit.hash);
    const auto awaited = isOnLineOfHead ? 0 : awaiting(commit.hash);
    const std::size_t lane = awaited ? *awaited : freeLane();
    row.lane = static_cast<int>(lane);
    arrive(commit.hash, row);
    for (std::size_t index = 0; index < commit.parents.size(); ++index) {
        const bool isFirst = index == 0;
        if (isFirst && isOnLineOfHead) {
            // Another lane may lead to the parent, too: both end there.
            lanes_[lane] = lineOfHead_ = commit.parents[index];
            row.bottom.push_back(static_cast<int>(lane));
            continue;
        }
        row.bottom.push_back(static_cast<int>(placeParent(commit.parents[index], isFirst, lane)));
    }
    laneCount_ = std::max(laneCount_, static_cast<int>(lanes_.size()));
    while (!lanes_.empty() && lanes_.back().empty())
        lanes_.pop_back();
    return row;
}

CommitGraph CommitGraph::layout(std::span<const Commit> commits)
{
    CommitGraph graph;
    graph.rows.reserve(commits.size());
    GraphLayout layout;
    for (const Commit& commit : commits)
        graph.rows.push_back(layout.add(commit));
    graph.laneCount = layout.laneCount();
    return graph;
}

} // namespace gitkit
