// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "GitKit/records/Movable.h"
#include "GitKit/records/RewriteOutcome.h"
#include "GitKit/records/RewritePlan.h"

#include <QString>

#include <optional>
#include <string>
#include <vector>

namespace plovik {

// The words of the bar over the list of commits. Pure. `outcome` is nullopt while it is being found out.

/// Says what a plan does, what that comes to, and which branches move along.
QString planSentence(const gitkit::RewritePlan& plan, const std::optional<gitkit::RewriteOutcome>& outcome,
                     const gitkit::MovableCommits& movable);
/// Says which other branches move along with a plan and which stay; empty where there are none.
QString planBranchesSentence(const gitkit::RewritePlan& plan, const std::vector<gitkit::BranchOnCommit>& branches);
/// Says after it which other branches have moved; empty where there are none.
QString planBranchesMoved(const gitkit::RewritePlan& plan, const std::vector<gitkit::BranchOnCommit>& branches);
/// Says which commits of a plan others may have; empty where they have none of them.
QString planPublishedSentence(const gitkit::RewritePlan& plan, const gitkit::MovableCommits& movable);
QString planApplyTitle(const std::optional<gitkit::RewriteOutcome>& outcome);

/// Returns a branch's name without "refs/heads/".
std::string withoutBranchPrefix(const std::string& name);

} // namespace plovik
