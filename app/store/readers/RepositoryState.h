// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "GitKit/records/OperationInProgress.h"
#include "GitKit/records/RepoStatus.h"

#include <QString>

#include <filesystem>
#include <optional>
#include <string>

namespace gitkit {
class GitRepository;
} // namespace gitkit

namespace plovik {

/// What a status refresh knows from the one before it.
struct RepositoryStateRequest {
    std::optional<std::filesystem::path> gitDirectory;
    std::optional<gitkit::OperationInProgress> operation;
    std::string preparedMessage;
};

/// What a status refresh reads, all of it at one moment.
struct RepositoryState {
    std::optional<gitkit::RepoStatus> status;          ///< absent with a `problem`
    QString problem;                                   ///< why there is no status; it holds no secrets
    std::optional<std::filesystem::path> gitDirectory; ///< this working tree's own
    std::optional<gitkit::OperationInProgress> operation;
    std::string preparedMessage; ///< for the next commit, as git wrote it
    /// The same without its comments; absent while it has not changed.
    std::optional<std::string> newMessage;
};

/// Blocks. Failures of git stand in the result; throws only gitkit::RunStopped.
RepositoryState readRepositoryState(const gitkit::GitRepository& repo, const RepositoryStateRequest& request);

} // namespace plovik
