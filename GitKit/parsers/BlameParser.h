// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "GitKit/records/BlameLine.h"

#include <string_view>
#include <vector>

namespace gitkit {

/// Reads `git blame --porcelain`, which describes each commit where it first appears. Pure; never fails.
class BlameParser {
public:
    static std::vector<BlameLine> parse(std::string_view output);
};

} // namespace gitkit
