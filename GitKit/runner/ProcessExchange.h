// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "GitKit/UniqueFd.h"
#include "GitKit/runner/Process.h"

#include <string>
#include <sys/types.h>

namespace gitkit {

/// Our ends of a child's pipes. An input that is not open is none.
struct ParentStreams {
    UniqueFd input;
    UniqueFd output;
    UniqueFd error;
};

enum class ExchangeEnd { childEnded, limitPassed, stopped };

/// Feeds and drains a child, the leader of `group`, until it has ended, then takes what is left in its pipes; or until
/// it has printed more than is wanted; or until it was asked to end and has, with all that holds its pipes, or had the
/// time to. `childEnded` becomes readable when it has ended; the child is not reaped. Blocks the calling thread. Throws
/// LaunchError when it cannot wait.
ExchangeEnd exchange(const ProcessRequest& request, pid_t group, const UniqueFd& childEnded, ParentStreams streams,
                     GitOutput& result);

} // namespace gitkit
