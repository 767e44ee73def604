// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "GitKit/records/Commit.h"
#include "GitKit/records/Comparison.h"
#include "GitKit/records/GitRef.h"
#include "app/store/RepositoryStore.h"

class QMenu;

namespace plovik {

// Entries of context menus that compare states, in a menu inside. The menu has a parent; `store` outlives it. Main thread.

/// Adds the ways to compare a commit, also with its parents.
void addComparisons(QMenu& parent, RepositoryStore& store, const gitkit::Commit& commit);
/// Adds the ways to compare a branch or a tag.
void addComparisons(QMenu& parent, RepositoryStore& store, const gitkit::GitRef& ref);
/// Adds the entry that compares two commits, from the one to the other.
void addComparisonOfBoth(QMenu& menu, RepositoryStore& store, const gitkit::Commit& from, const gitkit::Commit& to);

} // namespace plovik
