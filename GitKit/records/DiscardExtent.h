// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

namespace gitkit {

/// How much discarding some files would take. A line that was replaced counts once.
struct DiscardExtent {
    int unstagedLines = 0;
    int stagedLines = 0;
    int binaryFiles = 0;
    int newFiles = 0; ///< files that HEAD does not have; their lines are not counted

    bool operator==(const DiscardExtent&) const = default;
};

} // namespace gitkit
