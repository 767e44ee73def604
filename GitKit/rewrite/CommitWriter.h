// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "GitKit/rewrite/CommitText.h"

#include <filesystem>
#include <optional>
#include <string>

namespace gitkit {

class GitRepository;

enum class Signing {
    none,
    asConfigured, ///< where the user signs all commits
};

/// Writes commits, many of them through one git. One thread at a time; the functions block and throw as the methods of
/// GitRepository do.
class CommitWriter {
public:
    /// `objects` say where they go.
    CommitWriter(const GitRepository& repo, const RunOptions& objects, Signing signing);
    ~CommitWriter();
    CommitWriter(const CommitWriter&) = delete;
    CommitWriter& operator=(const CommitWriter&) = delete;

    /// Returns the hash of the commit. It is signed anew where the user signs, and made by the committer that git names
    /// now.
    std::string write(CommitText commit);
    /// The same for one that nobody sees: it stands for a tree and has these parents.
    std::string writeHelper(const std::string& tree, const std::vector<std::string>& parents);

private:
    std::string store(const std::string& bytes);
    std::string signedCommit(const CommitText& commit) const;

    const GitRepository& repo_;
    RunOptions objects_;
    bool signs_ = false;
    std::string committer_;
    std::filesystem::path folder_;
    std::optional<GitStream> git_;
    std::string heard_;
};

} // namespace gitkit
