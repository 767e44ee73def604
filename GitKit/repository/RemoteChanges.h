// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "GitKit/records/RemoteSettings.h"

#include <optional>
#include <string>
#include <vector>

namespace gitkit {

class GitRepository;

// Remotes and what the configuration says of them. Any thread; these block and throw as the methods of GitRepository do;
// callers run the changing ones one after another.

/// Returns the settings of all remotes, in git's order.
std::vector<RemoteSettings> allRemoteSettings(const GitRepository& repo);
/// Returns the settings of a remote; nullopt when there is none of that name.
std::optional<RemoteSettings> remoteSettings(const GitRepository& repo, const std::string& name);

enum class FetchAfterAdding { yes, no };
/// Adds a remote, and then fetches it: a failure of that leaves it there. Throws GitError with ErrorKind::alreadyExists when there is one of that name.
void addRemote(const GitRepository& repo, const RemoteSettings& added, FetchAfterAdding fetches);

/// Makes the remote `before` into `after`: its branches here move along with its name, and so do those that follow them.
/// Throws GitError with ErrorKind::changedMeanwhile when it is no longer as `before` says; nothing has changed then.
void changeRemote(const GitRepository& repo, const RemoteSettings& before, const RemoteSettings& after);

/// Removes a remote with its settings and its branches here. Branches that follow these follow nothing then.
void removeRemote(const GitRepository& repo, const std::string& name);

} // namespace gitkit
