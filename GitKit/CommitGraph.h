// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "GitKit/records/Commit.h"
#include "GitKit/records/GraphRow.h"

#include <cstddef>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace gitkit {

/// The branch-and-merge graph beside a list of commits.
struct CommitGraph {
    std::vector<GraphRow> rows; ///< one for each commit, in the order of the commits
    int laneCount = 1;          ///< the number of lanes in the widest row; at least 1

    /// Lays out commits, which are given newest first. Lanes never move, and the next line that needs a lane takes the
    /// first free one. A parent outside the list keeps its lane to the last row. Takes time in proportion to commits
    /// times lanes.
    static CommitGraph layout(std::span<const Commit> commits);

    bool operator==(const CommitGraph&) const = default;
};

/// Lays out the graph of a history that arrives piece by piece, newest commits first. A value: a copy goes on from the
/// same place.
class GraphLayout {
public:
    GraphLayout() = default;
    /// Keeps lane 0 for the line that begins with the commit `head` and goes on with first parents, wherever the commit
    /// stands in the list. Nothing is drawn in that lane above it.
    explicit GraphLayout(const std::string& head) : lanes_{kept(head)}, lineOfHead_(head) {}

    /// Returns what the graph draws beside the next commit.
    GraphRow add(const Commit& commit);

    /// The number of lanes in the widest row so far; at least 1.
    int laneCount() const { return laneCount_; }
    /// The lanes below the last row: each holds the hash of the commit that it leads to, and is empty when it is free.
    /// One that is kept for a commit further down holds an "@" before the hash.
    const std::vector<std::string>& lanes() const { return lanes_; }

private:
    static std::string kept(const std::string& hash) { return '@' + hash; }
    std::optional<std::size_t> awaiting(std::string_view hash) const;
    std::size_t freeLane();
    void arrive(const std::string& hash, GraphRow& row);
    std::size_t placeParent(const std::string& parent, bool isFirst, std::size_t own);
    void takeKeptLane(const std::string& hash);

    std::vector<std::string> lanes_;
    std::string lineOfHead_; ///< hash of the next commit on the line that keeps lane 0
    int laneCount_ = 1;
};

} // namespace gitkit
