// SPDX-License-Identifier: GPL-3.0-or-later
#include "GitKit/repository/WebLinks.h"

#include "GitKit/Text.h"
#include "GitKit/records/RemoteBranch.h"
#include "GitKit/repository/GitRepository.h"
#include "GitKit/repository/RefArguments.h"

namespace gitkit {

namespace {

std::optional<WebPlace> placeOfRemote(const GitRepository& repo, const std::string& remote, const WebHosts& hosts)
{
    const GitOutput address = repo.runner().output({"remote", "get-url", "--", remote});
    return address.status == 0 ? webPlaceOf(withoutLineEnd(address.stdoutBytes), hosts) : std::nullopt;
}

bool hasCommit(const GitRepository& repo, const std::string& remote, const std::string& commit)
{
    return repo.runner().bytes({"rev-list", "--max-count=1", commit, "--not", "--remotes=" + remote, "--"}).empty();
}

/// Returns a ref without what it begins with; empty where it begins otherwise, or where git has not found one.
std::string shortened(const GitOutput& found, const std::string& prefix)
{
    const std::string name(withoutLineEnd(found.stdoutBytes));
    return found.status == 0 && name.starts_with(prefix) ? name.substr(prefix.size()) : std::string();
}

WebLink commitLink(const GitRepository& repo, const WebLinkRequest& request)
{
    const std::string commit(
        withoutLineEnd(repo.runner().bytes({"rev-parse", "--verify", commitArgument("rev-parse", request.commit)})));
    WebLink link{.problem = WebLink::Problem::unknownServer};
    for (const std::string& remote : request.remotes) {
        const auto place = placeOfRemote(repo, remote, request.hosts);
        if (!place)
            continue;
        if (hasCommit(repo, remote, commit))
            return {.address = request.path.empty() ? commitAddress(*place, commit)
                                                    : fileAddress(*place, commit, request.path, request.lines)};
        link.problem = WebLink::Problem::notPushed;
    }
    return link;
}

WebLink newRequestLink(const GitRepository& repo, const WebLinkRequest& request)
{
    const std::string upstream =
        shortened(repo.runner().output({"for-each-ref", "--format=%(upstream)", "refs/heads/" + request.branch}),
                  "refs/remotes/");
    WebLink link{.problem = WebLink::Problem::unknownServer};
    for (const std::string& remote : request.remotes) {
        const auto place = placeOfRemote(repo, remote, request.hosts);
        if (!place)
            continue;
        // A branch that follows another one was pushed under its own name, if it was.
        const RemoteBranch followed = remoteBranchOf(upstream, request.remotes);
        const std::string refs = "refs/remotes/" + remote + '/';
        const std::string base = shortened(repo.runner().output({"symbolic-ref", "--quiet", refs + "HEAD"}), refs);
        std::string branch = followed.remote == remote && followed.branch != base ? followed.branch : request.branch;
        if (branch == base)
            return {.problem = WebLink::Problem::isBase};
        if (repo.runner().output({"rev-parse", "--verify", "--quiet", refs + branch}).status == 0)
            return {.address = newRequestAddress(*place, branch, base)};
        link.problem = WebLink::Problem::notPushed;
    }
    return link;
}

} // namespace

WebLink webLink(const GitRepository& repo, const WebLinkRequest& request)
{
    if (request.remotes.empty())
        return {.problem = WebLink::Problem::noRemote};
    return request.commit.empty() ? newRequestLink(repo, request) : commitLink(repo, request);
}

std::optional<WebPlace> webPlace(const GitRepository& repo, const WebLinkRequest& request)
{
    for (const std::string& remote : request.remotes) {
        if (auto place = placeOfRemote(repo, remote, request.hosts))
            return place;
    }
    return std::nullopt;
}

} // namespace gitkit
