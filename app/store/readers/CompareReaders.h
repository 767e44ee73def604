// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "GitKit/records/ChangeCounts.h"
#include "GitKit/records/CommitFile.h"
#include "GitKit/records/Comparison.h"
#include "GitKit/records/ParsedDiff.h"
#include "GitKit/records/TreePair.h"

#include <QtGlobal>

#include <cstddef>
#include <string>
#include <vector>

namespace gitkit {
class GitRepository;
} // namespace gitkit

namespace plovik {

// What views read of two states that are compared, for Latest. All functions may be called on any thread, block, and throw
// gitkit::GitError.

struct ComparisonRequest {
    gitkit::Comparison comparison;
    qint64 generation = 0; ///< of the working tree, where it is one of the states
    bool operator==(const ComparisonRequest&) const = default;
};
struct ComparedFiles {
    std::vector<gitkit::CommitFile> files; ///< in the order of a file browser
    gitkit::TreePair trees;                ///< that are compared; empty for a merge with all its parents
    std::size_t baseCount = 0;             ///< how many best common ancestors there are; 0 where that was not asked
};
/// Compares from the first of the common ancestors where that is asked for, and from the state itself where there is none.
ComparedFiles readComparedFiles(const gitkit::GitRepository& repo, const ComparisonRequest& request);

struct ComparedTreesRequest {
    gitkit::TreePair trees;
    qint64 generation = 0;
    bool operator==(const ComparedTreesRequest&) const = default;
};
/// Reads how many lines each of these files gains and loses, in the same order.
std::vector<gitkit::ChangeCounts> readComparedCounts(const gitkit::GitRepository& repo,
                                                     const ComparedTreesRequest& request);

struct ComparedDiffRequest : ComparedTreesRequest {
    std::string merge; ///< hash of a merge that is compared with all its parents; empty otherwise
    gitkit::CommitFile file;
    gitkit::DiffReading reading = {};
    bool operator==(const ComparedDiffRequest&) const = default;
};
gitkit::ParsedDiff readComparedDiff(const gitkit::GitRepository& repo, const ComparedDiffRequest& request);

/// No more commits than these are listed.
inline constexpr std::size_t mostCommitsApart = 1000;
/// Reads the commits that only one of both states has. The working tree has those of HEAD.
std::vector<gitkit::CommitApart> readCommitsApart(const gitkit::GitRepository& repo, const ComparisonRequest& request);

} // namespace plovik
