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

/// What a status refresh takes over from the previous one.
struct RepositoryStateRequest {
    gitkit::ChangedFiles files;
    std::optional<std::filesystem::path> gitDirectory;
    std::optional<gitkit::OperationInProgress> operation;
    std::string preparedMessage;
};

/// The result of a status refresh.
struct RepositoryState {
    /// nullopt when there is a `problem`. If no file has changed, it shares the list of files with the request, and
    /// comparing the two statuses compares no files.
    std::optional<gitkit::RepoStatus> status;
    QString problem;                                   ///< why there is no status; contains no secrets
    std::optional<std::filesystem::path> gitDirectory; ///< this working tree's own
    std::optional<gitkit::OperationInProgress> operation;
    std::string preparedMessage; ///< for the next commit, as git wrote it
    /// The prepared message without its comments; nullopt when it has not changed.
    std::optional<std::string> newMessage;
};

/// Reads the state. Blocks. Failures of git are part of the result; throws only gitkit::RunStopped.
RepositoryState readRepositoryState(const gitkit::GitRepository& repo, const RepositoryStateRequest& request);

} // namespace plovik
