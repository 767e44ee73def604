// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "GitKit/records/WebLink.h"
#include "app/store/RepositoryStore.h"

class QMenu;

namespace plovik {

// Links to the pages that a server of git has. Nothing is read before the pointer or a key is on an entry, which then shows
// the address. `store` outlives the menu. Main thread.

/// Completes a request with the remotes and with the servers that the user has named.
gitkit::WebLinkRequest completed(const RepositoryStore& store, gitkit::WebLinkRequest request);

/// Adds "Copy Link" and "Open on the Web" for a commit, or for a file of it.
void addWebLinks(QMenu& menu, RepositoryStore& store, const gitkit::WebLinkRequest& request);
/// Adds "New Request…" for a branch.
void addNewRequest(QMenu& menu, RepositoryStore& store, const std::string& branch);

void copyWebLink(RepositoryStore& store, const gitkit::WebLinkRequest& request);
void openWebLink(RepositoryStore& store, const gitkit::WebLinkRequest& request);

} // namespace plovik
