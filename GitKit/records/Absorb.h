// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string>
#include <vector>

namespace gitkit {

/// A staged change of some lines that follow one another, and the commit that it belongs to.
struct AbsorbHunk {
    std::string path;              ///< bytes
    int line = 0;                  ///< number of the first line that goes; of the line above where none does
    std::vector<std::string> gone; ///< lines of HEAD, each with its end
    std::vector<std::string> come; ///< lines in their place
    std::string target;            ///< full hash of the youngest commit that has touched them; empty: it stays staged

    bool operator==(const AbsorbHunk&) const = default;
};

/// The staged changes, and the commits that they may go into.
struct AbsorbProposal {
    std::string branch;                ///< full name; empty while HEAD is detached
    std::string base;                  ///< the commit beneath those; empty where the oldest is a root
    std::vector<std::string> commits;  ///< the oldest first
    std::vector<std::string> subjects; ///< of those
    std::vector<AbsorbHunk> hunks;
    int others = 0; ///< staged files that are new, deleted, renamed, binary, or changed in another way than by lines

    bool operator==(const AbsorbProposal&) const = default;
};

} // namespace gitkit
