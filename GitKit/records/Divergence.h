// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <compare>
#include <string>

namespace gitkit {

/// Two commits that are compared, by full hash: that of a branch and that of its upstream.
struct CommitPair {
    std::string ours;
    std::string theirs;

    auto operator<=>(const CommitPair&) const = default;
};

/// How many commits each of two commits leads to that the other does not.
struct Divergence {
    int ahead = 0;
    int behind = 0;

    bool operator==(const Divergence&) const = default;
};

} // namespace gitkit
