// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "GitKit/records/ChangeCounts.h"
#include "GitKit/records/CommitDetail.h"
#include "GitKit/records/CommitKind.h"
#include "GitKit/records/ParsedDiff.h"
#include "GitKit/records/Signature.h"

#include <string>
#include <vector>

namespace gitkit {
class GitRepository;
} // namespace gitkit

namespace plovik {

// What views read of commits, for Latest. All functions may be called on any thread, block, and throw gitkit::GitError.

struct CommitRequest {
    std::string hash;
    gitkit::CommitKind kind = gitkit::CommitKind::ordinary;
    bool operator==(const CommitRequest&) const = default;
};
/// The files are in the order of a file browser, as those of the working copy are.
gitkit::CommitDetail readCommit(const gitkit::GitRepository& repo, const CommitRequest& request);
/// Reads how many lines each file of the commit gains and loses, in the order of the files.
std::vector<gitkit::ChangeCounts> readCounts(const gitkit::GitRepository& repo, const CommitRequest& request);

struct CommitDiffRequest {
    std::string hash;
    gitkit::CommitFile file;
    gitkit::DiffReading reading = {};
    bool operator==(const CommitDiffRequest&) const = default;
};
gitkit::ParsedDiff readCommitDiff(const gitkit::GitRepository& repo, const CommitDiffRequest& request);

/// Has the signature of a commit checked by the user's own programs, which takes three seconds at most.
gitkit::Signature readSignature(const gitkit::GitRepository& repo, const std::string& hash);

/// Reads the full hash of the commit that a hash, a part of a hash or a name stands for.
std::string readCommitHash(const gitkit::GitRepository& repo, const std::string& name);

} // namespace plovik
