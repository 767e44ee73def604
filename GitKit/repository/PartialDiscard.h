// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "GitKit/records/PartialChange.h"

#include <optional>

namespace gitkit {

class GitRepository;

// Discarding parts of a file, and taking that back. These change the working tree and block; callers keep the writers
// of one repository apart. They throw as the methods of GitRepository do.

/// Takes changes out of a file of the working tree; `change` must be a reverse one. Throws when the file is no longer
/// what the patch was made from. Returns nullopt for a file that is too large to keep.
std::optional<PartialDiscard> discardPart(const GitRepository& repo, const PartialChange& change);

/// Brings back what discardPart() took. Throws when the file has changed since.
void undoDiscard(const GitRepository& repo, const PartialDiscard& discard);

} // namespace gitkit
