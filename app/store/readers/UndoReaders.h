// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "GitKit/records/ChangeCounts.h"
#include "GitKit/records/CommitFile.h"
#include "GitKit/records/ParsedDiff.h"
#include "GitKit/records/TreePair.h"
#include "GitKit/records/UndoStep.h"

#include <set>
#include <string>
#include <vector>

namespace gitkit {
class GitRepository;
} // namespace gitkit

namespace plovik {

// What views read of steps that can be undone, for Latest. All functions may be called on any thread, block, and throw
// gitkit::GitError.

/// Asks what becomes of the files when a state gives way to another one.
struct StepFilesRequest {
    gitkit::UndoPoint from;
    gitkit::UndoPoint to;
    bool operator==(const StepFilesRequest&) const = default;
};
struct StepFiles {
    std::vector<gitkit::CommitFile> files; ///< in the order of a file browser
    gitkit::TreePair trees;                ///< with the files that follow a tree; both are empty when none do
    gitkit::TreePair kept;                 ///< with the files whose bytes are kept
    std::set<std::string> keptPaths;       ///< those files
    // Files that are kept elsewhere than in git, so that they have no diff.
    std::vector<std::string> back;       ///< that come back
    std::vector<std::string> gone;       ///< that go
    std::vector<std::string> submodules; ///< that stay as they are, although their entries move

    const gitkit::TreePair& treesOf(const gitkit::CommitFile& file) const
    {
        return keptPaths.contains(file.path) ? kept : trees;
    }
};
StepFiles readStepFiles(const gitkit::GitRepository& repo, const StepFilesRequest& request);
/// Reads how many lines each of these files gains and loses, in the same order.
std::vector<gitkit::ChangeCounts> readStepCounts(const gitkit::GitRepository& repo, const StepFilesRequest& request);

struct StepDiffRequest {
    gitkit::TreePair trees;
    gitkit::CommitFile file;
    gitkit::DiffReading reading = {};
    bool operator==(const StepDiffRequest&) const = default;
};
gitkit::ParsedDiff readStepDiff(const gitkit::GitRepository& repo, const StepDiffRequest& request);

} // namespace plovik
