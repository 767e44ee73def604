// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <chrono>

namespace gitkit {

/// A point in time as git records it: whole seconds since 1970-01-01 UTC. The epoch means that the time could
/// not be read.
using Date = std::chrono::sys_seconds;

} // namespace gitkit
