// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <chrono>
#include <cstdint>
#include <optional>
#include <string>

namespace gitkit {

/// The number of one run of git. No other run has it while the application runs.
using Run = std::uint64_t;

/// How a run ended.
struct RunEnd {
    int status = 0;           ///< exit status; 128 plus the signal's number when a signal ended git
    bool signalled = false;   ///< a signal ended git
    bool stopped = false;     ///< because the caller asked for it
    bool cut = false;         ///< because it had printed all that was wanted
    std::string problem = {}; ///< why git could not be started; empty when it was
    /// Without the time in which nobody took what git printed.
    std::chrono::milliseconds duration{0};

    bool operator==(const RunEnd&) const = default;
};

/// One hook that a run of git has started.
struct HookRun {
    std::string name; ///< "pre-commit"
    std::chrono::steady_clock::time_point began;
    std::optional<std::chrono::milliseconds> took = {}; ///< nullopt while it runs
    int status = 0;                                     ///< its exit status, once it has ended

    bool operator==(const HookRun&) const = default;
};

} // namespace gitkit
