// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string>

namespace gitkit {

/// A decoration shown on a commit row.
struct RefLabel {
    enum class Kind { head, localBranch, remoteBranch, tag };

    Kind kind = Kind::head;
    std::string name; ///< short name, as bytes
    bool isHead = false;
    bool isDefault = false; ///< the repository's default branch, or the remote branch of that name; where it is known

    bool operator==(const RefLabel&) const = default;
};

} // namespace gitkit
