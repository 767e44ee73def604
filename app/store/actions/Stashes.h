// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "GitKit/records/FileChange.h"
#include "GitKit/records/PartialChange.h"
#include "GitKit/records/Stash.h"
#include "app/store/actions/Actors.h"

#include <QString>

#include <string>
#include <vector>

namespace plovik::actions {

void stashSave(Actors actors, const QString& message, gitkit::UntrackedFiles untracked);
void stashFiles(Actors actors, const QString& message, const std::vector<gitkit::FileChange>& files);
void stashStaged(Actors actors, const QString& message);
/// `change` is what discardPart() takes.
void stashLines(Actors actors, const QString& message, const gitkit::PartialChange& change);
void stashApply(Actors actors, const gitkit::Stash& stash, gitkit::StashUse use);
/// Makes a branch where the stash was made, checks it out, and pops the stash there.
void branchFromStash(Actors actors, const std::string& name, const gitkit::Stash& stash);
/// Asks, and then drops a stash.
void confirmDrop(Actors actors, const gitkit::Stash& stash);

} // namespace plovik::actions
