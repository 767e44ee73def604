// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string>

namespace gitkit {

/// Where HEAD and all refs pointed when they were read. Nothing that history shows as a label has moved while two of
/// these are equal.
struct RefTips {
    /// One line of hash, space and full name for HEAD and for each ref, sorted by name. The line of an annotated tag is
    /// followed by one of the object that it leads to, whose name ends in "^{}".
    std::string lines;
    std::string headRef; ///< full name of the branch that HEAD stands on; empty while HEAD is detached

    bool operator==(const RefTips&) const = default;
};

} // namespace gitkit
