// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/store/RepositoryState.h"

#include "GitKit/OperationReader.h"

#include <exception>

namespace plovik {

namespace {

void readOperationInto(RepositoryState& state, const gitkit::GitRepository& repo, const RepositoryStateRequest& request)
{
    state.gitDirectory = request.gitDirectory ? *request.gitDirectory : repo.gitDirectories().own;
    state.operation = repo.operationInProgress(*state.gitDirectory, request.operation);
    state.preparedMessage = gitkit::readPreparedMessage(*state.gitDirectory, state.operation);
    if (state.preparedMessage != request.preparedMessage)
        state.newMessage = repo.withoutComments(state.preparedMessage);
}

} // namespace

RepositoryState readRepositoryState(const gitkit::GitRepository& repo, const RepositoryStateRequest& request)
{
    RepositoryState state;
    try {
        state.status = repo.status();
    } catch (const std::exception& failure) {
        state.problem = failure.what();
    }
    // A repository whose status cannot be read may still be in the middle of something that can be aborted.
    try {
        readOperationInto(state, repo, request);
    } catch (const std::exception&) {
        state.preparedMessage = request.preparedMessage;
        state.newMessage.reset();
    }
    return state;
}

} // namespace plovik
