// SPDX-License-Identifier: GPL-3.0-or-later
#include "GitKit/records/RewritePlan.h"

#include <algorithm>
#include <iterator>

namespace gitkit {

namespace {

using Act = RewriteStep::Act;
/// A commit and what is squashed into it.
using Group = std::vector<RewriteStep>;
using Groups = std::vector<Group>;

bool isFollower(const RewriteStep& step) { return step.act == Act::squash || step.act == Act::fixUp; }

bool has(const Hashes& commits, std::string_view commit) { return std::ranges::find(commits, commit) != commits.end(); }

bool hasCommit(const Group& group, std::string_view commit)
{
    return std::ranges::find(group, commit, &RewriteStep::commit) != group.end();
}

/// A drop stands in between and takes nothing in.
Groups groupsOf(const RewritePlan& plan)
{
    Groups groups;
    for (const RewriteStep& step : plan.steps) {
        if (isFollower(step) && !groups.empty() && groups.back().front().act != Act::drop)
            groups.back().push_back(step);
        else
            groups.push_back({step});
    }
    return groups;
}

/// Returns the plan of these groups. What has lost the commit that it went into is one of its own.
RewritePlan withGroups(const RewritePlan& plan, Groups groups)
{
    RewritePlan result = plan;
    result.steps.clear();
    for (Group& group : groups) {
        if (group.empty())
            continue;
        if (isFollower(group.front()))
            group.front().act = Act::pick;
        std::ranges::move(group, std::back_inserter(result.steps));
    }
    return result;
}

/// Takes commits out of the groups, each with what goes along. Returns them in their order.
Groups takenOut(Groups& groups, const Hashes& commits)
{
    Groups taken;
    for (Group& group : groups) {
        if (has(commits, group.front().commit)) {
            taken.push_back(std::move(group));
            group.clear();
            continue;
        }
        Group left;
        for (RewriteStep& step : group) {
            if (has(commits, step.commit))
                taken.push_back({std::move(step)});
            else
                left.push_back(std::move(step));
        }
        group = std::move(left);
    }
    std::erase_if(groups, [](const Group& group) { return group.empty(); });
    for (Group& group : taken) {
        if (isFollower(group.front()))
            group.front().act = Act::pick;
    }
    return taken;
}

/// Moves groups past the next one in the given direction; those that stand at the end stay.
template <typename Iterator>
void shift(Iterator first, Iterator last, const Hashes& commits)
{
    const auto isMeant = [&commits](const Group& group) { return has(commits, group.front().commit); };
    // `first` is the end towards which they move.
    for (Iterator at = first; at != last; ++at) {
        if (at != first && isMeant(*at) && !isMeant(*std::prev(at)))
            std::iter_swap(std::prev(at), at);
    }
}

/// Returns the groups after those that only hold named followers were made commits of their own.
Groups apart(const RewritePlan& plan, const Hashes& commits)
{
    Groups groups;
    for (Group& group : groupsOf(plan)) {
        Groups pieces{{group.front()}};
        for (std::size_t index = 1; index < group.size(); ++index) {
            const bool isAlone = has(commits, group[index].commit) && !has(commits, group.front().commit);
            if (isAlone) {
                group[index].act = Act::pick;
                pieces.push_back({group[index]});
            } else {
                pieces.front().push_back(group[index]);
            }
        }
        std::ranges::move(pieces, std::back_inserter(groups));
    }
    return groups;
}

/// Returns the plan after these were moved, with what the user asked for.
RewritePlan afterMove(const RewritePlan& before, Groups groups, const Hashes& commits)
{
    RewritePlan plan = withGroups(before, std::move(groups));
    for (const std::string& commit : commits) {
        if (plan.steps != before.steps && has(plan.commits, commit) && !has(plan.asked, commit))
            plan.asked.push_back(commit);
    }
    return plan;
}

template <typename Do>
RewritePlan changed(RewritePlan plan, const std::string& commit, Do change)
{
    const auto found = std::ranges::find(plan.steps, commit, &RewriteStep::commit);
    if (found != plan.steps.end())
        change(*found);
    return plan;
}

/// Returns how the steps stand as places in RewritePlan::commits.
std::vector<std::size_t> placesOf(const RewritePlan& plan)
{
    std::vector<std::size_t> places;
    for (const RewriteStep& step : plan.steps)
        places.push_back(static_cast<std::size_t>(std::ranges::find(plan.commits, step.commit) - plan.commits.begin()));
    return places;
}

} // namespace

RewritePlan untouchedPlan(std::string branch, std::string base, Hashes commits)
{
    RewritePlan plan{.branch = std::move(branch), .base = std::move(base), .commits = std::move(commits), .steps = {}};
    for (const std::string& commit : plan.commits)
        plan.steps.push_back({.commit = commit});
    return plan;
}

bool isUntouched(const RewritePlan& plan)
{
    return plan.onto.empty() && plan.steps == untouchedPlan(plan.branch, plan.base, plan.commits).steps;
}

bool dropsAll(const RewritePlan& plan)
{
    return std::ranges::all_of(plan.steps, [](const RewriteStep& step) { return step.act == Act::drop; });
}

Hashes movedCommits(const RewritePlan& plan)
{
    // The longest run of commits that still stand in their old order has stayed; all others have moved. Of runs that are
    // equally long, the one counts that has the fewest of those that were asked to move.
    const std::vector<std::size_t> places = placesOf(plan);
    const auto weightOf = [&](std::size_t index) {
        return 2 * places.size() + (has(plan.asked, plan.steps[index].commit) ? 0 : 1);
    };
    std::vector<std::size_t> weight(places.size());
    std::vector<std::size_t> before(places.size(), places.size());
    std::size_t end = places.size();
    for (std::size_t index = 0; index < places.size(); ++index) {
        weight[index] = weightOf(index);
        for (std::size_t other = 0; other < index; ++other) {
            if (places[other] < places[index] && weight[other] + weightOf(index) > weight[index]) {
                weight[index] = weight[other] + weightOf(index);
                before[index] = other;
            }
        }
        if (end == places.size() || weight[index] >= weight[end])
            end = index;
    }
    std::vector<bool> stays(places.size(), false);
    for (std::size_t index = end; index < places.size(); index = before[index])
        stays[index] = true;
    Hashes found;
    for (std::size_t index = 0; index < places.size(); ++index) {
        if (!stays[index])
            found.push_back(plan.steps[index].commit);
    }
    return found;
}

Hashes affectedCommits(const RewritePlan& plan)
{
    if (!plan.onto.empty())
        return plan.commits;
    std::size_t index = 0;
    while (index < plan.steps.size() && index < plan.commits.size() &&
           plan.steps[index] == RewriteStep{.commit = plan.commits[index]})
        ++index;
    // A commit that takes the next one in changes, too.
    if (index > 0 && index < plan.steps.size() && isFollower(plan.steps[index]))
        --index;
    return {plan.commits.begin() + static_cast<std::ptrdiff_t>(index), plan.commits.end()};
}

RewritePlan firstSteps(const RewritePlan& plan, std::size_t changed)
{
    const std::size_t unchanged = plan.commits.size() - affectedCommits(plan).size();
    RewritePlan first = plan;
    std::size_t end = std::min(unchanged + changed, first.steps.size());
    while (end < first.steps.size() && isFollower(first.steps[end]))
        ++end;
    first.steps.resize(end);
    return first;
}

RewriteCounts countsOf(const RewritePlan& plan)
{
    RewriteCounts counts;
    for (const RewriteStep& step : plan.steps) {
        counts.squashed += isFollower(step) ? 1 : 0;
        counts.dropped += step.act == Act::drop ? 1 : 0;
        counts.split += step.act == Act::split ? 1 : 0;
        counts.stops += step.act == Act::edit ? 1 : 0;
        counts.reworded += step.message && step.act == Act::pick ? 1 : 0;
    }
    for (const std::string& commit : movedCommits(plan))
        counts.moved += squashedInto(plan, commit).empty() && stepOf(plan, commit)->act != Act::drop ? 1 : 0;
    return counts;
}

const RewriteStep* stepOf(const RewritePlan& plan, std::string_view commit)
{
    const auto found = std::ranges::find(plan.steps, commit, &RewriteStep::commit);
    return found == plan.steps.end() ? nullptr : &*found;
}

std::string squashedInto(const RewritePlan& plan, std::string_view commit)
{
    for (const Group& group : groupsOf(plan)) {
        if (group.front().commit != commit && hasCommit(group, commit))
            return group.front().commit;
    }
    return {};
}

RewritePlan moved(const RewritePlan& plan, const Hashes& commits, const std::string& below)
{
    if (has(commits, below))
        return plan;
    Groups groups = groupsOf(plan);
    Groups taken = takenOut(groups, commits);
    auto place = groups.begin();
    if (!below.empty()) {
        place = std::ranges::find_if(groups, [&below](const Group& group) { return hasCommit(group, below); });
        if (place == groups.end())
            return plan;
        ++place;
    }
    groups.insert(place, std::make_move_iterator(taken.begin()), std::make_move_iterator(taken.end()));
    return afterMove(plan, std::move(groups), commits);
}

RewritePlan movedUp(const RewritePlan& plan, const Hashes& commits)
{
    Groups groups = apart(plan, commits);
    shift(groups.rbegin(), groups.rend(), commits);
    return afterMove(plan, std::move(groups), commits);
}

RewritePlan movedDown(const RewritePlan& plan, const Hashes& commits)
{
    Groups groups = apart(plan, commits);
    shift(groups.begin(), groups.end(), commits);
    return afterMove(plan, std::move(groups), commits);
}

RewritePlan squashed(const RewritePlan& plan, const Hashes& commits, const std::string& into, Act act)
{
    Hashes others = commits;
    std::erase(others, into);
    Groups groups = groupsOf(plan);
    const std::string followed = squashedInto(plan, into);
    const std::string head = followed.empty() || has(others, followed) ? into : followed;
    Groups taken = takenOut(groups, others);
    const auto target = std::ranges::find_if(groups, [&head](const Group& group) { return hasCommit(group, head); });
    if (target == groups.end() || target->front().act == Act::drop)
        return plan;
    for (Group& group : taken) {
        group.front() = {.act = act,
                         .commit = group.front().commit,
                         .message = act == Act::fixUp ? std::nullopt : group.front().message};
        std::ranges::move(group, std::back_inserter(*target));
    }
    return withGroups(plan, std::move(groups));
}

RewritePlan squashedIntoParent(const RewritePlan& plan, const Hashes& commits, Act act)
{
    // The newest one beneath the oldest of them that stays.
    std::string into;
    for (const Group& group : groupsOf(plan)) {
        const bool isMeant =
            std::ranges::any_of(group, [&](const RewriteStep& step) { return has(commits, step.commit); });
        if (isMeant && !into.empty())
            break;
        if (group.front().act != Act::drop)
            into = group.front().commit;
        if (isMeant)
            break;
    }
    return into.empty() ? plan : squashed(plan, commits, into, act);
}

RewritePlan dropped(const RewritePlan& plan, const Hashes& commits)
{
    Groups groups;
    for (Group& group : groupsOf(plan)) {
        Groups gone;
        Group left;
        for (RewriteStep& step : group) {
            if (has(commits, step.commit))
                gone.push_back({{.act = Act::drop, .commit = step.commit}});
            else
                left.push_back(std::move(step));
        }
        groups.push_back(std::move(left));
        std::ranges::move(gone, std::back_inserter(groups));
    }
    return withGroups(plan, std::move(groups));
}

RewritePlan kept(const RewritePlan& plan, const Hashes& commits)
{
    Groups groups;
    for (Group& group : groupsOf(plan)) {
        groups.emplace_back();
        Groups own;
        for (RewriteStep& step : group) {
            if (!has(commits, step.commit))
                groups.back().push_back(std::move(step));
            else if (isFollower(step))
                own.push_back({{.commit = step.commit}});
            else
                groups.back().push_back({.commit = step.commit});
        }
        std::ranges::move(own, std::back_inserter(groups));
    }
    return withGroups(plan, std::move(groups));
}

RewritePlan reworded(const RewritePlan& plan, const std::string& commit, std::string message)
{
    const std::string into = squashedInto(plan, commit);
    const std::string head = into.empty() ? commit : into;
    Groups groups = groupsOf(plan);
    for (Group& group : groups) {
        if (group.front().commit != head || group.front().act == Act::drop)
            continue;
        group.front().message = std::move(message);
        for (std::size_t index = 1; index < group.size(); ++index)
            group[index] = {.act = Act::fixUp, .commit = group[index].commit};
        break;
    }
    return withGroups(plan, std::move(groups));
}

RewritePlan split(const RewritePlan& plan, const std::string& commit, CommitPart part, std::string partMessage,
                  std::string message)
{
    return changed(kept(plan, {commit}), commit, [&](RewriteStep& step) {
        step.act = Act::split;
        step.part = std::move(part);
        step.partMessage = std::move(partMessage);
        step.message = std::move(message);
    });
}

RewritePlan stoppingAt(const RewritePlan& plan, const std::string& commit)
{
    return changed(plan, commit, [](RewriteStep& step) {
        if (step.act == Act::pick)
            step.act = Act::edit;
    });
}

} // namespace gitkit
