// SPDX-License-Identifier: GPL-3.0-or-later
#include "GitKit/CommitGraph.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>

namespace gitkit {
namespace {

/// Commits told as "E: C D", one a line.
std::vector<Commit> history(std::initializer_list<std::pair<std::string, std::vector<std::string>>> lines)
{
    std::vector<Commit> commits;
    for (const auto& [hash, parents] : lines)
        commits.push_back({hash, parents, {}, {}, {}, {}, {}});
    return commits;
}

using Rows = std::vector<GraphRow>;

TEST(CommitGraph, BendsAMergedBranchIntoItsParentAndLeavesLanesInPlace)
{
    const auto graph =
        CommitGraph::layout(history({{"E", {"C", "D"}}, {"D", {"B"}}, {"C", {"B"}}, {"B", {"A"}}, {"A", {}}}));
    const Rows expected{
        {0, {}, {}, {0, 1}}, {1, {1}, {0}, {1}}, {0, {0}, {1}, {1}}, {1, {1}, {}, {1}}, {1, {1}, {}, {}}};
    EXPECT_EQ(graph.rows, expected);
    EXPECT_EQ(graph.laneCount, 2);
}

TEST(CommitGraph, GivesNothingOneLane)
{
    EXPECT_EQ(CommitGraph::layout({}), CommitGraph{});
    EXPECT_EQ(CommitGraph::layout({}).laneCount, 1);
    const auto one = CommitGraph::layout(history({{"A", {}}}));
    EXPECT_EQ(one.rows, (Rows{{0, {}, {}, {}}}));
    EXPECT_EQ(one.laneCount, 1);
}

TEST(CommitGraph, JoinsTipsAtTheirCommonParentInTheLowerLane)
{
    const auto graph = CommitGraph::layout(history({{"X", {"P"}}, {"Y", {"Q"}}, {"Q", {"P"}}, {"P", {}}, {"Z", {}}}));
    const Rows expected{{0, {}, {}, {0}}, {1, {}, {0}, {1}}, {1, {1}, {0}, {0}}, {0, {0}, {}, {}}, {0, {}, {}, {}}};
    EXPECT_EQ(graph.rows, expected);
    EXPECT_EQ(graph.laneCount, 2);
}

TEST(CommitGraph, SpreadsAnOctopusOverTheLowestFreeLanes)
{
    // T's first parent is awaited in lane 0 already, so its own lane is the lowest free one for the second.
    const auto graph = CommitGraph::layout(
        history({{"S", {"a"}}, {"T", {"a", "b", "c"}}, {"U", {"c", "a"}}, {"a", {"lost"}}, {"V", {}}}));
    const Rows expected{{0, {}, {}, {0}},
                        {1, {}, {0}, {0, 1, 2}},
                        {3, {}, {0, 1, 2}, {2, 0}},
                        {0, {0}, {1, 2}, {0}},
                        {3, {}, {0, 1, 2}, {}}};
    EXPECT_EQ(graph.rows, expected);
    EXPECT_EQ(graph.laneCount, 4);
}

TEST(CommitGraph, TakesFortyParents)
{
    std::vector<Commit> commits = history({{"octopus", {}}});
    for (int index = 0; index < 40; ++index)
        commits[0].parents.push_back("p" + std::to_string(index));
    for (int index = 39; index >= 0; --index)
        commits.push_back({"p" + std::to_string(index), {}, {}, {}, {}, {}, {}});
    const auto graph = CommitGraph::layout(commits);
    EXPECT_EQ(graph.laneCount, 40);
    EXPECT_EQ(graph.rows[0].bottom.size(), 40u);
    EXPECT_EQ(graph.rows[1].lane, 39);
    EXPECT_EQ(graph.rows[40].lane, 0);
    EXPECT_TRUE(graph.rows[40].pass.empty());
}

TEST(CommitGraph, KeepsTheFirstLaneForTheLineOfHead)
{
    // X is newer than HEAD and leads to B before HEAD's own line comes there.
    GraphLayout layout("H");
    Rows rows;
    for (const Commit& commit :
         history({{"X", {"B"}}, {"Y", {"C"}}, {"H", {"C", "B"}}, {"C", {"B"}}, {"B", {"A"}}, {"A", {}}, {"Z", {}}}))
        rows.push_back(layout.add(commit));
    const Rows expected{{1, {}, {}, {1}},     {2, {}, {1}, {2}}, {0, {}, {1, 2}, {0, 1}}, {0, {0, 2}, {1}, {0}},
                        {0, {0, 1}, {}, {0}}, {0, {0}, {}, {}},  {0, {}, {}, {}}};
    EXPECT_EQ(rows, expected);
    EXPECT_EQ(layout.laneCount(), 3);
}

TEST(CommitGraph, ConnectsEveryRowToTheNextInAnyHistory)
{
    std::mt19937 random(11);
    for (int round = 0; round < 200; ++round) {
        std::vector<Commit> commits;
        const int count = static_cast<int>(random() % 60);
        for (int index = 0; index < count; ++index) {
            Commit commit{std::to_string(index), {}, {}, {}, {}, {}, {}};
            for (unsigned parent = random() % 4; parent > 0; --parent)
                commit.parents.push_back(std::to_string(index + 1 + static_cast<int>(random() % 12)));
            commits.push_back(commit);
        }
        // Every other time a line is kept at the left.
        GraphLayout layout;
        if (round % 2 == 1 && count > 0)
            layout = GraphLayout(std::to_string(random() % static_cast<unsigned>(count)));
        CommitGraph graph;
        for (const Commit& commit : commits)
            graph.rows.push_back(layout.add(commit));
        graph.laneCount = layout.laneCount();
        std::vector<int> leaving;
        for (std::size_t index = 0; index < commits.size(); ++index) {
            const GraphRow& row = graph.rows[index];
            std::vector<int> arriving = row.top;
            arriving.insert(arriving.end(), row.pass.begin(), row.pass.end());
            std::ranges::sort(arriving);
            EXPECT_EQ(arriving, leaving);
            EXPECT_EQ(row.bottom.size(), commits[index].parents.size());
            leaving = row.pass;
            leaving.insert(leaving.end(), row.bottom.begin(), row.bottom.end());
            std::ranges::sort(leaving);
            leaving.erase(std::unique(leaving.begin(), leaving.end()), leaving.end());
            EXPECT_LT(row.lane, graph.laneCount);
            EXPECT_TRUE(leaving.empty() || leaving.back() < graph.laneCount);
        }
    }
}

} // namespace
} // namespace gitkit
