// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "GitKit/records/Identity.h"

#include <optional>
#include <string>

namespace gitkit {

class GitRepository;

// Whose commits are made. Any thread; these block and throw as the methods of GitRepository do.

/// Returns what the configuration says; what it does not say is empty.
Identity identityNow(const GitRepository& repo);

/// Writes a name and an address into the configuration.
void setIdentity(const GitRepository& repo, const Identity& identity, IdentityPlace place);

/// Throws ErrorKind::identityUnknown where commits would be replayed on top of `onto`, a full name or hash, and git knows nobody
/// to do that: a rebase would begin all the same, and stop half-way. Without `onto`, there may be such commits.
void requireReplayer(const GitRepository& repo, const std::optional<std::string>& onto);

} // namespace gitkit
