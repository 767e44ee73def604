// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <optional>
#include <string>
#include <vector>

namespace gitkit {

/// How much of a file's changes is staged, as its check box shows it.
enum class StageState { none, partial, full };

/// One changed path of the working tree. Paths are bytes exactly as git printed them, relative to the top level.
struct FileChange {
    std::string path;
    std::optional<std::string> originalPath; ///< before a rename or copy
    char index = '.';                        ///< staged status letter; '.' unchanged, '?' untracked
    char worktree = '.';                     ///< unstaged status letter; '.' unchanged, '?' untracked
    bool isConflicted = false;
    bool isSubmodule = false; ///< on any side the path is a commit of another repository and no file

    /// A submodule with changes of its own files only: its commit is the recorded one, so there is nothing to stage.
    bool isDirtyInside = false;

    const std::string& id() const { return path; }
    bool isUntracked() const { return index == '?'; }
    bool hasStaged() const { return !isUntracked() && !isConflicted && index != '.'; }
    bool hasUnstaged() const { return isUntracked() || isConflicted || worktree != '.'; }

    /// The path, followed by the original path when there is one.
    std::vector<std::string> allPaths() const
    {
        if (originalPath)
            return {path, *originalPath};
        return {path};
    }

    /// The one letter that lists show.
    char statusCode() const
    {
        if (isConflicted)
            return 'U';
        if (isUntracked())
            return '?';
        return index != '.' ? index : worktree;
    }

    /// Untracked and conflicted files are never staged, whatever their letters say.
    StageState stageState() const
    {
        if (!hasStaged())
            return StageState::none;
        return worktree == '.' ? StageState::full : StageState::partial;
    }

    bool operator==(const FileChange&) const = default;
};

} // namespace gitkit
