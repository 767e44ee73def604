// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/store/readers/ActionPreviews.h"

#include "GitKit/repository/Branches.h"
#include "GitKit/repository/Commits.h"
#include "GitKit/repository/Divergence.h"
#include "GitKit/repository/Merging.h"
#include "GitKit/repository/PickPreviews.h"
#include "GitKit/repository/Pushing.h"
#include "GitKit/repository/RewrittenBranches.h"
#include "GitKit/repository/Upstream.h"
#include "GitKit/undo/Reset.h"

#include <string_view>

namespace plovik {

gitkit::ResetLoss readResetLoss(const gitkit::GitRepository& repo, const std::string& target)
{
    return gitkit::resetLoss(repo, target);
}

gitkit::PushPreview readPushPreview(const gitkit::GitRepository& repo, const gitkit::PushQuestion& question)
{
    return gitkit::pushPreview(repo, question);
}

std::optional<gitkit::RewrittenBranch> readRewritten(const gitkit::GitRepository& repo,
                                                     const std::vector<std::string>& branches)
{
    const std::vector<gitkit::RewrittenBranch> found = gitkit::rewrittenBranches(repo, branches);
    const gitkit::RewrittenBranch* const top = gitkit::topmost(repo, found);
    return top ? std::optional(*top) : std::nullopt;
}

gitkit::MergePreview readMergePreview(const gitkit::GitRepository& repo, const std::string& ref)
{
    return gitkit::mergePreview(repo, ref);
}

namespace {

Foretold foretoldPull(const gitkit::GitRepository& repo)
{
    const std::optional<gitkit::Upstream> upstream = gitkit::upstreamNow(repo);
    if (!upstream || upstream->counts.behind == 0)
        return {};
    const std::string ref = "refs/remotes/" + upstream->name;
    if (gitkit::rebases(repo, gitkit::PullBy::setting))
        return gitkit::rebasePreview(repo, ref);
    return gitkit::mergePreview(repo, ref);
}

} // namespace

Foretold readForetold(const gitkit::GitRepository& repo, const ForetoldQuestion& question)
{
    using Act = ForetoldQuestion::Act;
    switch (question.act) {
    case Act::merge:
        return gitkit::mergePreview(repo, question.ref);
    case Act::rebase:
        return gitkit::rebasePreview(repo, question.ref);
    case Act::pull:
        return foretoldPull(repo);
    case Act::cherryPick:
        return gitkit::pickPreview(repo, question.pick);
    case Act::revert:
        return gitkit::revertPreview(repo, question.pick);
    case Act::applyStash:
        return gitkit::stashPreview(repo, question.ref);
    }
    return {};
}

DropPreview readDropPreview(const gitkit::GitRepository& repo, const DropQuestion& question)
{
    using Act = Drop::Act;
    constexpr int most = 1000;
    constexpr std::string_view heads = "refs/heads/";
    switch (question.act) {
    case Act::merge:
    case Act::squash:
        return gitkit::mergePreview(repo, question.ref);
    case Act::rebase:
        return gitkit::rebasePreview(repo, question.ref);
    case Act::fastForward: {
        const gitkit::Divergence counts = gitkit::countDivergence(
            repo, {gitkit::resolveCommit(repo, question.ref), gitkit::resolveCommit(repo, question.to)});
        return MovePreview{.comes = counts.behind, .own = counts.ahead};
    }
    case Act::moveBranch:
        return MovePreview{.left = gitkit::commitsOnlyOn(repo, question.ref.substr(heads.size()), question.to, most)};
    default:
        return {};
    }
}

} // namespace plovik
