// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "GitKit/records/Commit.h"
#include "app/store/RepositoryStore.h"

#include <filesystem>
#include <vector>

class QMenu;
class QMimeData;
class QWidget;

namespace plovik {

/// Adds what makes patches of commits, the newest first, and for one commit a pack of its files. `store` outlives the menu.
/// Main thread.
void addPatchEntries(QMenu& menu, RepositoryStore& store, const std::vector<gitkit::Commit>& commits);

/// Lets the user choose a file with patches and asks how it is applied.
void choosePatchToApply(RepositoryStore& store, QWidget& window);

/// Returns the files with patches among what was dropped.
std::vector<std::filesystem::path> droppedPatches(const QMimeData& dropped);

} // namespace plovik
