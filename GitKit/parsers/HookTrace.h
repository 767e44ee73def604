// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "GitKit/records/Run.h"

#include <chrono>
#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace gitkit {

/// Reads from git's trace of events which hooks a run has started, also those that its own children start, and whether
/// they come from files or from the configuration. One thread at a time.
class HookTrace {
public:
    /// Reads the next piece, which may end anywhere. `now` is when it came. Returns whether a hook has begun or ended.
    bool read(std::string_view bytes, std::chrono::steady_clock::time_point now);

    /// All hooks so far, the oldest first; of very many the last.
    const std::vector<HookRun>& hooks() const { return hooks_; }

private:
    struct Open {
        std::string child; ///< the process that started it, and its number there
        std::size_t hook;
    };
    bool readLine(std::string_view line, std::chrono::steady_clock::time_point now);

    std::string rest_; ///< of a line that has not ended
    std::vector<HookRun> hooks_;
    std::vector<Open> open_;
};

} // namespace gitkit
