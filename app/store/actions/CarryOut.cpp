// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/store/actions/CarryOut.h"

#include "app/store/Rewriting.h"
#include "app/store/SheetKind.h"
#include "app/store/Snapshot.h"
#include "app/store/WindowState.h"
#include "app/store/actions/FileVersions.h"
#include "app/store/actions/Merges.h"
#include "app/store/actions/Picks.h"
#include "app/store/actions/Pushes.h"
#include "app/store/actions/Stashes.h"

#include <algorithm>

namespace plovik::actions {

namespace {

using Act = Drop::Act;

void stashDropped(Actors actors, const std::vector<std::string>& paths)
{
    std::vector<gitkit::FileChange> files;
    for (const std::string& path : paths) {
        if (const gitkit::FileChange* const file = actors.snapshot.status.value().files.find(path))
            files.push_back(*file);
    }
    if (!files.empty())
        stashFiles(actors, {}, files);
}

void applyDropped(Actors actors, const std::string& hash, gitkit::StashUse use)
{
    const auto& all = actors.snapshot.stashes.value();
    if (const auto stash = std::ranges::find(all, hash, &gitkit::Stash::hash); stash != all.end())
        stashApply(actors, *stash, use);
}

} // namespace

void carryOut(Actors actors, const Drop& drop, const std::vector<gitkit::Commit>& commits)
{
    switch (drop.act) {
    case Act::nothing:
        return;
    case Act::merge:
        return merge(actors, drop.ref);
    case Act::squash:
        return merge(actors, drop.ref, gitkit::MergeKind::squash);
    case Act::rebase:
        return rebaseOnto(actors, drop.ref);
    case Act::push:
        return pushBranch(actors, drop.push);
    case Act::askPush:
        return actors.window.showSheet(PushSheet{.branch = drop.push.branch, .to = drop.push.to});
    case Act::fastForward:
        return fastForward(actors, drop.ref.name, drop.to);
    case Act::cherryPick:
        return cherryPick(actors, commits);
    case Act::moveBranch:
        return moveBranch(actors, drop.ref, drop.to);
    case Act::askReset:
        return actors.window.showSheet(ResetSheet{drop.to});
    case Act::stashFiles:
        return stashDropped(actors, drop.names);
    case Act::applyStash:
        return applyDropped(actors, drop.names.front(), gitkit::StashUse::apply);
    case Act::popStash:
        return applyDropped(actors, drop.names.front(), gitkit::StashUse::pop);
    case Act::planSquash:
        return actors.rewriting.squash(drop.names, drop.to, gitkit::RewriteStep::Act::squash);
    case Act::planFixUp:
        return actors.rewriting.squash(drop.names, drop.to, gitkit::RewriteStep::Act::fixUp);
    case Act::planMove:
        return actors.rewriting.move(drop.names, drop.to);
    case Act::takeFile:
        return takeFile(actors, drop.revision, drop.names.front());
    }
}

} // namespace plovik::actions
