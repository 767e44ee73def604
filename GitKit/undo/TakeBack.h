// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "GitKit/records/Kept.h"
#include "GitKit/records/UndoStep.h"

#include <filesystem>
#include <optional>
#include <string>
#include <vector>

namespace gitkit {

class GitRepository;

// Taking recorded steps back. All functions block and throw as the methods of GitRepository do; callers keep the writers
// of one repository apart. `gitDirectory` is what gitDirectories() calls the working tree's own.

/// What taking back has done.
struct TakenBack {
    std::optional<UndoStep> step;        ///< the step that it is itself; nullopt when nothing has changed
    std::vector<std::string> aside;      ///< ignored files that it has moved out of the way
    std::vector<std::string> left;       ///< files that were out of the way and could not be put back
    std::optional<BroughtBack> files;    ///< what bringBack() has done, for a step that has kept files
    std::vector<std::string> submodules; ///< whose commits moved here while what they have checked out stayed
    bool hasMovedStashes = false;        ///< a stash came back, and stands on top now
};

enum class Over {
    nothing, ///< what was edited since stays, and the step is not taken back
    edits,   ///< also edited files become what they were; the edits are kept in the new step
};

/// Takes a step back: refs, HEAD, index, files and their bytes, an unfinished operation, stashes and settings. Records
/// that as a step of its own, titled `title`. Throws UndoRefused before anything has changed; when it fails later, all is
/// as it was.
TakenBack takeBack(const GitRepository& repo, const std::filesystem::path& gitDirectory, const UndoStep& step,
                   const std::string& title, Over over = Over::nothing);

/// Brings back the state before a step that has no end, whatever was changed since. The same otherwise.
TakenBack restoreBefore(const GitRepository& repo, const std::filesystem::path& gitDirectory, const UndoStep& step,
                        const std::string& title);

/// Closes a step that has no end, so that it is not offered again. Its state before stays kept.
void leaveAsIs(const GitRepository& repo, const std::filesystem::path& gitDirectory, const UndoStep& step);

} // namespace gitkit
