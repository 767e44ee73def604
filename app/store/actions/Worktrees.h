// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "GitKit/records/Worktree.h"
#include "app/store/actions/Actors.h"

#include <QString>

#include <string>

// What can be done with the working trees of a repository. Main thread.
namespace plovik::actions {

/// The name of a working tree's folder.
QString worktreeName(const gitkit::Worktree& tree);

enum class AfterAdding { stay, open };
void addWorktree(Actors actors, const gitkit::NewWorktree& tree, AfterAdding after);

/// Shows its window.
void openWorktree(Actors actors, const gitkit::Worktree& tree);
/// Returns a sentence that says why it cannot be opened; empty when it can.
QString whyNotOpened(const gitkit::Worktree& tree);

void lockWorktree(Actors actors, const gitkit::Worktree& tree, const std::string& reason);
void unlockWorktree(Actors actors, const gitkit::Worktree& tree);
/// Returns a sentence that says why it can be neither locked nor removed; empty when it can.
QString whyNotChanged(const gitkit::Worktree& tree);

/// Looks at what would be lost, and asks. Of a missing one asks whether it is to be forgotten.
void askToRemoveWorktree(Actors actors, const gitkit::Worktree& tree);

} // namespace plovik::actions
