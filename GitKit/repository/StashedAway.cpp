// SPDX-License-Identifier: GPL-3.0-or-later
#include "GitKit/repository/StashedAway.h"

#include "GitKit/Text.h"
#include "GitKit/repository/Folders.h"
#include "GitKit/repository/GitRepository.h"
#include "GitKit/repository/Operations.h"
#include "GitKit/runner/GitError.h"
#include "GitKit/runner/GitRunner.h"

#include <algorithm>
#include <optional>

namespace gitkit {

namespace {

bool canBeStashed(const FileChange& file)
{
    return !file.isUntracked() && !file.isSubmodule && (file.hasStaged() || file.hasUnstaged());
}

std::string newestStash(const GitRepository& repo)
{
    const std::vector<Stash> stashes = repo.stashes();
    return stashes.empty() ? std::string() : stashes.front().hash;
}

Stash stashChanges(const GitRepository& repo, const std::string& message, std::atomic<StashedAway>& fate)
{
    // Git succeeds without a stash where there is nothing to put into it.
    if (std::ranges::none_of(repo.status().files, canBeStashed))
        throw GitError("stash", 1, "There are no changes that can be stashed.", ErrorKind::changedMeanwhile);
    const std::string before = newestStash(repo);
    try {
        repo.stashSave(message, UntrackedFiles::leave);
    } catch (...) {
        if (newestStash(repo.unheard()) != before)
            fate = StashedAway::kept;
        throw;
    }
    fate = StashedAway::kept;
    return repo.stashes().at(0);
}

void bringBack(const GitRepository& repo, const Stash& stash, std::atomic<StashedAway>& fate)
{
    try {
        if (repo.stashApply(stash, StashUse::apply) == StagedPart::lost) {
            fate = StashedAway::unstaged;
            return;
        }
    } catch (const GitError& error) {
        if (error.kind() != ErrorKind::conflicts)
            throw;
        fate = StashedAway::conflicting;
        return;
    }
    repo.stashDrop(stash);
    fate = StashedAway::nothing;
}

/// What git stopped in the middle of, if anything.
std::optional<OperationInProgress::Kind> unfinished(const GitRepository& repo)
{
    const auto operation = operationInProgress(repo, gitDirectories(repo).own);
    return operation ? std::optional(operation->kind) : std::nullopt;
}

} // namespace

std::vector<std::string> changedInTheWay(const GitRepository& repo, const std::vector<std::string>& listing)
{
    std::vector<std::string> changed;
    for (const FileChange& file : repo.status().files) {
        if (canBeStashed(file))
            changed.push_back(file.path);
    }
    const GitOutput listed = repo.runner().output(listing);
    if (listed.status != 0)
        return changed;
    const std::vector<std::string> written = splitNul(listed.stdoutBytes);
    std::vector<std::string> inTheWay;
    std::ranges::copy_if(changed, std::back_inserter(inTheWay), [&written](const std::string& path) {
        return std::ranges::find(written, path) != written.end();
    });
    return inTheWay.empty() ? changed : inTheWay;
}

void runBetweenStashes(const GitRepository& repo, const std::string& message,
                       const std::function<void(const GitRepository&)>& action, std::atomic<StashedAway>& fate)
{
    const auto before = unfinished(repo);
    const Stash stash = stashChanges(repo, message, fate);
    try {
        action(repo);
    } catch (const GitError&) {
        try {
            if (unfinished(repo) == before && repo.runner().bytes({"ls-files", "--unmerged", "-z"}).empty())
                bringBack(repo, stash, fate);
        } catch (const std::exception&) { // NOLINT(bugprone-empty-catch): the first failure says more, as `fate` does
        }
        throw;
    }
    bringBack(repo, stash, fate);
}

} // namespace gitkit
