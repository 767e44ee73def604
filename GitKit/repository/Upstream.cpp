// SPDX-License-Identifier: GPL-3.0-or-later
#include "GitKit/repository/Upstream.h"

#include "GitKit/Text.h"
#include "GitKit/repository/Divergence.h"
#include "GitKit/repository/GitRepository.h"

#include <vector>

namespace gitkit {

namespace {

std::string lineOf(const GitRepository& repo, const std::vector<std::string>& command)
{
    const GitOutput output = repo.runner().output(command);
    return output.status == 0 ? std::string(trimmed(output.stdoutBytes, "\n")) : std::string();
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
