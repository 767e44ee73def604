// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "app/store/RepositoryStore.h"

class QMenu;
class QWidget;

namespace plovik {

/// What can be done with a branch or a tag of the sidebar. The menu belongs to `parent`; its entries act through
/// `store` on the ref as it was when the menu opened. Main thread.
QMenu* makeRefMenu(RepositoryStore& store, const gitkit::GitRef& ref, QWidget* parent);

/// The same for a remote.
QMenu* makeRemoteMenu(RepositoryStore& store, const std::string& remote, QWidget* parent);

/// The same for all remotes, also those of which no branch was fetched.
QMenu* makeRemotesMenu(RepositoryStore& store, QWidget* parent);

} // namespace plovik
