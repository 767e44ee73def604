// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "GitKit/records/UndoStep.h"
#include "GitKit/undo/UndoPoints.h"

#include <cstddef>
#include <filesystem>
#include <optional>
#include <string>
#include <vector>

namespace gitkit {

class GitRepository;

// Keeps what an action changes, so that it can be taken back, also by a later run of the program: see UndoLog.h and
// TakeBack.h. All functions block and throw as the methods of GitRepository do; callers keep the writers of one repository
// apart. `gitDirectory` is what gitDirectories() calls the working tree's own.

/// A step that is being recorded.
class UndoRecording {
public:
    /// Keeps the state before. Throws when it cannot be kept; nothing has changed then.
    UndoRecording(const GitRepository& repo, const std::filesystem::path& gitDirectory, UndoScope scope);

    /// The step's name. Files that are in the action's way go to asideFolder() of it.
    const std::string& id() const { return step_.id; }
    /// Notes files that were moved out of the way after the recording began.
    void movedAside(std::vector<std::string> paths) { step_.aside = std::move(paths); }
    /// Notes what keeping() has kept of the user's files.
    void keptAs(std::string name) { step_.kept = std::move(name); }
    /// Notes that the step which this one was to take back has stayed.
    void hasFailed() { step_.undoes.clear(); }
    /// Notes that the action has failed: a push has told nobody anything then, unless branches there have moved.
    void wasRefused() { isRefused_ = true; }

    /// Keeps the state after, however the action has ended. Returns the step, or nullopt when nothing has changed and
    /// nothing was taken back, in which case the step is not listed.
    std::optional<UndoStep> finish(const GitRepository& repo);

private:
    void findMoreChanges(const GitRepository& repo);
    std::vector<RefUpdate> untilItEnds() const;
    void append(const GitRepository& repo, const char* moment);

    std::filesystem::path gitDirectory_;
    UndoScope scope_;
    UndoStep step_;
    RefValues refs_;                   ///< before
    std::vector<std::string> changed_; ///< files, before
    bool isRefused_ = false;
};

/// Returns the newest steps, at most so many, the newest first.
std::vector<UndoStep> undoSteps(const GitRepository& repo, std::size_t most = 1000);

/// Where the files are that step `id` moved out of the way.
std::filesystem::path asideFolder(const std::filesystem::path& gitDirectory, const std::string& id);

} // namespace gitkit
