// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "GitKit/records/DiscardExtent.h"
#include "GitKit/records/FileChange.h"

#include <vector>

namespace gitkit {

class GitRepository;

/// Counts what has changed in `files`. Blocks; throws as the methods of GitRepository do.
DiscardExtent discardExtent(const GitRepository& repo, const std::vector<FileChange>& files);

} // namespace gitkit
