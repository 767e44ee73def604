// SPDX-License-Identifier: GPL-3.0-or-later
#include "GitKit/repository/Findable.h"

#include "GitKit/Text.h"
#include "GitKit/parsers/Fields.h"
#include "GitKit/repository/Folders.h"
#include "GitKit/repository/GitRepository.h"

#include <algorithm>

namespace gitkit {

std::vector<std::string> refNames(const GitRepository& repo, RefOrder order)
{
    const std::string printed =
        repo.runner().bytes({"for-each-ref", order == RefOrder::newest ? "--sort=-creatordate" : "--sort=refname",
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

std::vector<std::string> trackedPaths(const GitRepository& repo)
{
    if (isBare(repo.root())) {
        const GitOutput atHead = repo.runner().output({"ls-tree", "-r", "-z", "--name-only", "HEAD"});
        return atHead.status == 0 ? splitNul(atHead.stdoutBytes) : std::vector<std::string>();
    }
    std::vector<std::string> paths = splitNul(repo.runner().bytes({"ls-files", "-z"}));
    // A file with conflicts is listed once for each of its versions.
    const auto repeated = std::ranges::unique(paths);
    paths.erase(repeated.begin(), repeated.end());
    return paths;
}

} // namespace gitkit
