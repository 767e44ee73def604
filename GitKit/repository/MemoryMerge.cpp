// SPDX-License-Identifier: GPL-3.0-or-later
#include "GitKit/repository/MemoryMerge.h"

#include "GitKit/Text.h"
#include "GitKit/repository/GitRepository.h"
#include "GitKit/undo/HelperRuns.h"

#include <algorithm>

namespace gitkit {

Rehearsed rehearse(const GitRepository& repo, const ThrowawayObjects& objects, const std::string& ours,
                   const std::string& theirs)
{
    const GitOutput merged = repo.runner().output(
        {"merge-tree", "--write-tree", "-z", "--name-only", "--no-messages", ours, theirs}, objects.options());
    Rehearsed found;
    if (merged.status != 0 && merged.status != 1)
        return found;
    found.outcome = merged.status == 0 ? MergePreview::Outcome::clean : MergePreview::Outcome::conflicts;
    found.conflicts = splitNul(merged.stdoutBytes);
    found.tree = found.conflicts.front();
    found.conflicts.erase(found.conflicts.begin());
    return found;
}

int changedBetween(const GitRepository& repo, const ThrowawayObjects& objects, const std::string& before,
                   const std::string& after)
{
    const GitOutput listed = repo.runner().output(
        {"diff-tree", "-r", "-z", "--name-only", "--no-ext-diff", before, after, "--"}, objects.options());
    return static_cast<int>(std::ranges::count(listed.stdoutBytes, '\0'));
}

std::string rehearsedCommit(const GitRepository& repo, const ThrowawayObjects& objects, const std::string& parent,
                            const std::string& tree)
{
    return std::string(withoutLineEnd(
        repo.runner().bytes({"commit-tree", "-p", parent, "-m", "x", tree}, helperOptions(objects.options()))));
}

} // namespace gitkit
