// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "GitKit/UniqueFd.h"
#include "GitKit/runner/Process.h"

#include <string>
#include <sys/types.h>

namespace gitkit {

/// Our ends of a child's pipes. The input is not open when the child gets no input.
struct ParentStreams {
    UniqueFd input;
    UniqueFd output;
    UniqueFd error;
    UniqueFd trace; ///< open only when the request asks for it
};

enum class ExchangeEnd { childEnded, limitPassed, stopped };

/// Feeds and drains a child, the leader of `group`. Returns when the child has ended and its pipes are read, when it
/// has printed more than the request's limit, or, once a stop was requested, when all holders of its pipes have ended
/// or their time is over. `childEnded` must become readable when the child ends. Does not reap the child. Blocks the
/// calling thread. Throws LaunchError when it cannot wait.
ExchangeEnd exchange(const ProcessRequest& request, pid_t group, const UniqueFd& childEnded, ParentStreams streams,
                     GitOutput& result);

} // namespace gitkit
