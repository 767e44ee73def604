// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string>
#include <vector>

namespace gitkit {

/// How a branch is merged.
enum class MergeKind {
    normal,          ///< as git is set up: a fast-forward where that is possible, mostly
    mergeCommit,     ///< with a merge commit, also where a fast-forward is possible
    fastForwardOnly, ///< or not at all
    squash,          ///< its changes are staged as if made here, and nothing is committed
};

/// What merging a branch into what is checked out would do.
struct MergePreview {
    enum class Outcome {
        unknown, ///< this git cannot tell without doing it
        clean,
        conflicts,
    };
    int commits = 0; ///< that come
    int own = 0;     ///< that are here only; without them a fast-forward is possible
    Outcome outcome = Outcome::unknown;
    int files = 0;                      ///< that change in a merge without conflicts
    std::vector<std::string> conflicts; ///< paths
    bool alwaysMergeCommit = false;     ///< git is set up so (merge.ff=false)
    bool alwaysFastForward = false;     ///< git is set up to do nothing else (merge.ff=only)
    bool remembersResolutions = false;  ///< git may resolve conflicts as they were resolved before

    bool operator==(const MergePreview&) const = default;
};

/// What replaying the commits that only HEAD has on top of another one would do.
struct RebasePreview {
    int commits = 0; ///< that are replayed; of those that are there already in other words none is
    int beneath = 0; ///< that come beneath them; without any nothing happens
    MergePreview::Outcome outcome = MergePreview::Outcome::unknown;
    std::vector<std::string> conflicts = {}; ///< paths, of the first commit that conflicts
    bool remembersResolutions = false;       ///< git may resolve conflicts as they were resolved before

    bool operator==(const RebasePreview&) const = default;
};

/// What making changes again would do, or taking them back.
struct PickPreview {
    MergePreview::Outcome outcome = MergePreview::Outcome::unknown;
    int files = 0;                           ///< that change, if nothing conflicts
    std::vector<std::string> conflicts = {}; ///< paths, of the first commit that conflicts
    std::string stopsAt = {};                ///< subject of that commit, as bytes, where there are several
    bool remembersResolutions = false;       ///< git may resolve conflicts as they were resolved before

    bool operator==(const PickPreview&) const = default;
};

} // namespace gitkit
