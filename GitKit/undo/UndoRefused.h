// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "GitKit/runner/GitError.h"

#include <cstdint>
#include <string>
#include <vector>

namespace gitkit {

/// A step cannot be taken back as things are now. Nothing was changed.
class UndoRefused : public GitError {
public:
    enum class Cause {
        otherHead,   ///< another branch or commit is checked out
        movedRefs,   ///< `names` are refs that are no longer where the step left them
        takenNames,  ///< `names` are refs that were made again since, or beside which there is no room
        otherState,  ///< an operation has begun, gone on or ended since
        editedFiles, ///< `names` are files that were edited or staged since; it can be done all the same
        inTheWay,    ///< `names` are files that git does not know where others would come; the same
        checkedOut,  ///< `names` are a branch and the working tree that has it checked out
        noEnd,       ///< the program ended in the middle of the step
    };

    UndoRefused(Cause cause, std::vector<std::string> names, const std::string& sentence)
        : GitError("undo", 1, sentence, ErrorKind::changedMeanwhile), cause_(cause), names_(std::move(names))
    {}

    Cause cause() const { return cause_; }
    const std::vector<std::string>& names() const { return names_; }

private:
    Cause cause_;
    std::vector<std::string> names_;
};

/// More files than are kept for undo would be overwritten. Nothing was changed.
class UndoTooLarge : public GitError {
public:
    UndoTooLarge(std::uintmax_t files, std::uintmax_t bytes)
        : GitError("undo", 1, "Too much would have to be kept."), files_(files), bytes_(bytes)
    {}

    std::uintmax_t files() const { return files_; }
    std::uintmax_t bytes() const { return bytes_; }

private:
    std::uintmax_t files_;
    std::uintmax_t bytes_;
};

} // namespace gitkit
