// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "GitKit/records/CommitDetail.h"
#include "app/store/RepositoryStore.h"

class QMenu;
class QWidget;

namespace plovik {

/// The context menu of one file of a commit. `openTitle` names the editor. The caller owns the menu; `store` outlives
/// it. Main thread.
QMenu* makeCommitFileMenu(RepositoryStore& store, const gitkit::CommitDetail& commit, const gitkit::CommitFile& file,
                          const QString& openTitle, QWidget* parent);

/// The file where its content is: in the commit, or in the one before when the commit deletes it; an untracked file of
/// a stash in the commit that git keeps it in.
InspectedFile inspectedFile(const gitkit::CommitDetail& commit, const gitkit::CommitFile& file, InspectedFile::Tab tab);

/// Whether something stands at the path in the working tree now.
bool isInWorkingTree(const RepositoryStore& store, const gitkit::CommitFile& file);

} // namespace plovik
