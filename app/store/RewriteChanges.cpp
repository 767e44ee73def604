// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/store/RewriteChanges.h"

#include "GitKit/repository/GitRepository.h"
#include "GitKit/rewrite/Rewriting.h"
#include "app/store/Undoables.h"

#include <QCoreApplication>

namespace plovik {

using gitkit::GitRepository;
using gitkit::RewriteOutcome;
using gitkit::RewritePlan;

namespace {

struct RewriteTexts {
    Q_DECLARE_TR_FUNCTIONS(plovik::Rewriting)
};

} // namespace

Change rewriteInMemory(const RewritePlan& plan, const QString& branch, const std::shared_ptr<RewriteOutcome>& prepared)
{
    Change change{.verb = Verb::rewrite, .title = RewriteTexts::tr("Rewriting %1…").arg(branch), .operation = {}};
    change.prepare = [plan, prepared](const GitRepository& repo) { *prepared = gitkit::prepareRewrite(repo, plan); };
    change.operation = [plan, prepared](const GitRepository& repo) {
        const std::size_t count = gitkit::affectedCommits(plan).size();
        gitkit::applyRewrite(repo, plan, *prepared, "plovik: rewrite " + std::to_string(count) + " commits");
    };
    change.undo = undoable::rewrite(plan, branch, [prepared] { return *prepared; });
    return change;
}

Change rewriteThroughGit(const RewritePlan& plan, const QString& branch)
{
    Change change{.verb = Verb::rewrite, .title = RewriteTexts::tr("Rewriting %1…").arg(branch), .operation = {}};
    change.operation = [plan](const GitRepository& repo) { gitkit::rewriteByGit(repo, plan); };
    change.undo = undoable::rewriteByGit(plan, branch);
    return change;
}

void sayRebase(Change& change, const QString& branch, const QString& onto)
{
    change.title = RewriteTexts::tr("Rebasing onto %1…").arg(onto);
    change.undo->title = RewriteTexts::tr("Rebase of %1 onto %2").arg(branch, onto);
    change.undo->done = RewriteTexts::tr("Rebased %1 onto %2.").arg(branch, onto);
}

} // namespace plovik
