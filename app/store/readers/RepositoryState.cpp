// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/store/readers/RepositoryState.h"

#include "GitKit/repository/Folders.h"
#include "GitKit/repository/GitRepository.h"
#include "GitKit/repository/OperationReader.h"
#include "GitKit/repository/Operations.h"
#include "app/store/Failure.h"

#include <exception>
#include <filesystem>
#include <system_error>

namespace plovik {

namespace {

// Tries the ordinary place first, because asking git would delay the first status of every window.
std::filesystem::path gitDirectoryOf(const gitkit::GitRepository& repo)
{
    std::error_code ignored;
    const std::filesystem::path ordinary = repo.root() / ".git";
    return std::filesystem::is_directory(ordinary, ignored) ? ordinary : gitkit::gitDirectories(repo).own;
}

void readOperationInto(RepositoryState& state, const gitkit::GitRepository& repo, const RepositoryStateRequest& request)
{
    state.gitDirectory = request.gitDirectory ? *request.gitDirectory : gitDirectoryOf(repo);
    state.operation = gitkit::operationInProgress(repo, *state.gitDirectory, request.operation);
    state.preparedMessage = gitkit::readPreparedMessage(*state.gitDirectory, state.operation);
    if (state.preparedMessage != request.preparedMessage)
        state.newMessage = gitkit::withoutComments(repo, state.preparedMessage);
}

} // namespace

RepositoryState readRepositoryState(const gitkit::GitRepository& repo, const RepositoryStateRequest& request)
{
    RepositoryState state;
    try {
        state.status = repo.status();
        if (state.status->files == request.files)
            state.status->files = request.files;
    } catch (const std::exception& failure) {
        state.problem = failureOf(failure).message;
    }
    // A repository whose status cannot be read may still have an operation in progress that can be aborted.
    try {
        readOperationInto(state, repo, request);
    } catch (const std::exception&) {
        state.preparedMessage = request.preparedMessage;
        state.newMessage.reset();
    }
    return state;
}

} // namespace plovik
