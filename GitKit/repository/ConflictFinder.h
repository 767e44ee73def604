// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "GitKit/records/Conflict.h"
#include "GitKit/repository/Conflicts.h"
#include "GitKit/repository/Stages.h"

#include <map>
#include <string>
#include <vector>

namespace gitkit {

class GitRepository;

/// Makes conflicts of the index's entries, in the order of their paths, without what only the contents tell. For
/// Conflicts.cpp. Blocks and throws as the methods of GitRepository do.
std::vector<Conflict> findConflicts(const GitRepository& repo, const std::map<std::string, Stages>& listed,
                                    const MergedCommits& merged);

} // namespace gitkit
