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

/// Returns the name as in "refs/heads/main"; empty for HEAD.
inline std::string fullNameOf(const RefLabel& label)
{
    switch (label.kind) {
    case RefLabel::Kind::localBranch:
        return "refs/heads/" + label.name;
    case RefLabel::Kind::remoteBranch:
        return "refs/remotes/" + label.name;
    case RefLabel::Kind::tag:
        return "refs/tags/" + label.name;
    case RefLabel::Kind::head:
        break;
    }
    return {};
}

} // namespace gitkit
