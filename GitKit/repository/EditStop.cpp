// SPDX-License-Identifier: GPL-3.0-or-later
#include "GitKit/repository/EditStop.h"

#include "GitKit/Text.h"
#include "GitKit/repository/Folders.h"
#include "GitKit/repository/GitRepository.h"
#include "GitKit/repository/Operations.h"
#include "GitKit/repository/TellingCommand.h"
#include "GitKit/runner/GitError.h"

#include <algorithm>
#include <string>
#include <vector>

namespace gitkit {

namespace {

std::string headNow(const GitRepository& repo)
{
    return std::string(withoutLineEnd(repo.runner().output({"rev-parse", "--verify", "--quiet", "HEAD"}).stdoutBytes));
}

std::string namesOf(const std::vector<std::string>& paths)
{
    constexpr std::size_t mostNamed = 3;
    std::string names;
    for (std::size_t index = 0; index < std::min(paths.size(), mostNamed); ++index)
        names += (index == 0 ? "" : ", ") + inQuotes(paths[index]);
    if (paths.size() > mostNamed)
        names += " and " + std::to_string(paths.size() - mostNamed) + " more";
    return names;
}

} // namespace

void requireEditDone(const GitRepository& repo, const OperationInProgress& operation)
{
    if (!operation.edits)
        return;
    std::vector<std::string> staged;
    std::vector<std::string> unstaged;
    for (const FileChange& file : repo.status().files) {
        if (file.hasStaged())
            staged.push_back(file.path);
        // Git passes over what is changed inside submodules.
        if (file.hasUnstaged() && !file.isUntracked() && !file.isConflicted && !file.isSubmodule)
            unstaged.push_back(file.path);
    }
    if (!unstaged.empty())
        throw GitError(
            "rebase", 1,
            "Stage what belongs to the commit, or discard it, before the rebase goes on. Changed but not staged: " +
                namesOf(unstaged) + ".",
            ErrorKind::notCommitted);
    if (!staged.empty() && headNow(repo) != *operation.edits)
        throw GitError("rebase", 1,
                       "The commit was taken apart or changed, so what is staged needs a commit of its own before the "
                       "rebase goes on. Staged: " +
                           namesOf(staged) + ".",
                       ErrorKind::notCommitted);
}

void takeApart(const GitRepository& repo, const OperationInProgress& operation)
{
    waitForIndex(repo);
    const std::optional<OperationInProgress> now = operationInProgress(repo, gitDirectories(repo).own);
    if (!operation.edits || !now || now->edits != operation.edits || headNow(repo) != *operation.edits)
        throw GitError("reset", 1, "Git is not stopped behind this commit any more. Nothing was done.",
                       ErrorKind::changedMeanwhile);
    const GitOutput parent = repo.runner().output({"rev-parse", "--verify", "--quiet", *operation.edits + "^1"});
    if (parent.status != 0)
        throw GitError("reset", 1, "This is the first commit: nothing stands beneath it.", ErrorKind::nothingToDo);
    runTelling(repo.runner(), {"reset", "-q", "--mixed", std::string(withoutLineEnd(parent.stdoutBytes)), "--"});
}

} // namespace gitkit
