// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/ui/history/PlanMenu.h"

#include "app/store/Obstacles.h"
#include "app/store/RepositoryStore.h"
#include "app/store/actions/StagedInto.h"
#include "app/ui/commands/Commands.h"
#include "app/ui/widgets/RowPainting.h"

#include <QCoreApplication>
#include <QMenu>

#include <algorithm>
#include <functional>

namespace plovik {

namespace {

struct PlanMenuTexts {
    Q_DECLARE_TR_FUNCTIONS(plovik::PlanMenu)
};

using Act = gitkit::RewriteStep::Act;

bool isTouched(const Rewriting& rewriting, const std::vector<std::string>& commits)
{
    return rewriting.plan.value() && std::ranges::any_of(commits, [&](const std::string& commit) {
               const gitkit::RewriteStep* const step = gitkit::stepOf(*rewriting.plan.value(), commit);
               return step && *step != gitkit::RewriteStep{.commit = commit};
           });
}

/// Adds what needs no plan: `whyNot` says why the commit cannot be changed.
void addCommitInto(QMenu& menu, RepositoryStore& store, const std::string& commit, QString whyNot)
{
    QAction* const entry =
        markAs(CommandId::commitStagedInto,
               menu.addAction(PlanMenuTexts::tr("Commit Staged Changes into This"), &menu, [&store, commit] {
                   const gitkit::MovableCommit* const found = store.rewriting().find(commit);
                   if (found)
                       actions::commitStagedInto(store.actors(), {.commit = commit, .subject = subjectOf(*found)});
               }));
    if (whyNot.isEmpty() && store.rewriting().movable.value().isElsewhere)
        whyNot = PlanMenuTexts::tr("Its branch is not checked out.");
    if (whyNot.isEmpty())
        whyNot = actions::whyNotInto(store.changes(), store.snapshot(), store.rewriting());
    if (whyNot.isEmpty() && store.snapshot().status.value().stagedCount() == 0)
        whyNot = PlanMenuTexts::tr("Nothing is staged.");
    entry->setEnabled(whyNot.isEmpty());
    entry->setToolTip(plainToolTip(whyNot));
}

/// Only what nothing is planned for can be put elsewhere: the sheet says what becomes of the commits as they are.
void beginRebase(RepositoryStore& store, const std::string& commit)
{
    if (store.rewriting().plan.value()) {
        store.window().tell(PlanMenuTexts::tr("Apply or cancel the plan first."));
        return;
    }
    const gitkit::MovableCommits& now = store.rewriting().movable.value();
    store.window().showSheet(RebaseSheet{.branch = now.isElsewhere ? now.branch : std::string(), .from = commit});
}

} // namespace

void addPlanEntries(QMenu& menu, RepositoryStore& store, const std::vector<std::string>& commits)
{
    Rewriting& rewriting = store.rewriting();
    QString whyNot = obstacle(store.changes(), store.snapshot(), Verb::rewrite);
    if (whyNot.isEmpty())
        whyNot = rewriting.whyNot(commits);
    const auto add = [&](QMenu& in, CommandId id, const QString& title, std::function<void()> run) {
        QAction* const entry = markAs(id, in.addAction(title, &menu, std::move(run)));
        entry->setEnabled(whyNot.isEmpty());
        entry->setToolTip(plainToolTip(whyNot));
    };
    menu.setToolTipsVisible(true);
    if (commits.size() == 1)
        add(menu, CommandId::editCommitMessage, PlanMenuTexts::tr("Edit Message…"),
            [&store, commit = commits.front()] { store.window().showSheet(CommitMessageSheet{commit}); });
    QMenu& more = *menu.addMenu(PlanMenuTexts::tr("Rewrite"));
    more.setToolTipsVisible(true);
    add(more, CommandId::squashIntoParent, PlanMenuTexts::tr("Squash into Parent"),
        [&rewriting, commits] { rewriting.squashIntoParent(commits, Act::squash); });
    add(more, CommandId::fixUpIntoParent, PlanMenuTexts::tr("Fix Up into Parent"),
        [&rewriting, commits] { rewriting.squashIntoParent(commits, Act::fixUp); });
    add(more, CommandId::moveCommitUp, PlanMenuTexts::tr("Move Up"),
        [&rewriting, commits] { rewriting.moveUp(commits); });
    add(more, CommandId::moveCommitDown, PlanMenuTexts::tr("Move Down"),
        [&rewriting, commits] { rewriting.moveDown(commits); });
    add(more, CommandId::dropCommit, PlanMenuTexts::tr("Drop"), [&rewriting, commits] { rewriting.drop(commits); });
    if (commits.size() == 1) {
        more.addSeparator();
        add(more, CommandId::splitCommit, PlanMenuTexts::tr("Split…"),
            [&store, commit = commits.front()] { store.window().showSheet(SplitSheet{commit}); });
        add(more, CommandId::stopToEdit, PlanMenuTexts::tr("Stop Here to Edit…"),
            [&rewriting, commit = commits.front()] { rewriting.stopAt(commit); });
        addCommitInto(more, store, commits.front(), whyNot);
    }
    if (commits.size() == 1)
        add(more, CommandId::rebaseFromHere, PlanMenuTexts::tr("Rebase from Here onto…"),
            [&store, commit = commits.front()] { beginRebase(store, commit); });
    if (isTouched(rewriting, commits)) {
        more.addSeparator();
        add(more, CommandId::keepCommit, PlanMenuTexts::tr("Leave as It Is"),
            [&rewriting, commits] { rewriting.keep(commits); });
    }
    const auto way = store.window().wayToWindow(rewriting.movable.value().heldBy);
    if (!rewriting.movable.value().heldBy.empty() && way)
        menu.addAction(plainMenuText(way->title), &menu, way->action);
    menu.addSeparator();
}

} // namespace plovik
