// SPDX-License-Identifier: GPL-3.0-or-later
#include "GitKit/CommitGraph.h"

#include <algorithm>
#include <optional>
#include <string_view>
#include <utility>

namespace gitkit {

namespace {

/// The lanes between two rows: each holds the hash of the commit that it leads to, and is empty when it is free. The
/// views point into the commits that are laid out.
class Lanes {
public:
    std::size_t size() const { return waiting_.size(); }

    /// Returns the leftmost lane that leads to `hash`.
    std::optional<std::size_t> awaiting(std::string_view hash) const
    {
        const auto found = std::ranges::find(waiting_, hash);
        if (found == waiting_.end())
            return std::nullopt;
        return static_cast<std::size_t>(found - waiting_.begin());
    }

    /// Returns the leftmost free lane; adds one at the right when all are taken.
    std::size_t free()
    {
        if (const auto lane = awaiting({}))
            return *lane;
        waiting_.emplace_back();
        return waiting_.size() - 1;
    }

    void await(std::size_t lane, std::string_view hash) { waiting_[lane] = hash; }

    /// Divides the lanes into those that end at `hash`, which become free, and those that pass it.
    void arrive(std::string_view hash, GraphRow& row)
    {
        for (std::size_t lane = 0; lane < waiting_.size(); ++lane) {
            if (waiting_[lane].empty())
                continue;
            if (waiting_[lane] == hash) {
                row.top.push_back(static_cast<int>(lane));
                waiting_[lane] = {};
            } else {
                row.pass.push_back(static_cast<int>(lane));
            }
        }
    }

    void trim()
    {
        while (!waiting_.empty() && waiting_.back().empty())
            waiting_.pop_back();
    }

private:
    std::vector<std::string_view> waiting_;
};

/// Returns the lane from the dot of `commit`, which is in lane `own`, to its parent number `index`.
std::size_t placeParent(Lanes& lanes, const Commit& commit, std::size_t index, std::size_t own)
{
    const std::string_view parent = commit.parents[index];
    if (const auto joined = lanes.awaiting(parent))
        return *joined;
    const std::size_t lane = index == 0 ? own : lanes.free();
    lanes.await(lane, parent);
    return lane;
}

} // namespace

CommitGraph CommitGraph::layout(std::span<const Commit> commits)
{
    CommitGraph graph;
    graph.rows.reserve(commits.size());
    Lanes lanes;
    for (const Commit& commit : commits) {
        GraphRow row;
        const auto awaited = lanes.awaiting(commit.hash);
        const std::size_t lane = awaited ? *awaited : lanes.free();
        row.lane = static_cast<int>(lane);
        lanes.arrive(commit.hash, row);
        for (std::size_t index = 0; index < commit.parents.size(); ++index)
            row.bottom.push_back(static_cast<int>(placeParent(lanes, commit, index, lane)));
        graph.laneCount = std::max(graph.laneCount, static_cast<int>(lanes.size()));
        lanes.trim();
        graph.rows.push_back(std::move(row));
    }
    return graph;
}

} // namespace gitkit
