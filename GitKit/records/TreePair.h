// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string>

namespace gitkit {

/// Two trees that are compared, by the hashes of trees or of commits. One of them may be empty: it stands for the files
/// of the working tree that git knows.
struct TreePair {
    std::string from;
    std::string to;

    bool operator==(const TreePair&) const = default;
};

} // namespace gitkit
