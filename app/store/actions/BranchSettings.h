// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "app/store/actions/Actors.h"

#include <functional>
#include <optional>
#include <string>

namespace plovik::actions {

// What a local branch is called and which remote branch it follows. Main thread. `then` is called after success.

void renameBranch(Actors actors, const std::string& branch, const std::string& newName,
                  const std::function<void()>& then = {});

/// Has a branch follow a remote one, given by its full name; nullopt: it follows none any more.
void setUpstream(Actors actors, const std::string& branch, const std::optional<std::string>& upstream,
                 const std::function<void()>& then = {});

} // namespace plovik::actions
