// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "GitKit/records/WebLink.h"

namespace gitkit {
class GitRepository;
} // namespace gitkit

namespace plovik {

// What views read of the repository's pages on the web, for Latest. No server is asked. The functions may be called on any
// thread, block, and throw gitkit::GitError.

/// Walks the history.
gitkit::WebLink readWebLink(const gitkit::GitRepository& repo, const gitkit::WebLinkRequest& request);

/// Reads where the numbers in messages lead, by the first of the request's remotes that has a page.
gitkit::ReferenceAddresses readReferenceAddresses(const gitkit::GitRepository& repo,
                                                  const gitkit::WebLinkRequest& request);

} // namespace plovik
