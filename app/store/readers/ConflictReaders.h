// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "GitKit/records/Conflict.h"
#include "GitKit/records/FileStamp.h"
#include "GitKit/records/MergedSides.h"
#include "GitKit/records/OperationInProgress.h"

#include <QtGlobal>

#include <cstdint>
#include <filesystem>
#include <memory>
#include <optional>
#include <string>

namespace gitkit {
class GitRepository;
}

namespace plovik {

// What is in conflict, for Latest. The functions may be called on any thread, block, and throw gitkit::GitError.

/// What is known of the action that has left conflicts. `gitDirectory` is empty before it has been read.
struct ConflictsRequest {
    std::filesystem::path gitDirectory;
    std::optional<gitkit::OperationInProgress> operation;
    std::string stash; ///< hash of the stash that was applied, if it was one of this window

    bool operator==(const ConflictsRequest&) const = default;
};

/// Reads all conflicts and the names of their sides.
gitkit::ConflictList readConflicts(const gitkit::GitRepository& repo, const ConflictsRequest& request);

/// Reads the names alone, also when nothing is in conflict any more.
gitkit::ConflictNames readConflictNames(const gitkit::GitRepository& repo, const ConflictsRequest& request);

/// Whether conflicts were resolved since the last commit. Needed for each step of an operation only.
struct ResolvedRequest {
    qint64 generation = 0; ///< of the status

    bool operator==(const ResolvedRequest&) const = default;
};
bool readHasResolved(const gitkit::GitRepository& repo, const ResolvedRequest& request);

/// Larger files are not merged line by line.
inline constexpr std::size_t largestMergedFile = std::size_t{64} << 20;

struct MergeRequest {
    gitkit::Conflict conflict;
    bool ignoresLineEnds = false;

    bool operator==(const MergeRequest&) const = default;
};

/// A conflict of text, taken apart.
struct ReadMerge {
    std::shared_ptr<const gitkit::MergedSides> sides; ///< null when a side is missing, too large or no text
    /// What the working file holds, as it would be in the repository; nullopt when that is no ordinary file.
    std::optional<std::string> working;
    gitkit::FileStamp stamp; ///< of the working file, from before it was read
};

ReadMerge readMerge(const gitkit::GitRepository& repo, const MergeRequest& request);

/// What is told of the sides of a conflict that is not merged line by line.
struct ConflictFacts {
    std::optional<std::uint64_t> leftSize, rightSize; ///< in bytes; nullopt for a side without a file
    std::optional<std::string> left, right;           ///< the contents, of files that are not too large
    std::optional<gitkit::SubmoduleSides> submodule;
};
ConflictFacts readConflictFacts(const gitkit::GitRepository& repo, const gitkit::Conflict& conflict);

} // namespace plovik
