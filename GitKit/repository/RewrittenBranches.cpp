// SPDX-License-Identifier: GPL-3.0-or-later
#include "GitKit/repository/RewrittenBranches.h"

#include "GitKit/Text.h"
#include "GitKit/parsers/Fields.h"
#include "GitKit/repository/Divergence.h"
#include "GitKit/repository/GitRepository.h"
#include "GitKit/repository/Pushing.h"

#include <algorithm>

namespace gitkit {

namespace {

constexpr std::string_view localPrefix = "refs/heads/";
/// Older versions of a branch are hardly pushed any more.
constexpr const char* mostVersions = "--max-count=2000";

/// Returns what `ref` is called here by such a rule of a remote, like +refs/heads/*:refs/remotes/origin/*; empty when the
/// rule is for others.
std::string mapped(std::string_view rule, std::string_view ref)
{
    if (rule.starts_with('+'))
        rule.remove_prefix(1);
    const std::size_t colon = rule.find(':');
    if (colon == std::string_view::npos || rule.starts_with('^'))
        return {};
    const std::string_view from = rule.substr(0, colon);
    const std::string_view to = rule.substr(colon + 1);
    const std::size_t star = from.find('*');
    if (star == std::string_view::npos)
        return from == ref ? std::string(to) : std::string();
    const std::string_view end = from.substr(star + 1);
    if (ref.size() + 1 < from.size() || !ref.starts_with(from.substr(0, star)) || !ref.ends_with(end))
        return {};
    std::string result(to);
    if (const std::size_t place = result.find('*'); place != std::string::npos)
        result.replace(place, 1, ref.substr(star, ref.size() - star - end.size()));
    return result;
}

/// Returns where a branch is pushed to: its upstream, unless another remote is meant for it.
RemoteBranch pushPlace(const GitRepository& repo, const std::string& name)
{
    RemoteBranch place = pushedTo(repo, name);
    const std::vector<std::string> fields = splitNul(withoutLineEnd(
        repo.runner().bytes({"for-each-ref", "--format=%(upstream:remotename)%00%(upstream:remoteref)%00",
                             std::string(localPrefix) + name})));
    if (fields.size() == 2 && fields[0] == place.remote && fields[1].starts_with(localPrefix))
        place.branch = fields[1].substr(localPrefix.size());
    return place;
}

} // namespace

std::string hashOf(const GitRepository& repo, const std::string& revision)
{
    const GitOutput found = repo.runner().output({"rev-parse", "--verify", "--quiet", revision});
    return found.status == 0 ? std::string(withoutLineEnd(found.stdoutBytes)) : std::string();
}

/// Returns the full name of the ref that remembers where the remote's branch was at the last fetch; empty when none does.
std::string trackingRef(const GitRepository& repo, const RemoteBranch& branch)
{
    const GitOutput rules = repo.runner().output({"config", "-z", "--get-all", "remote." + branch.remote + ".fetch"});
    for (const std::string& rule : splitNul(rules.stdoutBytes)) {
        if (std::string found = mapped(rule, branchRef(branch.branch)); !found.empty())
            return found;
    }
    return {};
}

int strangersIn(const GitRepository& repo, const std::string& branch, const std::string& there)
{
    const GitOutput versions = repo.runner().output({"log", "-g", mostVersions, "--format=^%H", branch, "--"});
    const std::string range = there + "\n^" + branch + '\n' + versions.stdoutBytes;
    return readNumber(
        withoutLineEnd(repo.runner().bytes({"rev-list", "--count", "--ignore-missing", "--stdin"}, {.input = range})));
}

std::vector<RewrittenBranch> rewrittenBranches(const GitRepository& repo, const std::vector<std::string>& branches)
{
    std::vector<RewrittenBranch> found;
    for (const std::string& name : branches) {
        if (!name.starts_with(localPrefix))
            continue;
        const std::string shortName = name.substr(localPrefix.size());
        RewrittenBranch branch{.branch = shortName, .to = pushPlace(repo, shortName)};
        const std::string tracking = branch.to.remote.empty() ? std::string() : trackingRef(repo, branch.to);
        branch.there = tracking.empty() ? std::string() : hashOf(repo, tracking + "^{commit}");
        const std::string ours = hashOf(repo, name + "^{commit}");
        if (branch.there.empty() || ours.empty())
            continue;
        const Divergence counts = countDivergence(repo, {ours, branch.there});
        branch.missed = counts.behind;
        // A branch that has only gone back has nothing to put in the place of what is there.
        if (counts.ahead > 0 && counts.behind > 0 && strangersIn(repo, name, branch.there) == 0)
            found.push_back(std::move(branch));
    }
    return found;
}

const RewrittenBranch* topmost(const GitRepository& repo, const std::vector<RewrittenBranch>& branches)
{
    if (branches.empty())
        return nullptr;
    const std::string head(withoutLineEnd(repo.runner().output({"symbolic-ref", "--quiet", "HEAD"}).stdoutBytes));
    std::vector<std::string> command{"merge-base", "--independent"};
    for (const RewrittenBranch& branch : branches) {
        if (std::string(localPrefix) + branch.branch == head)
            return &branch;
        command.push_back(std::string(localPrefix) + branch.branch);
    }
    const std::string tops = repo.runner().bytes(command);
    const std::string top = tops.substr(0, tops.find('\n'));
    const auto found = std::ranges::find_if(branches, [&](const RewrittenBranch& branch) {
        return hashOf(repo, std::string(localPrefix) + branch.branch) == top;
    });
    return found == branches.end() ? &branches.front() : &*found;
}

} // namespace gitkit
