// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/store/actions/Submodules.h"

#include "GitKit/repository/GitRepository.h"
#include "GitKit/repository/Submodules.h"
#include "app/store/Changes.h"
#include "app/store/Secrets.h"
#include "app/store/ShownText.h"
#include "app/store/WindowState.h"

#include <QCoreApplication>
#include <QStringList>

#include <utility>

using namespace Qt::StringLiterals;

namespace plovik::actions {

using gitkit::GitRepository;
using gitkit::StrayCommits;
using gitkit::Submodule;

namespace {

struct SubmoduleTexts {
    Q_DECLARE_TR_FUNCTIONS(plovik::Submodules)
};

QString updatingTitle(const std::vector<Submodule>& submodules)
{
    return submodules.size() == 1
               ? SubmoduleTexts::tr("Updating %1…").arg(inQuotes(submodules.front().path))
               : SubmoduleTexts::tr("Updating %Ln submodule(s)…", nullptr, static_cast<int>(submodules.size()));
}

/// Git names no address where it resolves a relative one against the wrong remote.
QString addressesOf(const std::vector<Submodule>& submodules)
{
    QStringList lines;
    for (const Submodule& each : submodules) {
        if (!each.url.empty() && !each.isInitialised)
            lines << SubmoduleTexts::tr("%1 comes from %2.").arg(inQuotes(each.path), shownText(each.url));
    }
    return lines.join(u'\n');
}

void update(Actors actors, const std::vector<Submodule>& submodules, std::vector<StrayCommits> kept)
{
    std::vector<std::string> paths;
    for (const Submodule& each : submodules)
        paths.push_back(each.path);
    Change change{.verb = Verb::updateSubmodules,
                  .title = updatingTitle(submodules),
                  .operation = [paths, kept = std::move(kept)](const GitRepository& repo) {
                      gitkit::keepStrayCommits(repo, kept);
                      gitkit::updateSubmodules(repo, paths);
                  }};
    change.failed = [&window = actors.window, addresses = addressesOf(submodules)](const Failure& failure) {
        if (addresses.isEmpty() || failure.kind != gitkit::ErrorKind::other)
            return false;
        Failure told = failure;
        told.message += u"\n\n"_s + withoutSecrets(addresses);
        window.report(told);
        return true;
    };
    actors.changes.run(std::move(change));
}

void askAboutStray(Actors actors, const std::vector<Submodule>& submodules, const std::vector<StrayCommits>& stray)
{
    QStringList lines;
    QStringList branches;
    for (const StrayCommits& each : stray) {
        lines << SubmoduleTexts::tr("%1 has %Ln commit(s) on no branch.", nullptr, each.count).arg(inQuotes(each.path));
        branches << inQuotes(each.branch());
    }
    Confirmation question;
    question.title = SubmoduleTexts::tr("Commits in submodules would be left on no branch");
    question.message =
        SubmoduleTexts::tr("Updating checks out the recorded commits. Only the logs of the submodules would "
                           "lead to these commits then, for some weeks. A branch keeps them: %1.")
            .arg(branches.join(u", "_s));
    question.detail = lines.join(u'\n');
    question.actionTitle = SubmoduleTexts::tr("Update Anyway");
    question.action = [actors, submodules] { update(actors, submodules, {}); };
    question.choices.push_back(
        {SubmoduleTexts::tr("Make a Branch"), [actors, submodules, stray] { update(actors, submodules, stray); }});
    actors.window.ask(std::move(question));
}

QCoro::Task<> updatingAfterCheck(Actors actors, std::vector<Submodule> submodules)
{
    std::vector<StrayCommits> stray;
    std::optional<Failure> failure;
    const auto read = static_cast<std::vector<StrayCommits> (*)(const GitRepository&, const std::vector<Submodule>&)>(
        &gitkit::strayCommits);
    try {
        stray = co_await actors.git.readAside({}, read, submodules);
    } catch (const std::exception& thrown) {
        failure = failureOf(thrown);
    }
    if (failure)
        actors.window.report(*failure);
    else if (stray.empty())
        update(actors, submodules, {});
    else
        askAboutStray(actors, submodules, stray);
}

} // namespace

QString shownState(gitkit::SubmoduleState state)
{
    using enum gitkit::SubmoduleState;
    switch (state) {
    case notInitialised:
        return SubmoduleTexts::tr("not initialised");
    case atRecorded:
        return SubmoduleTexts::tr("at the recorded commit");
    case otherCommit:
        return SubmoduleTexts::tr("other commit");
    case changedInside:
        return SubmoduleTexts::tr("changed");
    case conflicted:
        return SubmoduleTexts::tr("in conflict");
    }
    return {};
}

void openSubmodule(Actors actors, const Submodule& submodule)
{
    if (whyNotOpened(submodule).isEmpty() && actors.services.openWindow)
        actors.services.openWindow(actors.git.root() / submodule.path);
}

QString whyNotOpened(const Submodule& submodule)
{
    return submodule.isInitialised ? QString() : SubmoduleTexts::tr("It is not initialised.");
}

void updateSubmodules(Actors actors, const std::vector<Submodule>& submodules)
{
    if (!submodules.empty())
        launch(updatingAfterCheck(actors, submodules));
}

} // namespace plovik::actions
