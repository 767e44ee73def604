// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/store/Drops.h"

#include <algorithm>
#include <utility>

namespace plovik {

namespace {

using Act = Drop::Act;
using gitkit::GitRef;

/// Returns the branch with this full name; nullptr for what is none, and for a damaged one.
const GitRef* branchNamed(const DropFacts& facts, const std::string& fullName)
{
    for (const std::vector<GitRef>* const refs : {&facts.branches, &facts.remoteBranches}) {
        if (const auto found = std::ranges::find(*refs, fullName, &GitRef::fullName); found != refs->end())
            return found->hash.empty() ? nullptr : &*found;
    }
    return nullptr;
}

Drop pushTo(const GitRef& branch, const gitkit::RemoteBranch& to, const DropFacts& facts, bool isOther)
{
    if (to.remote.empty() || to.branch.empty())
        return {};
    Drop drop{.act = isOther ? Act::askPush : Act::push, .ref = branch};
    drop.push = {.branch = branch.name, .to = to, .setsUpstream = !branch.upstream};
    if (const GitRef* const there = branchNamed(facts, "refs/remotes/" + to.remote + '/' + to.branch))
        drop.push.there = there->hash;
    const bool isThere = drop.push.there == branch.hash;
    return isThere && !isOther ? Drop() : drop;
}

/// On a remote as a whole a branch goes to the one that it follows there, or to one of its own name.
Drop branchOnRemote(const GitRef& branch, const std::string& remote, const DropFacts& facts, bool isOther)
{
    gitkit::RemoteBranch to;
    if (branch.upstream)
        to = gitkit::remoteBranchOf(*branch.upstream, facts.remotes);
    if (to.remote != remote)
        to = {remote, branch.name};
    return pushTo(branch, to, facts, isOther);
}

Drop branchOnBranch(const GitRef& dragged, const GitRef& target, const DropFacts& facts, bool isOther)
{
    if (dragged.fullName == target.fullName)
        return {};
    const bool isLocal = dragged.kind == GitRef::Kind::local;
    if (isLocal && target.kind == GitRef::Kind::remote && dragged.upstreamRef == target.fullName)
        return pushTo(dragged, gitkit::remoteBranchOf(target.name, facts.remotes), facts, isOther);
    if (target.isHead)
        return {.act = isLocal && isOther ? Act::squash : Act::merge, .ref = dragged};
    if (dragged.isHead)
        return {.act = Act::rebase, .ref = target};
    if (!isLocal && target.kind == GitRef::Kind::local && dragged.hash != target.hash)
        return {.act = Act::fastForward, .ref = target, .to = dragged.fullName};
    return {};
}

Drop branchOnCommit(const GitRef& branch, const std::string& commit)
{
    if (branch.kind != GitRef::Kind::local || branch.hash == commit)
        return {};
    return {.act = branch.isHead ? Act::askReset : Act::moveBranch, .ref = branch, .to = commit};
}

Drop branchOn(const GitRef& branch, const DropTarget& target, const DropFacts& facts, bool isOther)
{
    switch (target.kind) {
    case DropTarget::Kind::ref:
        if (const GitRef* const other = branchNamed(facts, target.name))
            return branchOnBranch(branch, *other, facts, isOther);
        return {};
    case DropTarget::Kind::remote:
        return branch.kind == GitRef::Kind::local ? branchOnRemote(branch, target.name, facts, isOther) : Drop();
    case DropTarget::Kind::commit:
        return branchOnCommit(branch, target.name);
    case DropTarget::Kind::aboveCommit:
    case DropTarget::Kind::stashes:
    case DropTarget::Kind::workingCopy:
        return {};
    }
    return {};
}

const gitkit::MovableCommit* movableNamed(const DropFacts& facts, const std::string& hash)
{
    if (!facts.movable)
        return nullptr;
    const auto found = std::ranges::find(*facts.movable, hash, &gitkit::MovableCommit::hash);
    return found == facts.movable->end() ? nullptr : &*found;
}

/// Commits on one of their own branch, or between two of them, are for the plan.
Drop plannedOn(const Dragged& dragged, const DropTarget& target, const DropFacts& facts, bool isOther)
{
    const bool isInto = target.kind == DropTarget::Kind::commit;
    const gitkit::MovableCommit* const other = movableNamed(facts, target.name);
    const bool isItself = std::ranges::find(dragged.names, target.name) != dragged.names.end();
    const bool areMovable =
        std::ranges::all_of(dragged.names, [&facts](const auto& name) { return movableNamed(facts, name); });
    if (!areMovable || isItself || (!other && (isInto || !target.name.empty())))
        return {};
    const Act act = !isInto ? Act::planMove : isOther ? Act::planFixUp : Act::planSquash;
    return {.act = act,
            .to = target.name,
            .names = dragged.names,
            .subject = other ? other->message.substr(0, other->message.find('\n')) : std::string()};
}

/// Merges are seen from a parent, so each is picked alone.
Drop commitsOn(const Dragged& dragged, const DropTarget& target, const DropFacts& facts, bool isOther)
{
    if (target.kind == DropTarget::Kind::commit || target.kind == DropTarget::Kind::aboveCommit)
        return plannedOn(dragged, target, facts, isOther);
    const GitRef* const branch = target.kind == DropTarget::Kind::ref ? branchNamed(facts, target.name) : nullptr;
    const bool isThere = std::ranges::find(dragged.names, facts.head) != dragged.names.end();
    if (!branch || !branch->isHead || isThere || (dragged.hasMerge && dragged.names.size() > 1))
        return {};
    return {.act = Act::cherryPick, .ref = *branch, .names = dragged.names};
}

/// Of the files those go that can be stashed: a submodule is a repository of its own.
Drop filesOn(const Dragged& dragged, const DropTarget& target, const DropFacts& facts)
{
    Drop drop{.act = Act::stashFiles};
    for (const std::string& path : dragged.names) {
        const gitkit::FileChange* const file = facts.files.find(path);
        if (file && !file->isSubmodule)
            drop.names.push_back(path);
    }
    return target.kind == DropTarget::Kind::stashes && !drop.names.empty() ? drop : Drop();
}

Drop onlyOnWorkingCopy(const DropTarget& target, Drop drop)
{
    return target.kind == DropTarget::Kind::workingCopy ? std::move(drop) : Drop();
}

} // namespace

Drop dropOf(const Dragged& dragged, const DropTarget& target, const DropFacts& facts, bool isOther)
{
    if (dragged.names.empty())
        return {};
    switch (dragged.kind) {
    case Dragged::Kind::ref:
        if (const GitRef* const branch = branchNamed(facts, dragged.names.front()))
            return branchOn(*branch, target, facts, isOther);
        return {};
    case Dragged::Kind::commits:
        return commitsOn(dragged, target, facts, isOther);
    case Dragged::Kind::files:
        return filesOn(dragged, target, facts);
    case Dragged::Kind::stash:
        return onlyOnWorkingCopy(target,
                                 {.act = isOther ? Act::popStash : Act::applyStash, .names = {dragged.names.front()}});
    case Dragged::Kind::commitFile:
        return onlyOnWorkingCopy(
            target, {.act = Act::takeFile, .names = {dragged.names.front()}, .revision = dragged.revision});
    }
    return {};
}

std::optional<Verb> dropVerb(Act act)
{
    switch (act) {
    case Act::merge:
    case Act::squash:
        return Verb::merge;
    case Act::rebase:
        return Verb::rebase;
    case Act::push:
    case Act::askPush:
        return Verb::pushTag; // what a branch that is not checked out needs, too
    case Act::fastForward:
        return Verb::fastForward;
    case Act::cherryPick:
        return Verb::cherryPick;
    case Act::moveBranch:
        return Verb::moveBranch;
    case Act::askReset:
        return Verb::reset;
    case Act::stashFiles:
        return Verb::saveStash;
    case Act::applyStash:
    case Act::popStash:
        return Verb::applyStash;
    case Act::takeFile:
        return Verb::takeFile;
    case Act::planSquash:
    case Act::planFixUp:
    case Act::planMove:
        return Verb::rewrite;
    case Act::nothing:
        break;
    }
    return std::nullopt;
}

} // namespace plovik
