// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "GitKit/records/CommitFile.h"

#include <string>
#include <string_view>
#include <vector>

namespace gitkit {

/// Reads git's lists of changed files. Pure; skips what it cannot read. Any thread.
struct NameStatusParser {
    /// `output` is what a run with --name-status -z printed. Paths are bytes.
    static std::vector<CommitFile> parse(std::string_view output);
};

} // namespace gitkit
