// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/store/actions/Remotes.h"

#include "GitKit/records/RemoteBranch.h"
#include "GitKit/repository/GitRepository.h"
#include "GitKit/repository/PartialClone.h"
#include "GitKit/repository/RemoteChanges.h"
#include "GitKit/repository/Requests.h"
#include "GitKit/repository/Upstream.h"
#include "app/store/Changes.h"
#include "app/store/Failure.h"
#include "app/store/SheetKind.h"
#include "app/store/ShownText.h"
#include "app/store/Snapshot.h"
#include "app/store/Undoables.h"
#include "app/store/WindowState.h"
#include "app/store/actions/WaysOn.h"

#include <QCoreApplication>

#include <algorithm>
#include <functional>
#include <utility>

using namespace Qt::StringLiterals;

namespace plovik::actions {

using gitkit::GitRepository;

namespace {

struct RemoteTexts {
    Q_DECLARE_TR_FUNCTIONS(plovik::Remotes)
};

void pullBy(Actors actors, gitkit::PullBy how, bool isRemembered, std::function<void()> then = {})
{
    // What comes is known before anything of the user's moves, so that files in its way are found.
    const auto fetched = std::make_shared<std::optional<std::string>>();
    Change pull{.verb = Verb::pull,
                .title = RemoteTexts::tr("Pulling…"),
                .prepare = [fetched](const GitRepository& repo) { *fetched = gitkit::fetchToPull(repo); },
                .operation =
                    [how, isRemembered, fetched](const GitRepository& repo) {
                        if (isRemembered)
                            gitkit::rememberPullBy(repo, how);
                        repo.pull(how, *fetched);
                    },
                .undo = undoable::pull(how, [fetched] { return *fetched; }),
                .succeeded = std::move(then)};
    if (how == gitkit::PullBy::setting) {
        pull.failed = [actors](const Failure& failure) {
            if (failure.kind != gitkit::ErrorKind::notFastForward)
                return false;
            waysOn::askHowToPull(actors, failure, [actors](gitkit::PullBy chosen, bool remembers) {
                pullBy(actors, chosen, remembers);
            });
            return true;
        };
    }
    actors.changes.run(waysOn::offeringStash(
        actors, waysOn::tellingUpToDate(actors.window, std::move(pull)),
        {.message = RemoteTexts::tr("Before pull"),
         .listing = {"diff", "--name-only", "-z", "--no-renames", "--no-ext-diff", "HEAD...@{upstream}", "--"}}));
}

QCoro::Task<> askingToEdit(Actors actors, std::string remote, RemoteFocus focus)
{
    std::vector<gitkit::RemoteSettings> known;
    try {
        known = co_await actors.git.read(&gitkit::allRemoteSettings);
    } catch (const std::exception& thrown) {
        actors.window.report(failureOf(thrown));
        co_return;
    }
    if (!known.empty())
        actors.window.showSheet(RemoteSheet{std::move(known), remote, focus == RemoteFocus::name});
}

/// Returns the branches that follow one of the remote.
std::vector<std::string> followers(const Snapshot& now, const std::string& remote)
{
    std::vector<std::string> names;
    for (const gitkit::GitRef& branch : now.branches.value()) {
        if (branch.upstream && gitkit::remoteBranchOf(*branch.upstream, now.remotes.value()).remote == remote)
            names.push_back(branch.name);
    }
    return names;
}

} // namespace

void askToEditRemote(Actors actors, const std::string& remote, RemoteFocus focus)
{
    launch(askingToEdit(actors, remote, focus));
}

void addRemote(Actors actors, const gitkit::RemoteSettings& added)
{
    const auto fetches = added.skipsFetchAll ? gitkit::FetchAfterAdding::no : gitkit::FetchAfterAdding::yes;
    actors.changes.run(
        {.verb = Verb::editRemote,
         .title = RemoteTexts::tr("Adding %1…").arg(inQuotes(added.name)),
         .operation = [added, fetches](const GitRepository& repo) { gitkit::addRemote(repo, added, fetches); },
         .undo = undoable::addRemote(added.name)});
}

void changeRemote(Actors actors, const gitkit::RemoteSettings& before, const gitkit::RemoteSettings& after)
{
    actors.changes.run(
        {.verb = Verb::editRemote,
         .title = RemoteTexts::tr("Changing %1…").arg(inQuotes(before.name)),
         .operation = [before, after](const GitRepository& repo) { gitkit::changeRemote(repo, before, after); },
         .undo = undoable::changeRemote(before.name, after.name)});
}

void confirmRemoveRemote(Actors actors, const std::string& remote)
{
    const auto isOfIt = [&](const gitkit::GitRef& ref) {
        return gitkit::remoteBranchOf(ref.name, actors.snapshot.remotes.value()).remote == remote;
    };
    const auto branches = static_cast<int>(std::ranges::count_if(actors.snapshot.remoteBranches.value(), isOfIt));
    const std::vector<std::string> following = followers(actors.snapshot, remote);
    Confirmation question;
    question.title = RemoteTexts::tr("Remove the remote %1?").arg(inQuotes(remote));
    question.message = branches > 0
                           ? RemoteTexts::tr("Its address goes, and what was fetched from it: %Ln branch(es). Nothing "
                                             "changes there, and Undo brings it back.",
                                             nullptr, branches)
                           : RemoteTexts::tr("Its address goes. Nothing changes there, and Undo brings it back.");
    if (!following.empty())
        question.detail = RemoteTexts::tr("%Ln branch(es) will follow nothing any more:", nullptr,
                                          static_cast<int>(following.size())) +
                          u'\n' + namesInLines(following);
    question.actionTitle = RemoteTexts::tr("Remove");
    question.action = [actors, remote] {
        actors.changes.run({.verb = Verb::editRemote,
                            .title = RemoteTexts::tr("Removing %1…").arg(inQuotes(remote)),
                            .operation = [remote](const GitRepository& repo) { gitkit::removeRemote(repo, remote); },
                            .undo = undoable::removeRemote(remote)});
    };
    actors.window.ask(std::move(question));
}

void fetch(Actors actors)
{
    actors.changes.run(
        {.verb = Verb::fetch, .title = RemoteTexts::tr("Fetching…"), .operation = &GitRepository::fetch});
}

void pull(Actors actors) { pullBy(actors, gitkit::PullBy::setting, false); }

void checkOutRequest(Actors actors, const Request& request)
{
    const auto fetched = std::make_shared<std::string>();
    actors.changes.run(waysOn::offeringStash(
        actors,
        {.verb = Verb::checkOutRequest,
         .title = RemoteTexts::tr("Checking out request %1…").arg(request.number),
         .prepare =
             [request, fetched](const GitRepository& repo) {
                 *fetched = gitkit::fetchRequest(repo, request.remote, request.number);
             },
         .operation =
             [request, fetched](const GitRepository& repo) {
                 repo.createBranch(request.branch, *fetched, gitkit::AfterCreating::checkOut);
             },
         .undo = undoable::checkOutRequest(request.branch, [fetched] { return *fetched; })},
        {.message = RemoteTexts::tr("Before request %1").arg(request.number),
         .listing = {"diff", "--name-only", "-z", "--no-renames", "--no-ext-diff", "HEAD", "--"}}));
}

void downloadContents(Actors actors, const std::string& hash, std::function<void()> then)
{
    actors.changes.run({.verb = Verb::fetch,
                        .title = RemoteTexts::tr("Downloading contents…"),
                        .operation = [hash](const GitRepository& repo) { gitkit::downloadContents(repo, hash); },
                        .succeeded = std::move(then)});
}

void rebaseOnUpstream(Actors actors, std::function<void()> then)
{
    pullBy(actors, gitkit::PullBy::rebasing, false, std::move(then));
}

} // namespace plovik::actions
