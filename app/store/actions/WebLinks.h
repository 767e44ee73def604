// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "GitKit/records/WebLink.h"
#include "app/store/actions/Actors.h"

#include <QString>

#include <functional>
#include <string>
#include <vector>

namespace plovik::actions {

/// Returns the remotes in the order in which their pages are looked for.
std::vector<std::string> webRemotes(const Snapshot& now);

/// Returns why there is no link, as a sentence; empty where there is one.
QString whyNoLink(const gitkit::WebLink& link);

/// Looks for a link and calls `found` with the address. Tells why where there is none.
void findWebLink(Actors actors, const gitkit::WebLinkRequest& request, std::function<void(const QString&)> found);

} // namespace plovik::actions
