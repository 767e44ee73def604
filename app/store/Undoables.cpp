// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/store/Undoables.h"

#include "GitKit/Text.h"
#include "GitKit/repository/Commits.h"
#include "GitKit/repository/GitRepository.h"
#include "GitKit/repository/Ignoring.h"
#include "GitKit/repository/InTheWay.h"
#include "GitKit/repository/Picking.h"
#include "GitKit/repository/Resolving.h"
#include "GitKit/repository/Upstream.h"
#include "GitKit/rewrite/MovableReading.h"
#include "GitKit/rewrite/Rewriting.h"
#include "GitKit/undo/PartialStash.h"
#include "GitKit/undo/Reset.h"
#include "app/store/ShownText.h"
#include "app/store/actions/OperationWords.h"

#include <QCoreApplication>

#include <algorithm>
#include <utility>

namespace plovik::undoable {

using gitkit::GitRepository;
using gitkit::UndoScope;

namespace {

struct UndoTexts {
    Q_DECLARE_TR_FUNCTIONS(plovik::Undo)
};

/// Returns the abbreviated hash, or how many commits they are.
QString shownPick(const gitkit::Pick& pick)
{
    return pick.commits.size() == 1 ? shownText(gitkit::shortHash(pick.commits.front()))
                                    : UndoTexts::tr("%Ln commit(s)", nullptr, static_cast<int>(pick.commits.size()));
}

QString subjectOf(const std::string& message) { return inQuotes(message.substr(0, message.find('\n'))); }

/// Returns the tree of a commit or of what leads to one; empty when it leads to none.
std::string treeOf(const GitRepository& repo, const std::string& ref)
{
    const gitkit::GitOutput tree = repo.runner().output({"rev-parse", "--verify", "--quiet", ref + "^{tree}"});
    return tree.status == 0 ? std::string(gitkit::withoutLineEnd(tree.stdoutBytes)) : std::string();
}

/// The scope of what moves the working tree from one commit to another.
UndoScope moving(const char* kind) { return {.kind = kind, .movesFiles = true, .movesIndex = true}; }

/// Notes where the files will go, for the case that git is stopped half-way.
auto goingTo(const std::string& ref)
{
    return [ref](const GitRepository& repo, UndoScope& scope) { scope.target = treeOf(repo, ref); };
}

void addChangedFiles(const GitRepository& repo, UndoScope& scope) { scope.overwrites = gitkit::changedFiles(repo); }

void addPaths(const gitkit::FileChange& file, std::vector<std::string>& paths)
{
    for (std::string& path : file.allPaths()) {
        if (std::ranges::find(paths, path) == paths.end())
            paths.push_back(std::move(path));
    }
}

/// Adds the files that a stash takes.
void addStashed(const GitRepository& repo, UndoScope& scope, gitkit::UntrackedFiles untracked)
{
    for (std::string& path : gitkit::changedFiles(repo))
        scope.overwrites.push_back(std::move(path));
    for (const gitkit::FileChange& file : repo.status().files) {
        const bool isStaged = file.hasStaged() && !file.isSubmodule;
        if (isStaged || (file.isUntracked() && untracked == gitkit::UntrackedFiles::include))
            addPaths(file, scope.overwrites);
    }
}

std::vector<std::string> listed(const GitRepository& repo, const std::vector<std::string>& command)
{
    const gitkit::GitOutput names = repo.runner().output(command);
    return names.status == 0 ? gitkit::splitNul(names.stdoutBytes) : std::vector<std::string>();
}

/// Adds the branches that stand on the commits of a plan and move along.
void addAlong(const GitRepository& repo, const gitkit::RewritePlan& plan, UndoScope& scope)
{
    for (const auto& other : gitkit::movableCommits(repo, gitkit::placeOf(plan)).branches) {
        if (other.heldBy.empty())
            scope.refs.push_back(other.name);
    }
}

/// Returns “a.txt”, or “a.txt” and the number of the others.
QString namesOf(const Files& files)
{
    return files.empty() ? UndoTexts::tr("nothing") : namesOfFiles(files.front().path, files.size());
}

} // namespace

Undoable commit(const std::string& message)
{
    return {.title = UndoTexts::tr("Commit %1").arg(subjectOf(message)),
            .done = UndoTexts::tr("Committed %1.").arg(subjectOf(message)),
            .scope = {.kind = "commit", .message = message}};
}

Undoable amend(const std::string& message)
{
    return {.title = UndoTexts::tr("Amend of %1").arg(subjectOf(message)),
            .done = UndoTexts::tr("Amended %1.").arg(subjectOf(message)),
            .scope = {.kind = "amend", .message = message}};
}

Undoable checkout(const std::string& ref, const QString& shown, const std::optional<std::string>& made)
{
    Undoable undo{.title = UndoTexts::tr("Checkout of %1").arg(shown),
                  .done = UndoTexts::tr("Checked out %1.").arg(shown),
                  .scope = moving("checkout"),
                  .complete = goingTo(ref),
                  .inTheWay = [ref](const GitRepository& repo) { return gitkit::inTheWayOfCheckout(repo, ref); }};
    if (made) {
        undo.scope.refs = {"refs/heads/" + *made};
        undo.scope.touchesSettings = true;
    }
    return undo;
}

Undoable createBranch(const std::string& name, const std::optional<std::string>& startPoint,
                      gitkit::AfterCreating after)
{
    Undoable undo{.title = UndoTexts::tr("New Branch %1").arg(inQuotes(name)),
                  .done = UndoTexts::tr("Made branch %1.").arg(inQuotes(name)),
                  .scope = {.kind = "branch"}};
    if (after == gitkit::AfterCreating::checkOut) {
        const std::string ref = startPoint.value_or("HEAD");
        undo.scope = moving("branch");
        undo.complete = goingTo(ref);
        undo.inTheWay = [ref](const GitRepository& repo) { return gitkit::inTheWayOfCheckout(repo, ref); };
    }
    undo.scope.refs = {"refs/heads/" + name};
    undo.scope.touchesSettings = true;
    return undo;
}

Undoable checkOutRequest(const std::string& name, const std::function<std::string()>& commit)
{
    Undoable undo = createBranch(name, std::nullopt, gitkit::AfterCreating::checkOut);
    undo.complete = [commit](const GitRepository& repo, UndoScope& scope) { scope.target = treeOf(repo, commit()); };
    undo.inTheWay = [commit](const GitRepository& repo) { return gitkit::inTheWayOfCheckout(repo, commit()); };
    return undo;
}

Undoable deleteBranch(const std::string& name)
{
    return {.title = UndoTexts::tr("Deletion of Branch %1").arg(inQuotes(name)),
            .done = UndoTexts::tr("Deleted branch %1.").arg(inQuotes(name)),
            .scope = {.kind = "delete-branch", .refs = {"refs/heads/" + name}, .touchesSettings = true}};
}

Undoable renameBranch(const std::string& name, const std::string& newName)
{
    return {.title = UndoTexts::tr("Rename of %1 to %2").arg(inQuotes(name), inQuotes(newName)),
            .done = UndoTexts::tr("Renamed %1 to %2.").arg(inQuotes(name), inQuotes(newName)),
            .scope = {.kind = "rename-branch",
                      .refs = {"refs/heads/" + name, "refs/heads/" + newName},
                      .touchesSettings = true}};
}

Undoable setUpstream(const std::string& branch)
{
    return {.title = UndoTexts::tr("New Upstream of %1").arg(inQuotes(branch)),
            .done = UndoTexts::tr("Changed the upstream of %1.").arg(inQuotes(branch)),
            .scope = {.kind = "upstream", .touchesSettings = true}};
}

Undoable addRemote(const std::string& remote)
{
    return {.title = UndoTexts::tr("New Remote %1").arg(inQuotes(remote)),
            .done = UndoTexts::tr("Added remote %1.").arg(inQuotes(remote)),
            .scope = {.kind = "add-remote", .refFolders = {"refs/remotes/" + remote}, .touchesSettings = true}};
}

Undoable changeRemote(const std::string& remote, const std::string& newName)
{
    Undoable undo{.title = UndoTexts::tr("Change of Remote %1").arg(inQuotes(remote)),
                  .done = UndoTexts::tr("Changed remote %1.").arg(inQuotes(remote)),
                  .scope = {.kind = "remote", .touchesSettings = true}};
    if (newName == remote)
        return undo;
    undo.title = UndoTexts::tr("Rename of Remote %1 to %2").arg(inQuotes(remote), inQuotes(newName));
    undo.done = UndoTexts::tr("Renamed remote %1 to %2.").arg(inQuotes(remote), inQuotes(newName));
    undo.scope.refFolders = {"refs/remotes/" + remote, "refs/remotes/" + newName};
    return undo;
}

Undoable removeRemote(const std::string& remote)
{
    return {.title = UndoTexts::tr("Removal of Remote %1").arg(inQuotes(remote)),
            .done = UndoTexts::tr("Removed remote %1.").arg(inQuotes(remote)),
            .scope = {.kind = "remove-remote", .refFolders = {"refs/remotes/" + remote}, .touchesSettings = true}};
}

Undoable createTag(const std::string& name)
{
    return {.title = UndoTexts::tr("New Tag %1").arg(inQuotes(name)),
            .done = UndoTexts::tr("Made tag %1.").arg(inQuotes(name)),
            .scope = {.kind = "tag", .refs = {"refs/tags/" + name}}};
}

Undoable deleteTag(const std::string& name)
{
    return {.title = UndoTexts::tr("Deletion of Tag %1").arg(inQuotes(name)),
            .done = UndoTexts::tr("Deleted tag %1.").arg(inQuotes(name)),
            .scope = {.kind = "delete-tag", .refs = {"refs/tags/" + name}}};
}

Undoable merge(const std::string& ref, const QString& shown)
{
    return {.title = UndoTexts::tr("Merge of %1").arg(shown),
            .done = UndoTexts::tr("Merged %1.").arg(shown),
            .scope = moving("merge"),
            .complete = goingTo(ref),
            .inTheWay = [ref](const GitRepository& repo) { return gitkit::inTheWayOfMerge(repo, ref); }};
}

Undoable squash(const std::string& ref, const QString& shown)
{
    Undoable undo = merge(ref, shown);
    undo.title = UndoTexts::tr("Squash of %1").arg(shown);
    undo.done = UndoTexts::tr("Squashed %1. Commit to finish.").arg(shown);
    undo.complete = {}; // what comes is none of the trees that there are
    return undo;
}

Undoable rebase(const std::string& ref, const QString& branch, const QString& shown)
{
    Undoable undo{.title = UndoTexts::tr("Rebase of %1 onto %2").arg(branch, shown),
                  .done = UndoTexts::tr("Rebased %1 onto %2.").arg(branch, shown),
                  .scope = moving("rebase"),
                  .inTheWay = [ref](const GitRepository& repo) { return gitkit::inTheWayOfCheckout(repo, ref); }};
    undo.scope.movesAnyRef = true;
    undo.scope.touchesStashes = true; // rebase.autoStash
    undo.scope.changesMore = true;
    undo.complete = addChangedFiles;
    return undo;
}

Undoable rewrite(const gitkit::RewritePlan& plan, const QString& branch,
                 const std::function<gitkit::RewriteOutcome()>& outcome)
{
    Undoable undo{.title = UndoTexts::tr("Rewrite of %1").arg(branch),
                  .done = UndoTexts::tr("Rewrote %1.").arg(branch),
                  .scope = moving("rewrite")};
    if (plan.isElsewhere)
        undo.scope = {.kind = "rewrite", .refs = {plan.branch}};
    undo.complete = [plan, outcome](const GitRepository& repo, UndoScope& scope) {
        if (!plan.isElsewhere)
            scope.target = outcome().tree;
        addAlong(repo, plan, scope);
    };
    if (plan.isElsewhere)
        return undo;
    undo.inTheWay = [plan, outcome](const GitRepository& repo) {
        const std::string before = treeOf(repo, plan.tip());
        const std::string after = outcome().tree;
        return before.empty() || after.empty() || before == after ? gitkit::InTheWay()
                                                                  : gitkit::inTheWay(repo, before, after);
    };
    return undo;
}

Undoable rewriteByGit(const gitkit::RewritePlan& plan, const QString& branch)
{
    const gitkit::Hashes affected = gitkit::affectedCommits(plan);
    const std::size_t first = plan.commits.size() - affected.size();
    const std::string base = first == 0 ? plan.base : plan.commits[first - 1];
    Undoable undo = rebase(base, branch, {});
    undo.title = UndoTexts::tr("Rewrite of %1").arg(branch);
    undo.done = UndoTexts::tr("Rewrote %1.").arg(branch);
    undo.scope.kind = "rewrite";
    if (base.empty())
        undo.inTheWay = {};
    return undo;
}

Undoable absorb(int changes, int commits, const gitkit::RewritePlan& plan)
{
    return {.title = UndoTexts::tr("Absorbing of %Ln change(s)", nullptr, changes),
            .done = UndoTexts::tr("Put %1 into %2.")
                        .arg(UndoTexts::tr("%Ln staged change(s)", nullptr, changes),
                             UndoTexts::tr("%Ln commit(s)", nullptr, commits)),
            .scope = {.kind = "absorb"},
            .complete = [plan](const GitRepository& repo, UndoScope& scope) { addAlong(repo, plan, scope); }};
}

Undoable commitInto(const std::string& subject, const gitkit::RewritePlan& plan)
{
    return {.title = UndoTexts::tr("Commit into %1").arg(subjectOf(subject)),
            .done = UndoTexts::tr("Committed into %1.").arg(subjectOf(subject)),
            .scope = {.kind = "commit-into"},
            .complete = [plan](const GitRepository& repo, UndoScope& scope) { addAlong(repo, plan, scope); }};
}

Undoable fastForward(const std::string& branch, const QString& to)
{
    return {.title = UndoTexts::tr("Fast-Forward of %1").arg(inQuotes(branch)),
            .done = to.isEmpty() ? UndoTexts::tr("Moved %1 on to its upstream.").arg(inQuotes(branch))
                                 : UndoTexts::tr("Moved %1 on to %2.").arg(inQuotes(branch), inQuotes(to)),
            .scope = {.kind = "fast-forward", .refs = {"refs/heads/" + branch}}};
}

Undoable moveBranch(const std::string& branch, const std::string& target)
{
    return {.title = UndoTexts::tr("Move of %1").arg(inQuotes(branch)),
            .done = UndoTexts::tr("Moved %1 to %2.").arg(inQuotes(branch), shownText(gitkit::shortHash(target))),
            .scope = {.kind = "move-branch", .refs = {"refs/heads/" + branch}}};
}

Undoable cherryPick(const gitkit::Pick& pick)
{
    const QString shown = shownPick(pick);
    return {.title = UndoTexts::tr("Cherry-Pick of %1").arg(shown),
            .done = UndoTexts::tr("Cherry-picked %1.").arg(shown),
            .scope = moving("cherry-pick"),
            .inTheWay = [pick](const GitRepository& repo) { return gitkit::inTheWayOfPick(repo, pick); }};
}

Undoable revert(const gitkit::Pick& pick)
{
    const QString shown = shownPick(pick);
    return {.title = UndoTexts::tr("Revert of %1").arg(shown),
            .done = UndoTexts::tr("Reverted %1.").arg(shown),
            .scope = moving("revert"),
            .inTheWay = [pick](const GitRepository& repo) { return gitkit::inTheWayOfRevert(repo, pick); }};
}

Undoable takeApart(const QString& commit)
{
    return {.title = UndoTexts::tr("Taking Apart of %1").arg(commit),
            .done = UndoTexts::tr("Took %1 apart. Its changes are in the files.").arg(commit),
            .scope = {.kind = "reset", .movesIndex = true}};
}

Undoable reset(gitkit::ResetKind kind, const std::string& target, const QString& branch)
{
    using enum gitkit::ResetKind;
    Undoable undo{.title = UndoTexts::tr("Reset of %1").arg(branch),
                  .done = UndoTexts::tr("Reset %1 to %2.").arg(branch, shownText(gitkit::shortHash(target))),
                  .scope = {.kind = "reset", .movesIndex = kind == mixed}};
    if (kind == soft || kind == mixed)
        return undo;
    undo.scope = moving("reset");
    undo.inTheWay = [=](const GitRepository& repo) { return gitkit::inTheWayOfReset(repo, kind, target); };
    undo.complete = [=](const GitRepository& repo, UndoScope& scope) {
        scope.target = treeOf(repo, target);
        scope.overwrites = gitkit::takenByReset(repo, kind);
    };
    undo.takesWork = kind == hard;
    return undo;
}

Undoable pull(gitkit::PullBy how, const std::function<std::optional<std::string>()>& fetched)
{
    Undoable undo{.title = UndoTexts::tr("Pull"), .done = UndoTexts::tr("Pulled."), .scope = moving("pull")};
    undo.scope.movesAnyRef = true;
    undo.complete = [fetched](const GitRepository& repo, UndoScope& scope) {
        if (const std::optional<std::string> ref = fetched())
            scope.target = treeOf(repo, *ref);
    };
    undo.inTheWay = [how, fetched](const GitRepository& repo) {
        const std::optional<std::string> ref = fetched();
        if (!ref)
            return gitkit::InTheWay();
        // A rebase checks out what was fetched before it replays anything.
        return gitkit::rebases(repo, how) ? gitkit::inTheWayOfCheckout(repo, *ref)
                                          : gitkit::inTheWayOfMerge(repo, *ref);
    };
    return undo;
}

Undoable push(const std::string& branch, const std::string& remote, const std::vector<std::string>& lost)
{
    Undoable undo{.title = UndoTexts::tr("Push to %1").arg(shownText(remote)),
                  .done = UndoTexts::tr("Pushed %1 to %2.").arg(shownText(branch), shownText(remote)),
                  .scope = {.kind = "push"}};
    // What the remote had is kept, so that it can be pushed back.
    for (const std::string& there : lost)
        undo.scope.refs.push_back("refs/remotes/" + remote + '/' + there);
    return undo;
}

Undoable deleteOnRemote(const std::string& ref, const std::string& remote)
{
    constexpr std::string_view heads = "refs/heads/";
    const std::string name = ref.substr(ref.find('/', ref.find('/') + 1) + 1);
    Undoable undo{.title = UndoTexts::tr("Deletion of %1 on %2").arg(inQuotes(name), shownText(remote)),
                  .done = UndoTexts::tr("Deleted %1 on %2.").arg(inQuotes(name), shownText(remote)),
                  .scope = {.kind = "push"}};
    if (ref.starts_with(heads))
        undo.scope.refs = {"refs/remotes/" + remote + '/' + name};
    return undo;
}

Undoable saveStash(const std::string& message, gitkit::UntrackedFiles untracked)
{
    const QString shown = message.empty() ? UndoTexts::tr("Stash") : UndoTexts::tr("Stash %1").arg(subjectOf(message));
    return {
        .title = shown,
        .done = UndoTexts::tr("Stashed the changes."),
        .scope = {.kind = "stash", .movesIndex = true, .touchesStashes = true},
        .complete = [untracked](const GitRepository& repo, UndoScope& scope) { addStashed(repo, scope, untracked); }};
}

Undoable stashFiles(const std::string& message, const std::vector<gitkit::FileChange>& files)
{
    Undoable undo = saveStash(message, gitkit::UntrackedFiles::leave);
    undo.complete = [files](const GitRepository&, UndoScope& scope) { scope.overwrites = gitkit::pathsToStash(files); };
    return undo;
}

Undoable stashStaged(const std::string& message)
{
    Undoable undo = saveStash(message, gitkit::UntrackedFiles::leave);
    undo.complete = [](const GitRepository& repo, UndoScope& scope) { scope.overwrites = gitkit::stagedPaths(repo); };
    return undo;
}

Undoable branchFromStash(const std::string& name, const gitkit::Stash& stash)
{
    const std::string start = stash.hash + "^1";
    Undoable undo = applyStash(stash, gitkit::StashUse::pop);
    undo.title = UndoTexts::tr("New Branch %1").arg(inQuotes(name));
    undo.done = UndoTexts::tr("Popped %1 on branch %2.").arg(inQuotes(stash.message), inQuotes(name));
    undo.scope.kind = "branch";
    undo.scope.refs = {"refs/heads/" + name};
    undo.inTheWay = [start, hash = stash.hash](const GitRepository& repo) {
        gitkit::InTheWay found = gitkit::inTheWayOfCheckout(repo, start);
        gitkit::InTheWay more = gitkit::inTheWayOfStash(repo, hash);
        found.untracked.insert(found.untracked.end(), more.untracked.begin(), more.untracked.end());
        found.ignored.insert(found.ignored.end(), more.ignored.begin(), more.ignored.end());
        return found;
    };
    return undo;
}

Undoable applyStash(const gitkit::Stash& stash, gitkit::StashUse use)
{
    const bool pops = use == gitkit::StashUse::pop;
    return {.title = (pops ? UndoTexts::tr("Pop of %1") : UndoTexts::tr("Applying %1")).arg(inQuotes(stash.message)),
            .done = (pops ? UndoTexts::tr("Popped %1.") : UndoTexts::tr("Applied %1.")).arg(inQuotes(stash.message)),
            .scope = {.kind = pops ? "pop-stash" : "apply-stash",
                      .movesFiles = true,
                      .movesIndex = true,
                      .changesMore = true,
                      .touchesStashes = pops},
            .complete =
                [hash = stash.hash](const GitRepository& repo, UndoScope& scope) {
                    scope.overwrites =
                        listed(repo, {"diff-tree", "-r", "-z", "--no-renames", "--name-only", hash + "^1", hash, "--"});
                    for (std::string& path : listed(repo, {"ls-tree", "-r", "-z", "--name-only", hash + "^3"}))
                        scope.overwrites.push_back(std::move(path));
                },
            .inTheWay = [hash = stash.hash](const GitRepository& repo) { return gitkit::inTheWayOfStash(repo, hash); }};
}

Undoable betweenStashes(Undoable action)
{
    action.scope.movesFiles = true;
    action.scope.movesIndex = true;
    action.scope.changesMore = true;
    action.scope.touchesStashes = true;
    action.complete = [complete = std::move(action.complete)](const GitRepository& repo, UndoScope& scope) {
        if (complete)
            complete(repo, scope);
        addStashed(repo, scope, gitkit::UntrackedFiles::leave);
    };
    return action;
}

Undoable dropStash(const gitkit::Stash& stash)
{
    return {.title = UndoTexts::tr("Drop of %1").arg(inQuotes(stash.message)),
            .done = UndoTexts::tr("Dropped %1.").arg(inQuotes(stash.message)),
            .scope = {.kind = "drop-stash", .touchesStashes = true}};
}

Undoable operation(gitkit::OperationInProgress::Kind kind, gitkit::OperationStep step)
{
    Undoable undo{.title = operationWords::stepTitle(kind, step),
                  .done = operationWords::stepDone(kind, step),
                  .scope = moving("operation"),
                  .complete = addChangedFiles};
    undo.scope.changesMore = true;
    undo.scope.movesAnyRef = true;
    undo.scope.touchesStashes = true;
    return undo;
}

Undoable markBisect()
{
    Undoable undo{.title = UndoTexts::tr("Mark of a Commit"), .done = {}, .scope = moving("operation")};
    undo.complete = addChangedFiles;
    undo.scope.movesAnyRef = true;
    return undo;
}

Undoable ownCommand(const QString& title)
{
    const QString shown = inQuotes(title.toStdString());
    return {.title = UndoTexts::tr("Run of %1").arg(shown),
            .done = UndoTexts::tr("Ran %1. Undo covers refs, stashes and files that git knows.").arg(shown),
            .scope = {.kind = "own-command",
                      .movesFiles = true,
                      .movesIndex = true,
                      .changesMore = true,
                      .refs = {"refs/tags"}, // all of them
                      .movesAnyRef = true,
                      .touchesStashes = true,
                      .touchesSettings = true},
            .complete = addChangedFiles};
}

Undoable stage(const Files& files)
{
    return {.title = UndoTexts::tr("Staging of %1").arg(namesOf(files)),
            .done = {},
            .scope = {.kind = "stage", .movesIndex = true}};
}

Undoable unstage(const Files& files)
{
    return {.title = UndoTexts::tr("Unstaging of %1").arg(namesOf(files)),
            .done = {},
            .scope = {.kind = "unstage", .movesIndex = true}};
}

Undoable takeFile(const std::string& revision, const std::string& path)
{
    const QString commit = shownText(gitkit::shortHash(revision));
    return {.title = UndoTexts::tr("Taking %1 from %2", "file, commit").arg(inQuotes(path), commit),
            .done = UndoTexts::tr("Took %1 from %2.", "file, commit").arg(inQuotes(path), commit),
            .scope = {.kind = "take-file", .overwrites = {path}},
            .inTheWay = [path](const GitRepository& repo) { return gitkit::inTheWayOf(repo, {path}); },
            .takesWork = true};
}

Undoable takeSide(const std::vector<std::string>& paths)
{
    Files files;
    for (const std::string& path : paths)
        files.emplace_back().path = path;
    return {.title = UndoTexts::tr("Resolving %1").arg(namesOf(files)),
            .done = UndoTexts::tr("Resolved %1.").arg(namesOf(files)),
            .scope = {.kind = "take-side", .movesIndex = true, .overwrites = paths}};
}

Undoable answer(const std::vector<gitkit::Conflict>& conflicts, gitkit::ConflictAnswer answer, const std::string& label)
{
    std::vector<std::string> named;
    std::vector<std::string> folders;
    std::vector<std::string> paths;
    for (const gitkit::Conflict& conflict : conflicts) {
        named.push_back(conflict.path);
        for (std::string& path : gitkit::pathsOfAnswer(conflict, answer, label))
            paths.push_back(std::move(path));
        using Answer = gitkit::ConflictAnswer;
        if (conflict.kind == gitkit::ConflictKind::folderAndFile &&
            answer == (conflict.left ? Answer::left : Answer::right))
            folders.push_back(conflict.left ? conflict.left->path : conflict.right->path);
    }
    Undoable undo = takeSide(named);
    undo.scope.overwrites = std::move(paths);
    undo.takesWork = true;
    // A folder that makes room for a file.
    undo.complete = [folders](const GitRepository& repo, UndoScope& scope) {
        for (const std::string& folder : folders) {
            for (std::string& path : listed(repo, {"ls-files", "-z", "--", ":(literal)" + folder}))
                scope.overwrites.push_back(std::move(path));
        }
    };
    return undo;
}

Undoable applyPatch(const QString& name, const std::vector<std::string>& paths, gitkit::PatchWay way)
{
    return {.title = UndoTexts::tr("Applying of %1", "file").arg(inQuotes(name)),
            .done = UndoTexts::tr("Applied %1.", "file").arg(inQuotes(name)),
            .scope = {.kind = "apply-patch", .movesIndex = way == gitkit::PatchWay::threeWay, .overwrites = paths},
            .takesWork = true};
}

Undoable applyMails(const QString& name)
{
    Undoable undo{.title = UndoTexts::tr("Applying of %1", "file").arg(inQuotes(name)),
                  .done = UndoTexts::tr("Applied the commits of %1.", "file").arg(inQuotes(name)),
                  .scope = moving("apply-mails"),
                  .complete = addChangedFiles};
    undo.scope.changesMore = true;
    return undo;
}

Undoable ignore(const gitkit::IgnoreRequest& request)
{
    const QString patterns = request.patterns.size() == 1
                                 ? inQuotes(request.patterns.front())
                                 : UndoTexts::tr("%Ln pattern(s)", nullptr, static_cast<int>(request.patterns.size()));
    Undoable undo{.title = UndoTexts::tr("Ignoring of %1").arg(patterns),
                  .done = request.place == gitkit::IgnorePlace::own
                              ? UndoTexts::tr("Ignored %1 in your own list.").arg(patterns)
                              : UndoTexts::tr("Ignored %1 in .gitignore.").arg(patterns),
                  .scope = {.kind = "ignore", .movesIndex = request.stopsTracking},
                  .takesWork = request.stopsTracking}; // what is staged of them
    undo.complete = [place = request.place](const GitRepository& repo, UndoScope& scope) {
        const std::filesystem::path list = gitkit::ignoreList(repo, place);
        scope.overwrites.push_back(place == gitkit::IgnorePlace::repository ? list.filename() : list);
    };
    return undo;
}

Undoable startOver(const std::vector<std::string>& paths)
{
    return {.title = UndoTexts::tr("Starting Over with %1").arg(namesOfFiles(paths)),
            .done = UndoTexts::tr("Started over with %1.").arg(namesOfFiles(paths)),
            .scope = {.kind = "take-side", .movesIndex = true, .overwrites = paths},
            .takesWork = true};
}

Undoable discard(const Files& files)
{
    Undoable undo{.title = UndoTexts::tr("Discard of %1").arg(namesOf(files)),
                  .done = UndoTexts::tr("Discarded %1.").arg(namesOf(files)),
                  .scope = {.kind = "discard", .movesIndex = true},
                  .takesWork = true,
                  .kept = std::make_shared<KeptFiles>()};
    for (const gitkit::FileChange& file : files)
        addPaths(file, file.isUntracked() ? undo.scope.removes : undo.scope.overwrites);
    return undo;
}

} // namespace plovik::undoable
