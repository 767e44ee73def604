// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "GitKit/undo/UndoStep.h"

#include <filesystem>
#include <optional>
#include <string>
#include <vector>

namespace gitkit {

class GitRepository;

// Keeps what an action changes, so that it can be taken back, also by a later run of the program: see UndoLog.h. All
// functions block and throw as the methods of GitRepository do; callers keep the writers of one repository apart.
// `gitDirectory` is what gitDirectories() calls the working tree's own.

/// What an action is going to touch.
struct UndoScope {
    std::string kind = {};
    std::string title = {};
    bool movesFiles = false;                  ///< the working tree goes from HEAD's tree to another one
    bool movesIndex = false;                  ///< what is staged changes, too
    std::vector<std::string> overwrites = {}; ///< files whose bytes are taken; those that git knows
    std::vector<std::string> aside = {};      ///< files that were moved out of the way for it
    std::string undoes = {};                  ///< id of the step that it takes back
};

/// A step that is being recorded.
class UndoRecording {
public:
    /// Keeps the state before. Throws when it cannot be kept; nothing has changed then.
    UndoRecording(const GitRepository& repo, const std::filesystem::path& gitDirectory, UndoScope scope);

    /// The step's name. Files that are in the action's way go to asideFolder() of it.
    const std::string& id() const { return step_.id; }
    /// Notes files that were moved out of the way after the recording began.
    void movedAside(std::vector<std::string> paths) { step_.aside = std::move(paths); }

    /// Keeps the state after, however the action has ended. Returns the step, or nullopt when nothing has changed, in
    /// which case nothing stays kept.
    std::optional<UndoStep> finish();

private:
    const GitRepository& repo_;
    std::filesystem::path gitDirectory_;
    UndoScope scope_;
    UndoStep step_;
    std::vector<std::pair<std::string, std::string>> refs_; ///< names and hashes before
};

/// Returns all steps, the newest first.
std::vector<UndoStep> undoSteps(const GitRepository& repo);

/// Where the files are that step `id` moved out of the way.
std::filesystem::path asideFolder(const std::filesystem::path& gitDirectory, const std::string& id);

/// Takes a step back: refs, HEAD, index, files and their bytes. Records that as a step of its own, titled `title`, and
/// returns it. Throws GitError, before anything has changed, when a ref has moved since, when files that the step wrote
/// were changed since, and when something is in the way.
std::optional<UndoStep> takeBack(const GitRepository& repo, const std::filesystem::path& gitDirectory,
                                 const UndoStep& step, const std::string& title);

} // namespace gitkit
