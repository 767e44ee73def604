// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/store/actions/Remotes.h"

#include "GitKit/repository/GitRepository.h"
#include "GitKit/repository/PartialClone.h"
#include "GitKit/repository/Requests.h"
#include "GitKit/repository/Upstream.h"
#include "app/store/Changes.h"
#include "app/store/Snapshot.h"
#include "app/store/Undoables.h"
#include "app/store/WindowState.h"
#include "app/store/actions/WaysOn.h"

#include <QCoreApplication>

#include <functional>
#include <utility>

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

} // namespace

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
