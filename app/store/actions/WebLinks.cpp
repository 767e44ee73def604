// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/store/actions/WebLinks.h"

#include "app/store/ShownText.h"
#include "app/store/Snapshot.h"
#include "app/store/WindowState.h"
#include "app/store/actions/Pushes.h"
#include "app/store/readers/WebLinkReaders.h"

#include <QCoreApplication>

#include <optional>

namespace plovik::actions {

namespace {

struct WebTexts {
    Q_DECLARE_TR_FUNCTIONS(plovik::WebLinks)
};

QCoro::Task<> finding(Actors actors, gitkit::WebLinkRequest request, std::function<void(const QString&)> found)
{
    std::optional<Failure> failure;
    try {
        const gitkit::WebLink link = co_await actors.git.readLong({}, &readWebLink, request);
        if (link.problem == gitkit::WebLink::Problem::none)
            found(exactText(link.address));
        else
            actors.window.tell(whyNoLink(link));
    } catch (const std::exception& thrown) {
        failure = failureOf(thrown);
    }
    if (failure)
        actors.window.report(*failure);
}

} // namespace

std::vector<std::string> webRemotes(const Snapshot& now)
{
    std::vector<std::string> remotes = now.remotes.value();
    const auto usual = std::ranges::find(remotes, usualRemote(now));
    if (usual != remotes.end())
        std::rotate(remotes.begin(), usual, usual + 1);
    return remotes;
}

QString whyNoLink(const gitkit::WebLink& link)
{
    using Problem = gitkit::WebLink::Problem;
    switch (link.problem) {
    case Problem::none:
        break;
    case Problem::noRemote:
        return WebTexts::tr("This repository has no remote.");
    case Problem::unknownServer:
        return WebTexts::tr("No remote is on a server whose pages are known. Name it in the settings, under “Web”.");
    case Problem::notPushed:
        return WebTexts::tr("No remote has it yet. Push first.");
    case Problem::isBase:
        return WebTexts::tr("This is the branch that requests go to.");
    }
    return {};
}

void findWebLink(Actors actors, const gitkit::WebLinkRequest& request, std::function<void(const QString&)> found)
{
    launch(finding(actors, request, std::move(found)));
}

} // namespace plovik::actions
