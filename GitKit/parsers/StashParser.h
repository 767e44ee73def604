// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "GitKit/records/Stash.h"

#include <string>
#include <string_view>
#include <vector>

namespace gitkit {

/// Reads what `git stash list` prints. Pure; skips what it cannot read. Any thread.
struct StashParser {
    static constexpr const char* format = "--format=%gd%x00%H%x00%at%x00%gs";

    /// `output` is what a run with -z and `format` printed, newest stash first.
    static std::vector<Stash> parse(std::string_view output);
};

/// Reads what `git remote` prints: one name on each line.
struct RemoteParser {
    static std::vector<std::string> parse(std::string_view output);
};

} // namespace gitkit
