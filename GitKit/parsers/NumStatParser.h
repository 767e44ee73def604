// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "GitKit/records/ChangeCounts.h"

#include <string_view>
#include <vector>

namespace gitkit {

/// Reads what `--numstat -z` prints. Pure; skips what it cannot read. Any thread.
struct NumStatParser {
    /// "added<tab>removed<tab>path", NUL; of a rename "added<tab>removed<tab>", NUL, old path, NUL, new path, NUL.
    static std::vector<ChangeCounts> parse(std::string_view output);
};

} // namespace gitkit
