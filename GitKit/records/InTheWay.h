// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string>
#include <vector>

namespace gitkit {

/// Files that git does not know and that stand where it is about to write.
struct InTheWay {
    std::vector<std::string> untracked;
    std::vector<std::string> ignored;

    bool operator==(const InTheWay&) const = default;
};

} // namespace gitkit
