// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "GitKit/records/RepositoryGlance.h"

namespace gitkit {

class GitRepository;

/// Looks at a repository with one git, which counts the changes only so far. Any thread; blocks and throws as the methods
/// of GitRepository do.
RepositoryGlance glance(const GitRepository& repo);

} // namespace gitkit
