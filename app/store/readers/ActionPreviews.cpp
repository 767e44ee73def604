// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/store/readers/ActionPreviews.h"

#include "GitKit/repository/Merging.h"
#include "GitKit/repository/Pushing.h"
#include "GitKit/undo/Reset.h"

namespace plovik {

gitkit::ResetLoss readResetLoss(const gitkit::GitRepository& repo, const std::string& target)
{
    return gitkit::resetLoss(repo, target);
}

gitkit::PushPreview readPushPreview(const gitkit::GitRepository& repo, const gitkit::PushQuestion& question)
{
    return gitkit::pushPreview(repo, question);
}

gitkit::MergePreview readMergePreview(const gitkit::GitRepository& repo, const std::string& ref)
{
    return gitkit::mergePreview(repo, ref);
}

} // namespace plovik
