// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/store/actions/Pushes.h"

#include "GitKit/records/Commit.h"
#include "GitKit/records/UndoStep.h"
#include "GitKit/repository/GitRepository.h"
#include "GitKit/repository/Pushing.h"
#include "app/store/Changes.h"
#include "app/store/SheetKind.h"
#include "app/store/ShownText.h"
#include "app/store/Snapshot.h"
#include "app/store/Undoables.h"
#include "app/store/WindowState.h"
#include "app/store/actions/BranchSettings.h"
#include "app/store/actions/Remotes.h"

#include <QCoreApplication>

#include <algorithm>
#include <memory>
#include <optional>
#include <string_view>
#include <utility>

using namespace Qt::StringLiterals;

namespace plovik::actions {

using gitkit::GitRef;
using gitkit::GitRepository;
using gitkit::PushPreview;
using gitkit::RemoteBranch;

namespace {

struct PushTexts {
    Q_DECLARE_TR_FUNCTIONS(plovik::Pushes)
};

constexpr std::size_t mostNamed = 5;

QString shownName(const RemoteBranch& branch) { return shownText(branch.remote + '/' + branch.branch); }

/// Returns “subject” by whom, one a line, and how many there are besides.
QString foreignLines(const PushPreview& preview)
{
    QStringList lines;
    for (const gitkit::ForeignCommit& commit : preview.foreign) {
        if (lines.size() < static_cast<qsizetype>(mostNamed))
            lines += PushTexts::tr("%1 by %2", "subject of a commit, person")
                         .arg(inQuotes(commit.subject), shownText(commit.author));
    }
    if (const int others = preview.missed - static_cast<int>(lines.size()); others > 0)
        lines += PushTexts::tr("and %Ln other(s)", nullptr, others);
    return lines.join(u'\n');
}

/// What is known after a remote was asked.
struct Look {
    RemoteBranch to;
    PushPreview preview;
};

void showReplacing(Actors actors, const std::string& branch, const Look& look)
{
    actors.window.showSheet(PushSheet{.branch = branch, .to = look.to, .seen = look.preview.there, .replaces = true});
}

void followAndPull(Actors actors, const std::string& branch, const RemoteBranch& to)
{
    setUpstream(actors, branch, "refs/remotes/" + to.remote + '/' + to.branch, [actors] { pull(actors); });
}

void askAfterRejection(Actors actors, const std::string& branch, const Look& look)
{
    // The remote has what the branch was before it was rewritten: a pull would bring all of that back.
    if (look.preview.strangers == 0)
        return showReplacing(actors, branch, look);
    Confirmation question;
    question.title =
        PushTexts::tr("%1 has %Ln commit(s) you do not have", nullptr, look.preview.missed).arg(shownName(look.to));
    question.message = PushTexts::tr("Nothing was pushed.");
    question.detail = foreignLines(look.preview);
    question.risk = Confirmation::Risk::none;
    const Way replace{PushTexts::tr("Replace…"), [actors, branch, look] { showReplacing(actors, branch, look); }};
    const gitkit::RepoStatus& now = actors.snapshot.status.value();
    const bool isCurrent = now.branch == branch;
    if (isCurrent && look.preview.isUpstream) {
        question.actionTitle = PushTexts::tr("Pull");
        question.action = [actors] { pull(actors); };
        question.choices = {
            {PushTexts::tr("Rebase and Push"), [actors] { rebaseOnUpstream(actors, [actors] { push(actors); }); }},
            replace};
    } else if (isCurrent && !now.upstream) {
        question.actionTitle = PushTexts::tr("Follow It and Pull");
        question.action = [actors, branch, to = look.to] { followAndPull(actors, branch, to); };
        question.choices = {replace};
    } else {
        question.actionTitle = replace.title;
        question.action = replace.action;
    }
    actors.window.ask(std::move(question));
}

/// Says which branch of the remote was not as it was seen.
QString whatMoved(const gitkit::Push& push, const Look& look)
{
    if (look.preview.there.empty())
        return PushTexts::tr("%1 is not there any more. Nothing was pushed.").arg(shownName(look.to));
    // Where the branch itself is as it was, it is one of those that were to go along.
    const auto other = std::ranges::find_if(push.along, [&look](const gitkit::RewrittenBranch& seen) {
        return std::ranges::find(look.preview.along, seen) == look.preview.along.end();
    });
    const bool isOther = look.preview.there == push.there && other != push.along.end();
    return PushTexts::tr("%1 has moved meanwhile. Nothing was pushed.").arg(shownName(isOther ? other->to : look.to));
}

/// How often a push is tried anew with what the remote has said.
enum class Retry { once, no };

void pushing(Actors actors, const gitkit::Push& push, Retry retry);

void goOnAfterLook(Actors actors, gitkit::Push push, const Look& look, Retry retry)
{
    if (push.replaces || look.preview.there.empty()) {
        actors.window.tell(whatMoved(push, look));
        // What somebody else has pushed meanwhile is not taken away by pressing the same button once more.
        const bool replaces = push.replaces && look.preview.missed > 0 && look.preview.strangers == 0;
        actors.window.showSheet(
            PushSheet{.branch = push.branch, .to = look.to, .seen = look.preview.there, .replaces = replaces});
    } else if (look.preview.missed > 0) {
        askAfterRejection(actors, push.branch, look);
    } else if (retry == Retry::once) { // all of it is here already
        push.to = look.to;
        push.there = look.preview.there;
        pushing(actors, push, Retry::no);
    } else {
        actors.window.report({.message = PushTexts::tr("%1 took nothing.").arg(shownName(look.to))});
    }
}

void look(Actors actors, const gitkit::Push& push, Retry retry)
{
    const auto found = std::make_shared<Look>();
    actors.changes.run({.verb = Verb::fetch,
                        .title = PushTexts::tr("Looking at what the remote has…"),
                        .operation =
                            [push, found](const GitRepository& repo) {
                                found->to = push.to.remote.empty() ? gitkit::pushedTo(repo, push.branch) : push.to;
                                const std::string seen = gitkit::lookAtRemote(repo, found->to);
                                for (const gitkit::RewrittenBranch& other : push.along)
                                    gitkit::lookAtRemote(repo, other.to);
                                found->preview = gitkit::pushPreview(repo, {push.branch, found->to, seen});
                            },
                        .succeeded = [=] { goOnAfterLook(actors, push, *found, retry); }});
}

/// Returns the branches there whose commits a push replaces.
std::vector<std::string> replacedBy(const gitkit::Push& push)
{
    std::vector<std::string> branches;
    if (push.replaces)
        branches.push_back(push.to.branch);
    for (const gitkit::RewrittenBranch& other : push.along)
        branches.push_back(other.to.branch);
    return branches;
}

void pushing(Actors actors, const gitkit::Push& push, Retry retry)
{
    Undoable undo = undoable::push(push.branch, push.to.remote, replacedBy(push));
    undo.pushed = std::make_shared<PushedBranch>(push.branch);
    actors.changes.run({.verb = Verb::push,
                        .title = PushTexts::tr("Pushing…"),
                        .operation = [push, pushed = undo.pushed](
                                         const GitRepository& repo) { pushed->told = gitkit::pushBranch(repo, push); },
                        .undo = std::move(undo),
                        .failed =
                            [=](const Failure& failure) {
                                if (failure.kind != gitkit::ErrorKind::notFastForward)
                                    return false;
                                look(actors, push, retry);
                                return true;
                            }});
}

void deleting(Actors actors, const RemoteBranch& what, const std::string& ref, const std::string& seen,
              const std::function<void()>& then)
{
    actors.changes.run(
        {.verb = Verb::deleteOnRemote,
         .title = PushTexts::tr("Deleting %1 on %2…").arg(inQuotes(what.branch), shownText(what.remote)),
         .operation = [=](const GitRepository& repo) { gitkit::deleteOnRemote(repo, what.remote, ref, seen); },
         .undo = undoable::deleteOnRemote(ref, what.remote),
         .succeeded = then});
}

void askToPushTags(Actors actors, const std::string& remote, const gitkit::TagsBeside& tags)
{
    const QString shown = shownText(remote);
    const auto others = static_cast<int>(tags.different.size());
    const QString different =
        others == 0
            ? QString()
            : PushTexts::tr("%Ln tag(s) of the same name stay there, which are others than here.", nullptr, others);
    if (tags.missing.empty()) {
        actors.window.tell((PushTexts::tr("%1 has all tags.").arg(shown) + u' ' + different).trimmed());
        return;
    }
    const auto count = static_cast<int>(tags.missing.size());
    Confirmation question;
    question.title = PushTexts::tr("Push %Ln tag(s) to %1?", nullptr, count).arg(shown);
    question.message = (PushTexts::tr("Others may fetch them within seconds.") + u' ' + different).trimmed();
    question.detail = namesInLines(tags.missing);
    question.actionTitle = PushTexts::tr("Push");
    question.risk = Confirmation::Risk::none;
    question.action = [actors, remote, missing = tags.missing, count] {
        actors.changes.run(
            {.verb = Verb::pushTag,
             .title = PushTexts::tr("Pushing…"),
             .operation = [remote, missing](const GitRepository& repo) { gitkit::pushTags(repo, remote, missing); },
             .undo = undoable::push(PushTexts::tr("%Ln tag(s)", nullptr, count).toStdString(), remote)});
    };
    actors.window.ask(std::move(question));
}

std::string preferredRemote(const std::vector<std::string>& remotes)
{
    if (remotes.empty())
        return {};
    return std::ranges::find(remotes, "origin") != remotes.end() ? "origin" : remotes.front();
}

} // namespace

void push(Actors actors)
{
    const gitkit::RepoStatus& now = actors.snapshot.status.value();
    if (!now.branch) {
        actors.window.report({.message = PushTexts::tr("Cannot push: HEAD is detached. Check out a branch first.")});
        return;
    }
    std::optional<std::string> upstreamRemote;
    std::string remote = now.upstream.value_or(std::string());
    if (!now.upstream) {
        const std::vector<std::string>& all = actors.snapshot.remotes.value();
        if (all.empty()) {
            actors.window.report({.message = PushTexts::tr("Cannot push: this repository has no remote.")});
            return;
        }
        if (all.size() > 1) {
            askWhereToPush(actors, *now.branch);
            return;
        }
        upstreamRemote = all.front();
        remote = *upstreamRemote;
    }
    Undoable undo = undoable::push(*now.branch, remote);
    undo.pushed = std::make_shared<PushedBranch>(*now.branch);
    actors.changes.run(
        {.verb = Verb::push,
         .title = PushTexts::tr("Pushing…"),
         .operation = [branch = *now.branch, upstreamRemote, pushed = undo.pushed](
                          const GitRepository& repo) { pushed->told = repo.push(branch, upstreamRemote); },
         .undo = std::move(undo),
         .failed =
             [actors, branch = *now.branch, upstreamRemote](const Failure& failure) {
                 if (failure.kind != gitkit::ErrorKind::notFastForward)
                     return false;
                 look(actors,
                      {.branch = branch,
                       .to = {upstreamRemote.value_or(std::string()), branch},
                       .setsUpstream = upstreamRemote.has_value()},
                      Retry::once);
                 return true;
             }});
}

void askWhereToPush(Actors actors, const std::string& branch)
{
    const std::vector<std::string>& remotes = actors.snapshot.remotes.value();
    const std::vector<GitRef>& branches = actors.snapshot.branches.value();
    const auto found = std::ranges::find(branches, branch, &GitRef::name);
    RemoteBranch to;
    if (found != branches.end() && found->upstream)
        to = gitkit::remoteBranchOf(*found->upstream, remotes);
    if (to.remote.empty())
        to = {preferredRemote(remotes), branch};
    actors.window.showSheet(PushSheet{.branch = branch, .to = to});
}

void askToReplace(Actors actors, const gitkit::RewrittenBranch& branch)
{
    actors.window.showSheet(PushSheet{.branch = branch.branch, .to = branch.to, .replaces = true});
}

void pushBranch(Actors actors, const gitkit::Push& push) { pushing(actors, push, Retry::once); }

void renameOnRemote(Actors actors, const std::string& branch, const RemoteBranch& old, const std::string& hash)
{
    const gitkit::Push push{.branch = branch, .to = {old.remote, branch}, .setsUpstream = true};
    actors.changes.run({.verb = Verb::push,
                        .title = PushTexts::tr("Renaming %1 on %2…").arg(inQuotes(old.branch), shownText(old.remote)),
                        .operation =
                            [=](const GitRepository& repo) {
                                gitkit::pushBranch(repo, push);
                                gitkit::deleteOnRemote(repo, old.remote, "refs/heads/" + old.branch, hash);
                            },
                        .undo = undoable::push(branch, old.remote)});
}

void pushTag(Actors actors, const std::string& tag, const std::string& remote)
{
    actors.changes.run({.verb = Verb::pushTag,
                        .title = PushTexts::tr("Pushing…"),
                        .operation = [tag, remote](const GitRepository& repo) { gitkit::pushTag(repo, remote, tag); },
                        .undo = undoable::push(tag, remote),
                        .succeeded =
                            [&window = actors.window, tag, remote] {
                                window.tell(PushTexts::tr("%1 is on %2 now.").arg(inQuotes(tag), shownText(remote)));
                            }});
}

void confirmPushTags(Actors actors, const std::string& remote)
{
    const auto found = std::make_shared<gitkit::TagsBeside>();
    actors.changes.run(
        {.verb = Verb::fetch,
         .title = PushTexts::tr("Looking at what the remote has…"),
         .operation = [remote, found](const GitRepository& repo) { *found = gitkit::tagsBeside(repo, remote); },
         .succeeded = [actors, remote, found] { askToPushTags(actors, remote, *found); }});
}

std::string usualRemote(const Snapshot& now)
{
    const std::vector<std::string>& remotes = now.remotes.value();
    const gitkit::RemoteBranch upstream =
        gitkit::remoteBranchOf(now.status.value().upstream.value_or(std::string()), remotes);
    return upstream.remote.empty() ? preferredRemote(remotes) : upstream.remote;
}

std::vector<gitkit::LostThere> lostByPush(const Snapshot& now, const gitkit::UndoStep& step)
{
    constexpr std::string_view prefix = "refs/remotes/";
    std::vector<gitkit::LostThere> lost;
    if (!gitkit::isPublished(step) || !step.after)
        return lost;
    for (const gitkit::RefUpdate& ref : step.refs) {
        if (!ref.name.starts_with(prefix) || !ref.from)
            continue;
        const RemoteBranch branch = gitkit::remoteBranchOf(ref.name.substr(prefix.size()), now.remotes.value());
        if (!branch.remote.empty())
            lost.push_back({branch, *ref.from, ref.to.value_or(std::string())});
    }
    return lost;
}

void confirmPushBack(Actors actors, const std::vector<gitkit::LostThere>& lost)
{
    const gitkit::LostThere& first = lost.front();
    const QString had = shownText(gitkit::shortHash(first.had));
    QStringList names;
    std::vector<std::string> replaced;
    for (const gitkit::LostThere& each : lost) {
        names += inQuotes(each.branch.branch);
        if (!each.left.empty())
            replaced.push_back(each.branch.branch);
    }
    Confirmation question;
    question.title =
        PushTexts::tr("Push %1 back to %2?", "branch, remote").arg(names.join(u", "_s), shownText(first.branch.remote));
    if (lost.size() > 1)
        question.message = PushTexts::tr("The branches there go back to what they had, if they are still as they were "
                                         "left. What was pushed instead goes away there.");
    else if (first.left.empty())
        question.message =
            PushTexts::tr("The branch is made there again at %1, unless somebody else has made it meanwhile.").arg(had);
    else
        question.message = PushTexts::tr("The branch there goes back to %1, if it is still as it was left. What was "
                                         "pushed instead goes away there.")
                               .arg(had);
    question.actionTitle = PushTexts::tr("Push Back");
    question.action = [actors, lost, replaced] {
        actors.changes.run({.verb = Verb::push,
                            .title = PushTexts::tr("Pushing…"),
                            .operation = [lost](const GitRepository& repo) { gitkit::pushBack(repo, lost); },
                            .undo = undoable::push(lost.front().branch.branch, lost.front().branch.remote, replaced)});
    };
    actors.window.ask(std::move(question));
}

void confirmDeleteOnRemote(Actors actors, const GitRef& ref, const std::string& remote)
{
    const bool isTag = ref.kind == GitRef::Kind::tag;
    const std::string name = isTag ? ref.name : ref.name.substr(std::min(remote.size() + 1, ref.name.size()));
    const std::string there = (isTag ? "refs/tags/" : "refs/heads/") + name;
    Confirmation question;
    question.title = PushTexts::tr("Delete %1 on %2?").arg(inQuotes(name), shownText(remote));
    question.message =
        PushTexts::tr("It goes for everybody, and Undo cannot bring it back. It is deleted only if it is "
                      "still as it is shown here.");
    question.actionTitle = PushTexts::tr("Delete");
    question.action = [actors, remote, name, there, seen = ref.hash] {
        deleting(actors, {remote, name}, there, seen, {});
    };
    actors.window.ask(std::move(question));
}

void deleteOnRemote(Actors actors, const RemoteBranch& to, const std::string& hash, const std::function<void()>& then)
{
    deleting(actors, to, "refs/heads/" + to.branch, hash, then);
}

} // namespace plovik::actions
