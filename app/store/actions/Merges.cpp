// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/store/actions/Merges.h"

#include "GitKit/records/Commit.h"
#include "GitKit/repository/Branches.h"
#include "GitKit/repository/GitRepository.h"
#include "GitKit/repository/Merging.h"
#include "app/store/Changes.h"
#include "app/store/ShownText.h"
#include "app/store/Snapshot.h"
#include "app/store/Undoables.h"
#include "app/store/WindowState.h"
#include "app/store/actions/WaysOn.h"

#include <QCoreApplication>

#include <atomic>
#include <memory>
#include <optional>
#include <string_view>
#include <utility>
#include <vector>

using namespace Qt::StringLiterals;

namespace plovik::actions {

using gitkit::GitRef;
using gitkit::GitRepository;
using gitkit::MergeKind;

namespace {

struct MergeTexts {
    Q_DECLARE_TR_FUNCTIONS(plovik::Refs)
};

/// Returns a command that lists the files which the other side has changed.
std::vector<std::string> changedThere(const std::string& ref)
{
    return {"diff", "--name-only", "-z", "--no-renames", "--no-ext-diff", "HEAD..." + ref, "--"};
}

/// Returns the change with a quiet word where nothing was staged by it.
Change tellingNothingStaged(WindowState& window, Change change)
{
    const auto hasStaged = std::make_shared<std::atomic_bool>(false);
    change.operation = [operation = change.operation, hasStaged](const GitRepository& repo) {
        operation(repo);
        *hasStaged = repo.runner().output({"diff", "--cached", "--quiet", "--no-ext-diff"}).status != 0;
    };
    change.succeeded = [&window, hasStaged] {
        if (!*hasStaged)
            window.tell(MergeTexts::tr("Already up to date."));
    };
    return change;
}

QString shownRemoteBranch(const std::string& fullName)
{
    constexpr std::string_view prefix = "refs/remotes/";
    return fullName.starts_with(prefix) ? shownText(std::string_view(fullName).substr(prefix.size())) : QString();
}

Change movingOn(Verb verb, const std::string& branch, const std::string& to = {})
{
    return {.verb = verb,
            .title = MergeTexts::tr("Moving %1 on…").arg(inQuotes(branch)),
            .operation = [branch, to](const GitRepository& repo) { gitkit::fastForward(repo, branch, to); },
            .undo = undoable::fastForward(branch, shownRemoteBranch(to))};
}

/// So many commits are counted that a branch would leave behind.
constexpr int mostLeftCounted = 1000;

QCoro::Task<> movingAfterCheck(Actors actors, GitRef branch, std::string target)
{
    int left = 0;
    std::optional<Failure> failure;
    try {
        left = co_await actors.git.read(&gitkit::commitsOnlyOn, branch.name, target, mostLeftCounted);
    } catch (const std::exception& thrown) {
        failure = failureOf(thrown);
    }
    if (failure) {
        actors.window.report(*failure);
        co_return;
    }
    const Change move{.verb = Verb::moveBranch,
                      .title = MergeTexts::tr("Moving %1…").arg(inQuotes(branch.name)),
                      .operation = [name = branch.name, from = branch.hash, target](
                                       const GitRepository& repo) { gitkit::moveBranch(repo, name, from, target); },
                      .undo = undoable::moveBranch(branch.name, target)};
    if (left == 0) {
        actors.changes.run(move);
        co_return;
    }
    Confirmation question;
    question.title = MergeTexts::tr("Move %1 to %2?").arg(inQuotes(branch.name), shownText(gitkit::shortHash(target)));
    question.message =
        left < mostLeftCounted
            ? MergeTexts::tr("%Ln commit(s) are on no other branch and no tag. They stay in the timeline only.",
                             nullptr, left)
            : MergeTexts::tr("Very many commits are on no other branch and no tag. They stay in the timeline "
                             "only.");
    question.actionTitle = MergeTexts::tr("Move");
    question.action = [&changes = actors.changes, move] { changes.run(move); };
    actors.window.ask(std::move(question));
}

} // namespace

void merge(Actors actors, const GitRef& ref, MergeKind kind)
{
    const QString shown = shownText(ref.name);
    const bool squashes = kind == MergeKind::squash;
    Change change{
        .verb = Verb::merge,
        .title = MergeTexts::tr("Merging %1…").arg(shown),
        .operation = [name = ref.fullName, kind](const GitRepository& repo) { gitkit::mergeBy(repo, name, kind); },
        .undo = squashes ? undoable::squash(ref.fullName, shown) : undoable::merge(ref.fullName, shown)};
    change = squashes ? tellingNothingStaged(actors.window, std::move(change))
                      : waysOn::tellingUpToDate(actors.window, std::move(change));
    actors.changes.run(waysOn::offeringStash(
        actors, std::move(change),
        {.message = MergeTexts::tr("Before merge of %1").arg(shown), .listing = changedThere(ref.fullName)}));
}

void rebaseOnto(Actors actors, const GitRef& ref)
{
    const auto& current = actors.snapshot.status.value().branch;
    const QString branch = current ? shownText(*current) : u"HEAD"_s;
    const QString shown = shownText(ref.name);
    Change change{.verb = Verb::rebase,
                  .title = MergeTexts::tr("Rebasing %1 onto %2…").arg(branch, shown),
                  .operation = [name = ref.fullName](const GitRepository& repo) { gitkit::rebaseOnto(repo, name); },
                  .undo = undoable::rebase(ref.fullName, branch, shown)};
    actors.changes.run(waysOn::offeringStash(
        actors, waysOn::tellingUpToDate(actors.window, std::move(change)),
        {.message = MergeTexts::tr("Before rebase onto %1").arg(shown), .listing = changedThere(ref.fullName)}));
}

void fastForward(Actors actors, const std::string& branch, const std::string& to)
{
    actors.changes.run(movingOn(Verb::fastForward, branch, to));
}

void moveBranch(Actors actors, const GitRef& branch, const std::string& target)
{
    launch(movingAfterCheck(actors, branch, target));
}

void pullOther(Actors actors, const std::string& branch)
{
    Change change = movingOn(Verb::pullOther, branch);
    change.title = MergeTexts::tr("Pulling %1…").arg(inQuotes(branch));
    change.prepare = [branch](const GitRepository& repo) { gitkit::fetchUpstreamOf(repo, branch); };
    actors.changes.run(std::move(change));
}

} // namespace plovik::actions
