// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "GitKit/records/UndoStep.h"
#include "GitKit/runner/GitError.h"

#include <cstdint>
#include <string>
#include <vector>

namespace gitkit {

/// A step cannot be taken back as things are now. Nothing was changed.
class UndoRefused : public GitError {
public:
    using Cause = UndoRefusal;

    UndoRefused(Cause cause, std::vector<std::string> names, const std::string& sentence)
        : GitError("undo", 1, sentence, ErrorKind::changedMeanwhile), cause_(cause), names_(std::move(names))
    {}

    Cause cause() const { return cause_; }
    /// The files or full names of refs that it is about; for checkedOut, the branch and the place of the other tree.
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
