// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string>

namespace gitkit {

/// What the next commit will hold, for a reader or a message writer; bytes that are not UTF-8 are repaired.
struct StagedChanges {
    std::string summary; ///< the staged files and how much of each changes
    std::string diff;    ///< the patch; it is cut once it exceeds 64 MiB

    bool operator==(const StagedChanges&) const = default;
};

} // namespace gitkit
