// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "GitKit/records/RewriteOutcome.h"
#include "GitKit/records/RewritePlan.h"
#include "app/store/Changes.h"

#include <QString>

#include <memory>

namespace plovik {

// How a plan is carried out. Main thread. `branch` is its branch as it is shown.

/// Returns the change that rewrites in memory and then moves the branch. It fills `prepared` before it does so.
Change rewriteInMemory(const gitkit::RewritePlan& plan, const QString& branch,
                       const std::shared_ptr<gitkit::RewriteOutcome>& prepared);

/// Returns the change that lets git rebase. It stops where commits conflict.
Change rewriteThroughGit(const gitkit::RewritePlan& plan, const QString& branch);

/// Gives such a change the words for commits that are put on top of `onto`, as it is shown.
void sayRebase(Change& change, const QString& branch, const QString& onto);

} // namespace plovik
