// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "GitKit/records/Date.h"

#include <string>
#include <vector>

namespace gitkit {

/// What was taken from the user's files at one time and can be brought back.
struct Kept {
    std::string name;               ///< of its folder; names grow with time
    std::vector<std::string> paths; ///< the files that it holds, as bytes
    Date date = {};                 ///< when they were taken

    bool operator==(const Kept&) const = default;
};

/// What bringing back did with each file.
struct BroughtBack {
    std::vector<std::string> back;         ///< as they were
    std::vector<std::string> merged;       ///< into what the user has written since
    std::vector<std::string> left;         ///< they have changed since, so they stay kept
    std::vector<std::string> indexChanged; ///< back, but not staged as they were: their index entries have changed

    bool operator==(const BroughtBack&) const = default;
};

} // namespace gitkit
