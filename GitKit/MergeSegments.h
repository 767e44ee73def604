// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "GitKit/records/MergedSides.h"
#include "GitKit/runner/RunContext.h"

#include <optional>
#include <string>

namespace gitkit {

/// What is merged. The sides are the bytes that git merges, so with line ends as they are in the repository.
struct MergeInput {
    std::optional<std::string> base; ///< nullopt when both sides have added the file
    std::string left, right;
    /// Lines that differ only in a carriage return at their end count as equal. Base and right are then returned with the
    /// line ends that most lines of the left side have.
    bool ignoresLineEnds = false;

    bool operator==(const MergeInput&) const = default;
};

/// Takes a merge apart. Joined without choices, the segments are what `git merge-file --diff3` writes for sides that end
/// with a line end; with all conflicts decided for one side, what it writes with `--ours` or `--theirs`. Without a base,
/// all that differs between the sides is a conflict.
///
/// Compares by git, which reads no repository and no settings for it, in a temporary folder that is gone afterwards. Any
/// thread; blocks. Throws GitError, and RunStopped when `context` asks for that.
MergedSides mergedSides(const RunContext& context, MergeInput input);

} // namespace gitkit
