// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/store/readers/RewriteReaders.h"

#include "GitKit/rewrite/Absorbing.h"
#include "GitKit/rewrite/MovableReading.h"
#include "GitKit/rewrite/Rebasing.h"
#include "GitKit/rewrite/Rehearsal.h"

namespace plovik {

gitkit::MovableCommits readMovable(const gitkit::GitRepository& repo, const MovableQuestion& question)
{
    return question.tip.empty() ? gitkit::MovableCommits() : gitkit::movableCommits(repo, {.branch = question.branch});
}

gitkit::RebaseProposal readRebase(const gitkit::GitRepository& repo, const gitkit::RebaseQuestion& question)
{
    return gitkit::rebaseProposal(repo, question);
}

gitkit::RewriteOutcome readRehearsal(const gitkit::GitRepository& repo, const gitkit::RewritePlan& plan)
{
    return gitkit::rehearsed(repo, plan);
}

gitkit::AbsorbProposal readAbsorbProposal(const gitkit::GitRepository& repo, const std::int64_t& /*reading*/)
{
    return gitkit::absorbProposal(repo);
}

} // namespace plovik
