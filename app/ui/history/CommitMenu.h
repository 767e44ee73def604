// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "GitKit/records/Commit.h"
#include "GitKit/records/RefLabel.h"
#include "app/store/RepositoryStore.h"

#include <vector>

class QMenu;
class QWidget;

namespace plovik {

/// What can be done with a commit of the list. The menu belongs to `parent`; its entries act through `store` on the
/// commit as it was when the menu opened.
QMenu* makeCommitMenu(RepositoryStore& store, const gitkit::Commit& commit, QWidget* parent);

/// Adds the same to a menu.
void fillCommitMenu(QMenu& menu, RepositoryStore& store, const gitkit::Commit& commit);

/// The same for several commits, the newest first.
QMenu* makeCommitsMenu(RepositoryStore& store, const std::vector<gitkit::Commit>& commits, QWidget* parent);

/// The branches and tags among some labels. The chosen one is selected in the sidebar. The menu belongs to `parent`.
QMenu* makeLabelsMenu(RepositoryStore& store, const std::vector<gitkit::RefLabel>& labels, QWidget* parent);

} // namespace plovik
