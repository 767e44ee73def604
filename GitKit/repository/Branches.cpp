// SPDX-License-Identifier: GPL-3.0-or-later
#include "GitKit/repository/Branches.h"

#include "GitKit/Text.h"
#include "GitKit/parsers/Fields.h"
#include "GitKit/repository/GitRepository.h"
#include "GitKit/repository/RefArguments.h"
#include "GitKit/runner/GitError.h"

#include <string_view>

namespace gitkit {

namespace {

constexpr std::string_view remotePrefix = "refs/remotes/";

void setSetting(const GitRepository& repo, const std::string& branch, const char* name, const std::string& value)
{
    repo.runner().accepted({"config", "--local", "branch." + branch + '.' + name, value});
}

} // namespace

void renameBranch(const GitRepository& repo, const std::string& branch, const std::string& newName)
{
    repo.runner().accepted({"branch", "-m", "--", branch, newNameArgument("branch", newName)});
}

UpstreamKind setUpstream(const GitRepository& repo, const std::string& branch, const std::string& upstream)
{
    // The full name: a tag may be called like the remote branch.
    const std::vector<std::string> command{"branch", "--set-upstream-to=" + exactArgument("branch", upstream), "--",
                                           branch};
    if (repo.runner().output(command).status == 0)
        return UpstreamKind::followed;
    const RemoteBranch meant = upstream.starts_with(remotePrefix)
                                   ? remoteBranchOf(upstream.substr(remotePrefix.size()), repo.remotes())
                                   : RemoteBranch{};
    const bool exists = repo.runner().output({"rev-parse", "--verify", "--quiet", "refs/heads/" + branch}).status == 0;
    if (meant.remote.empty() || !exists) {
        repo.runner().accepted(command); // for its words
        return UpstreamKind::followed;
    }
    setSetting(repo, branch, "remote", meant.remote);
    setSetting(repo, branch, "merge", "refs/heads/" + meant.branch);
    return UpstreamKind::unknown;
}

int commitsOnlyOn(const GitRepository& repo, const std::string& branch, const std::string& target, int most)
{
    std::vector<std::string> command{"rev-list", "--count", "--max-count=" + std::to_string(most),
                                     "refs/heads/" + branch, "--not"};
    if (!target.empty())
        command.push_back(exactArgument("rev-list", target));
    // The pattern is matched below refs/heads, so it must be the short name.
    command.insert(command.end(), {"--exclude=" + branch, "--branches", "--tags", "--remotes", "--"});
    return readNumber(withoutLineEnd(repo.runner().bytes(command)));
}

void unsetUpstream(const GitRepository& repo, const std::string& branch)
{
    const GitOutput merges = repo.runner().output({"config", "--get-all", "branch." + branch + ".merge"});
    if (merges.status == 0)
        repo.runner().accepted({"branch", "--unset-upstream", "--", branch});
}

} // namespace gitkit
