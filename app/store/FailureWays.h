// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "GitKit/records/Identity.h"
#include "app/store/Failure.h"
#include "app/store/GitAccess.h"

#include <functional>

namespace plovik {

class WindowState;

/// The ways on from a failure that nothing else has handled.
struct WaysFromFailure {
    std::function<void()> again; ///< tries the same once more
    /// Moves the lock away, and then tries the same.
    std::function<void(const std::filesystem::path& lock)> withoutLock;
    /// Writes who makes the commits into the configuration, and then tries the same.
    std::function<void(const gitkit::Identity& identity, gitkit::IdentityPlace place)> withIdentity;
};

/// Returns the failure with one sentence above git's words where it is the way to a remote that failed.
Failure toldFirst(Failure failure);

/// Reports a failure: in one sentence, above git's words, where it is a lock or the way to a remote, and with what can be
/// done about it. A branch that is checked out elsewhere leads to the window there. `git` and `window` outlive it. Main thread.
void reportWithWays(const GitAccess& git, WindowState& window, const Failure& failure, WaysFromFailure ways);

} // namespace plovik
