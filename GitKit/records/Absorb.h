// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstddef>
#include <string>
#include <vector>

namespace gitkit {

/// Why a staged change is not proposed for any commit.
enum class StaysStaged {
    no,
    older,     ///< commits beneath those that may change have touched its lines last
    misplaced, ///< the commit that has touched its lines last does not have them as they are now
    newFile,
    deletedFile,
    binary,
    notLines, ///< a mode, a link or a submodule has changed
};

/// A staged change of some lines that follow one another, and the commit that it belongs to.
struct AbsorbHunk {
    std::string path;              ///< bytes
    int line = 0;                  ///< number of the first line that goes; of the line above where none does
    std::vector<std::string> gone; ///< lines of HEAD, each with its end
    std::vector<std::string> come; ///< lines in their place
    std::string target;            ///< full hash of the youngest commit that has touched them; empty: it stays staged
    StaysStaged reason = StaysStaged::no;
    /// The index of the oldest commit of the proposal that it fits into; it fits into all newer ones, too. Their number
    /// where it fits into none.
    std::size_t oldest = 0;

    bool operator==(const AbsorbHunk&) const = default;
};

/// A staged file that stays staged as a whole.
struct AbsorbRest {
    std::string path; ///< bytes
    StaysStaged reason = StaysStaged::notLines;

    bool operator==(const AbsorbRest&) const = default;
};

/// The staged changes, and the commits that they may go into.
struct AbsorbProposal {
    std::string branch;                ///< full name; empty while HEAD is detached
    std::string base;                  ///< the commit beneath those; empty where the oldest is a root
    std::string publishedOn;           ///< a remote branch that has the base, as it is shown; empty where none does
    std::vector<std::string> commits;  ///< the oldest first
    std::vector<std::string> subjects; ///< of those
    std::vector<AbsorbHunk> hunks;
    std::vector<AbsorbRest> others; ///< changed in another way than by lines
    std::string staged;             ///< all that was staged, as git lists it

    bool operator==(const AbsorbProposal&) const = default;
};

} // namespace gitkit
