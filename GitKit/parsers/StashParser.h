// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "GitKit/records/Stash.h"

#include <string>
#include <string_view>
#include <vector>

namespace gitkit {

/// Reads what `git stash list` prints. Pure; skips what it cannot read. Any thread.
struct StashParser {
    static constexpr const char* format = "--format=%gd%x1f%H%x1f%at%x1f%gs";

    /// `output` holds one line of `format` for each stash, newest first.
    static std::vector<Stash> parse(std::string_view output);
};

/// Reads what `git remote` prints: one name on each line.
struct RemoteParser {
    static std::vector<std::string> parse(std::string_view output);
};

} // namespace gitkit
