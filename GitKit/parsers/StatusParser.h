// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "GitKit/records/RepoStatus.h"

#include <array>
#include <string_view>

namespace gitkit {

/// Reads what `git status` prints. Pure; skips what it cannot read. Any thread.
struct StatusParser {
    static constexpr std::array arguments{"status", "--porcelain=v2",        "--branch",
                                          "-z",     "--untracked-files=all", "--no-ahead-behind"};

    /// `output` is what a run with `arguments` printed. The files come out in display order.
    static RepoStatus parse(std::string_view output);
};

} // namespace gitkit
