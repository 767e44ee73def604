// SPDX-License-Identifier: GPL-3.0-or-later
#include "GitKit/repository/Relations.h"

#include "GitKit/Text.h"
#include "GitKit/parsers/Fields.h"
#include "GitKit/repository/GitRepository.h"
#include "GitKit/repository/HistoryStream.h"
#include "GitKit/repository/RefArguments.h"

#include <algorithm>

namespace gitkit {

std::vector<Commit> children(const GitRepository& repo, const std::string& hash)
{
    for (const bool isSortedByGit : {false, true}) {
        std::vector<Commit> found;
        HistoryStream stream(repo, {.scope = HistoryScope::all(), .isSortedByGit = isSortedByGit});
        bool isReached = false;
        while (!isReached && !stream.hasEnded() && !stream.isWrong()) {
            for (Commit& commit : stream.next(DateOrder::usualWindow)) {
                isReached = isReached || commit.hash == hash;
                if (!isReached && std::ranges::find(commit.parents, hash) != commit.parents.end())
                    found.push_back(std::move(commit));
            }
        }
        if (!stream.isWrong())
            return found;
    }
    return {};
}

std::vector<std::string> refsContaining(const GitRepository& repo, const std::string& hash)
{
    const std::string printed =
        repo.runner().bytes({"for-each-ref", "--contains=" + revisionArgument("for-each-ref", hash),
                             "--format=%(refname)", "refs/heads", "refs/remotes", "refs/tags"});
    std::vector<std::string> names;
    Pieces lines(printed, '\n');
    while (const auto line = lines.next()) {
        // A remote's HEAD only repeats one of its branches.
        if (!line->starts_with("refs/remotes/") || !line->ends_with("/HEAD"))
            names.emplace_back(*line);
    }
    return names;
}

std::string nearestTagBefore(const GitRepository& repo, const std::string& hash)
{
    const GitOutput printed =
        repo.runner().output({"describe", "--tags", "--abbrev=0", revisionArgument("describe", hash)});
    return printed.status == 0 ? std::string(withoutLineEnd(printed.stdoutBytes)) : std::string();
}

std::string oldestTagContaining(const GitRepository& repo, const std::string& hash)
{
    return std::string(withoutLineEnd(
        repo.runner().bytes({"for-each-ref", "--contains=" + revisionArgument("for-each-ref", hash), "--count=1",
                             "--sort=creatordate", "--format=%(refname:strip=2)", "refs/tags"})));
}

} // namespace gitkit
