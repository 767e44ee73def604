// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/store/actions/Worktrees.h"

#include "GitKit/repository/GitRepository.h"
#include "GitKit/repository/Worktrees.h"
#include "app/store/Changes.h"
#include "app/store/ShownText.h"
#include "app/store/WindowState.h"

#include <QCoreApplication>
#include <QLocale>
#include <QStringList>

#include <algorithm>
#include <memory>
#include <utility>

using namespace Qt::StringLiterals;

namespace plovik::actions {

using gitkit::GitRepository;
using gitkit::Worktree;
using gitkit::WorktreeLosses;

namespace {

struct WorktreeTexts {
    Q_DECLARE_TR_FUNCTIONS(plovik::Worktrees)
};

Change changing(const QString& title, GitAccess::Operation operation)
{
    return {.verb = Verb::changeWorktree, .title = title, .operation = std::move(operation)};
}

void addSizes(const std::vector<gitkit::SizedPath>& files, QStringList& lines)
{
    constexpr qsizetype most = 12;
    for (const gitkit::SizedPath& file : files) {
        if (lines.size() < most)
            lines << WorktreeTexts::tr("%1, %2", "file, size")
                         .arg(shownText(file.path), QLocale().formattedDataSize(static_cast<qint64>(file.bytes), 1,
                                                                                QLocale::DataSizeTraditionalFormat));
    }
}

/// Returns the files that are in no commit, one a line, and how many there are besides.
QString listOf(const WorktreeLosses& losses)
{
    QStringList lines;
    for (std::size_t index = 0; index < std::min<std::size_t>(losses.changed.size(), 6); ++index)
        lines << WorktreeTexts::tr("%1, changed").arg(shownText(losses.changed[index]));
    addSizes(losses.untracked, lines);
    addSizes(losses.ignored, lines);
    const std::size_t all = losses.changed.size() + losses.untracked.size() + losses.ignored.size();
    if (const auto more = static_cast<int>(all) - static_cast<int>(lines.size()); more > 0)
        lines << WorktreeTexts::tr("and %Ln other(s)", nullptr, more);
    return lines.join(u'\n');
}

QString lockSentence(const Worktree& tree)
{
    return tree.lock->empty() ? WorktreeTexts::tr("It is locked.")
                              : WorktreeTexts::tr("It is locked: %1.").arg(inQuotes(*tree.lock));
}

QString straySentence(int commits)
{
    return WorktreeTexts::tr("%Ln commit(s) of its detached HEAD are on no branch and would be lost.", nullptr,
                             commits);
}

QString removalMessage(const Worktree& tree, const WorktreeLosses& losses)
{
    QStringList said{tree.branch.empty()
                         ? WorktreeTexts::tr("Its folder goes.")
                         : WorktreeTexts::tr("Its folder goes. Its branch %1 stays.").arg(inQuotes(tree.branchName()))};
    if (tree.lock)
        said << lockSentence(tree);
    if (losses.isInOperation)
        said << WorktreeTexts::tr("What git has begun there, such as a rebase, ends half-way.");
    if (losses.strayCommits > 0)
        said << straySentence(losses.strayCommits);
    const std::size_t files = losses.changed.size() + losses.untracked.size() + losses.ignored.size();
    if (files > 0)
        said << WorktreeTexts::tr(
            "%Ln file(s) or folder(s) are in no commit. They are moved into the repository's folder "
            "“plovik/saved” and are kept there for 30 days.",
            nullptr, static_cast<int>(files));
    said << WorktreeTexts::tr("What was done in its window can then not be undone any more.");
    return said.join(u' ');
}

/// Offers a branch for commits that nothing else leads to.
void offerBranch(Actors actors, const Worktree& tree, const WorktreeLosses& losses, Confirmation& question)
{
    if (losses.strayCommits > 0)
        question.choices.push_back({WorktreeTexts::tr("Make a Branch…"), [&window = actors.window, head = tree.head] {
                                        window.showSheet(NewBranchSheet{head});
                                    }});
}

void remove(Actors actors, const Worktree& tree, gitkit::WorktreeRemoval how)
{
    const auto removed = std::make_shared<gitkit::RemovedWorktree>();
    Change change = changing(
        WorktreeTexts::tr("Removing %1…").arg(inQuotes(worktreeName(tree))),
        [tree, how, removed](const GitRepository& repo) { *removed = gitkit::removeWorktree(repo, tree, how); });
    change.succeeded = [&window = actors.window, name = worktreeName(tree), removed] {
        window.tell(removed->saved.empty()
                        ? WorktreeTexts::tr("Removed the worktree %1.").arg(inQuotes(name))
                        : WorktreeTexts::tr("Removed the worktree %1. What was in no commit is in %2 now.")
                              .arg(inQuotes(name), shownText(removed->saved.native())));
    };
    actors.changes.run(std::move(change));
}

void ask(Actors actors, const Worktree& tree, const WorktreeLosses& losses)
{
    const bool isAnyway = losses.needsForce() || tree.lock || losses.isInOperation || losses.strayCommits > 0;
    Confirmation question;
    question.title = WorktreeTexts::tr("Remove the worktree %1?").arg(inQuotes(worktreeName(tree)));
    question.message = removalMessage(tree, losses);
    question.detail = listOf(losses);
    question.actionTitle = isAnyway ? WorktreeTexts::tr("Remove Anyway") : WorktreeTexts::tr("Remove");
    question.action =
        [actors, tree,
         how = gitkit::WorktreeRemoval{.evenChanged = losses.needsForce(), .evenLocked = tree.lock.has_value()}] {
            remove(actors, tree, how);
        };
    offerBranch(actors, tree, losses, question);
    actors.window.ask(std::move(question));
}

void askToForget(Actors actors, const Worktree& tree, const WorktreeLosses& losses)
{
    Confirmation question;
    question.title = WorktreeTexts::tr("Forget the worktree %1?").arg(inQuotes(worktreeName(tree)));
    question.message =
        WorktreeTexts::tr("Its folder is missing. If it is only on a disk that is not connected now, git "
                          "will not know it any more. What was done in its window can then not be undone "
                          "any more.");
    if (losses.strayCommits > 0)
        question.message += u' ' + straySentence(losses.strayCommits);
    question.detail = shownText(tree.folder.native());
    question.actionTitle = WorktreeTexts::tr("Forget");
    question.action = [actors, tree] {
        actors.changes.run(
            changing(WorktreeTexts::tr("Forgetting %1…").arg(inQuotes(worktreeName(tree))),
                     [folder = tree.folder](const GitRepository& repo) { gitkit::forgetWorktree(repo, folder); }));
    };
    offerBranch(actors, tree, losses, question);
    actors.window.ask(std::move(question));
}

QCoro::Task<> askingToRemove(Actors actors, Worktree tree)
{
    WorktreeLosses losses;
    std::optional<Failure> failure;
    try {
        losses = co_await actors.git.readAside({}, &gitkit::worktreeLosses, tree);
    } catch (const std::exception& thrown) {
        failure = failureOf(thrown);
    }
    if (!failure && losses.hasSubmodules)
        failure = Failure{.message = WorktreeTexts::tr("%1 has submodules, whose repositories would go with it. Remove "
                                                       "those first, or the folder by hand.")
                                         .arg(inQuotes(worktreeName(tree)))};
    if (failure)
        actors.window.report(*failure);
    else if (tree.isMissing)
        askToForget(actors, tree, losses);
    else
        ask(actors, tree, losses);
}

} // namespace

QString worktreeName(const Worktree& tree) { return shownText(tree.folder.filename().native()); }

void addWorktree(Actors actors, const gitkit::NewWorktree& tree, AfterAdding after)
{
    Change change{.verb = Verb::addWorktree,
                  .title = WorktreeTexts::tr("Making the worktree %1…").arg(inQuotes(tree.folder.filename().native())),
                  .operation = [tree](const GitRepository& repo) { gitkit::addWorktree(repo, tree); }};
    change.succeeded = [actors, folder = tree.folder, after] {
        if (after == AfterAdding::open && actors.services.openWindow)
            actors.services.openWindow(folder);
        else
            actors.window.tell(WorktreeTexts::tr("Made the worktree %1.").arg(inQuotes(folder.filename().native())));
    };
    actors.changes.run(std::move(change));
}

void openWorktree(Actors actors, const Worktree& tree)
{
    if (whyNotOpened(tree).isEmpty() && actors.services.openWindow)
        actors.services.openWindow(tree.folder);
}

QString whyNotOpened(const Worktree& tree)
{
    if (tree.isHere)
        return WorktreeTexts::tr("This window shows it.");
    if (tree.isBare)
        return WorktreeTexts::tr("It is the repository itself and has no files.");
    return tree.isMissing ? WorktreeTexts::tr("Its folder is missing.") : QString();
}

void lockWorktree(Actors actors, const Worktree& tree, const std::string& reason)
{
    actors.changes.run(changing(
        WorktreeTexts::tr("Locking %1…").arg(inQuotes(worktreeName(tree))),
        [folder = tree.folder, reason](const GitRepository& repo) { gitkit::lockWorktree(repo, folder, reason); }));
}

void unlockWorktree(Actors actors, const Worktree& tree)
{
    actors.changes.run(
        changing(WorktreeTexts::tr("Unlocking %1…").arg(inQuotes(worktreeName(tree))),
                 [folder = tree.folder](const GitRepository& repo) { gitkit::unlockWorktree(repo, folder); }));
}

QString whyNotChanged(const Worktree& tree)
{
    return tree.isMain ? WorktreeTexts::tr("It holds the repository.") : QString();
}

void askToRemoveWorktree(Actors actors, const Worktree& tree)
{
    if (tree.isMissing && tree.lock)
        actors.window.report(
            {.message = lockSentence(tree) + u' ' + WorktreeTexts::tr("Unlock it before it is forgotten.")});
    else
        launch(askingToRemove(actors, tree));
}

} // namespace plovik::actions
