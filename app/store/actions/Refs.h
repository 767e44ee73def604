// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "GitKit/records/BranchChange.h"
#include "GitKit/records/GitRef.h"
#include "GitKit/records/Reset.h"
#include "app/store/actions/Actors.h"

#include <QString>

#include <optional>
#include <string>

namespace plovik::actions {

/// Returns a sentence about a ref that git cannot read, and that nothing can be begun with; empty for the others.
QString damage(const gitkit::GitRef& ref);
/// Checks out a branch or a tag. For a remote branch, checks out its local counterpart, and creates that when there is
/// none.
void checkout(Actors actors, const gitkit::GitRef& ref);
void checkoutCommit(Actors actors, const std::string& hash);
/// Creates a branch. `startPoint` is a full ref name or a hash; nullopt stands for HEAD.
void createBranch(Actors actors, const std::string& name, const std::optional<std::string>& startPoint,
                  gitkit::AfterCreating after);
/// With a message, makes an annotated tag.
void createTag(Actors actors, const std::string& name, const std::string& target, const std::string& message = {});
/// Asks, and then deletes a local branch or a tag. Does nothing for a remote branch.
void confirmDelete(Actors actors, const gitkit::GitRef& ref);

/// Moves the current branch, or a detached HEAD, from `head` to `target`; both are full hashes.
struct Reset {
    gitkit::ResetKind kind = gitkit::ResetKind::keep;
    std::string head;
    std::string target;
};
void reset(Actors actors, const Reset& how);

} // namespace plovik::actions
