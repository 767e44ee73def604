// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "GitKit/records/Identity.h"

namespace gitkit {

class GitRepository;

// Whose commits are made. Any thread; these block and throw as the methods of GitRepository do.

/// Returns what the configuration says; what it does not say is empty.
Identity identityNow(const GitRepository& repo);

/// Writes a name and an address into the configuration.
void setIdentity(const GitRepository& repo, const Identity& identity, IdentityPlace place);

} // namespace gitkit
