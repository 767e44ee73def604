// SPDX-License-Identifier: GPL-3.0-or-later
#include "GitKit/repository/Upstream.h"

#include "GitKit/Text.h"
#include "GitKit/repository/Divergence.h"
#include "GitKit/repository/Folders.h"
#include "GitKit/repository/GitRepository.h"

#include <algorithm>
#include <fstream>
#include <iterator>
#include <vector>

namespace gitkit {

namespace {

std::string lineOf(const GitRepository& repo, const std::vector<std::string>& command)
{
    const GitOutput output = repo.runner().output(command);
    return output.status == 0 ? std::string(trimmed(output.stdoutBytes, "\n")) : std::string();
}

/// Returns the hash of the one branch that the last fetch has marked for a merge; empty when there is not just one.
std::string mergedFromFetch(const GitRepository& repo)
{
    std::ifstream list(gitDirectories(repo).own / "FETCH_HEAD");
    std::string found;
    // A line is "HASH<tab>MARK<tab>WHAT", with an empty mark for what is merged.
    for (std::string line; std::getline(list, line);) {
        const std::size_t end = line.find('\t');
        if (end == std::string::npos || line.compare(end, 2, "\t\t") != 0)
            continue;
        if (!found.empty())
            return {};
        found = line.substr(0, end);
    }
    return found;
}

} // namespace

std::optional<Upstream> upstreamNow(const GitRepository& repo)
{
    const std::string branch = lineOf(repo, {"symbolic-ref", "--quiet", "HEAD"});
    if (branch.empty())
        return std::nullopt;
    const std::vector<std::string> fields =
        splitNul(lineOf(repo, {"for-each-ref",
                               "--format=%(refname:lstrip=2)%00%(upstream:lstrip=2)%00%(upstream)%00"
                               "%(upstream:remotename)%00%(push:remotename)%00",
                               branch}));
    if (fields.size() != 5 || fields[2].empty())
        return std::nullopt;
    const std::string theirs = lineOf(repo, {"rev-parse", "--verify", "--quiet", fields[2] + "^{commit}"});
    if (theirs.empty())
        return std::nullopt;
    return Upstream{.branch = fields[0],
                    .name = fields[1],
                    .counts = countDivergence(repo, {headCommit(repo), theirs}),
                    .isPushedTo = fields[4].empty() || fields[3] == fields[4],
                    .mustForward = lineOf(repo, {"config", "--get", "pull.ff"}) == "only"};
}

std::optional<std::string> fetchToPull(const GitRepository& repo)
{
    const std::string tracked =
        lineOf(repo, {"rev-parse", "--verify", "--quiet", "--symbolic-full-name", "@{upstream}"});
    if (!tracked.starts_with("refs/remotes/") || headCommit(repo).empty())
        return std::nullopt;
    repo.runner().accepted({"fetch", "--progress"});
    const std::string meant = mergedFromFetch(repo);
    const bool isTracked = !meant.empty() && meant == lineOf(repo, {"rev-parse", "--verify", "--quiet", tracked});
    return isTracked ? std::optional(tracked) : std::nullopt;
}

bool rebases(const GitRepository& repo, PullBy how)
{
    if (how != PullBy::setting)
        return how == PullBy::rebasing;
    const std::string branch = lineOf(repo, {"symbolic-ref", "--quiet", "--short", "HEAD"});
    std::string value = lineOf(repo, {"config", "--get", "branch." + branch + ".rebase"});
    if (value.empty())
        value = lineOf(repo, {"config", "--get", "pull.rebase"});
    const std::string no[] = {"", "false", "no", "off", "0"};
    return std::ranges::find(no, value) == std::end(no);
}

void rememberPullBy(const GitRepository& repo, PullBy how)
{
    if (how != PullBy::setting)
        repo.runner().accepted({"config", "--local", "pull.rebase", how == PullBy::rebasing ? "true" : "false"});
}

std::string headCommit(const GitRepository& repo)
{
    return lineOf(repo, {"rev-parse", "--verify", "--quiet", "HEAD^{commit}"});
}

} // namespace gitkit
