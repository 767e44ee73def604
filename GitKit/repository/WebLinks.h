// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "GitKit/WebAddress.h"

#include <optional>
#include <string>
#include <vector>

namespace gitkit {

class GitRepository;

// Any thread; these block and throw as the methods of GitRepository do. Nothing is asked of a server.

/// May walk the history.
WebLink webLink(const GitRepository& repo, const WebLinkRequest& request);

/// Returns the page of the first of these remotes that has one.
std::optional<WebPlace> webPlace(const GitRepository& repo, const WebLinkRequest& request);

} // namespace gitkit
