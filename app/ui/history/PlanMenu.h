// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string>
#include <vector>

class QMenu;

namespace plovik {

class RepositoryStore;

/// Adds what a plan can do with these commits, by their full hashes. Entries are disabled, with the reason as their tooltip,
/// where the commits cannot be changed. Main thread.
void addPlanEntries(QMenu& menu, RepositoryStore& store, const std::vector<std::string>& commits);

} // namespace plovik
