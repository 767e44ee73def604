// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "GitKit/records/PartialChange.h"

namespace gitkit {

class GitRepository;

/// Takes changes out of a file of the working tree; `change` must be a reverse one. Throws when the file is no longer
/// what the patch was made from, and then as when anything fails leaves it as it was. Blocks; callers keep the writers of
/// one repository apart. Throws as the methods of GitRepository do.
void discardPart(const GitRepository& repo, const PartialChange& change);

} // namespace gitkit
