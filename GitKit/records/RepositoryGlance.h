// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "GitKit/records/Divergence.h"

#include <optional>
#include <string>

namespace gitkit {

/// What a list of repositories says of one of them.
struct RepositoryGlance {
    std::optional<std::string> branch = {}; ///< short name; absent while HEAD is detached
    int changes = 0;                        ///< files that are changed or new
    bool hasMore = false;                   ///< there are more changes than were counted
    Divergence counts = {};                 ///< of the branch, from its upstream
    bool isBare = false;

    bool operator==(const RepositoryGlance&) const = default;
};

} // namespace gitkit
