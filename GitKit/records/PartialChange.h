// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <optional>
#include <string>

namespace gitkit {

/// Which way a patch will be applied.
enum class PatchDirection {
    forward, ///< to a side that has none of the diff's changes: staging
    reverse, ///< with --reverse, to a side that has all of them: unstaging, discarding
};

/// Why parts of a diff cannot be applied by themselves.
enum class PartialRefusal {
    none,
    noPatch,    ///< binary, truncated, empty, combined, or of several files
    whiteSpace, ///< made with white space ignored: its lines are not those of either file
    symlink,    ///< half a target is no target
    submodule,  ///< a commit is recorded whole
};

/// A patch together with what it may be applied to.
struct PartialChange {
    std::string path; ///< as bytes
    std::string patch;
    PatchDirection direction = PatchDirection::forward;
    /// The blob that the patch was made from; all zeros for no file, absent when the diff does not say.
    std::optional<std::string> before;

    bool operator==(const PartialChange&) const = default;
};

} // namespace gitkit
