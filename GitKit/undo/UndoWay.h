// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "GitKit/records/UndoStep.h"
#include "GitKit/undo/TreeMove.h"

#include <filesystem>
#include <string>
#include <vector>

namespace gitkit {

class GitRepository;

// Moving a repository from one kept moment to another. Blocking; throws as the methods of GitRepository do; callers keep
// the writers of one repository apart. `gitDirectory` is what gitDirectories() calls the working tree's own, and lists of
// paths are sorted.

/// From one moment to another.
struct UndoWay {
    UndoPoint from;
    UndoPoint to;
    std::vector<RefUpdate> refs;
};

TreeMove filesOf(const UndoWay& way);
TreeMove indexOf(const UndoWay& way);
bool movesFiles(const UndoWay& way);
bool movesIndex(const UndoWay& way);
UndoWay reversed(const UndoWay& way);

/// Returns the paths of the files whose bytes are kept and that differ between the moments, be it in a tree only.
std::vector<std::string> keptPaths(const GitRepository& repo, const UndoWay& way);
/// Returns the files that a moment does not have and that the other one does, as far as their bytes are not kept.
std::vector<std::string> removedPaths(const UndoPoint& point, const std::vector<std::string>& kept);
/// Returns the files among `paths` whose bytes are not as the moment has them.
std::vector<std::string> editedBytes(const GitRepository& repo, const UndoPoint& point,
                                     const std::vector<std::string>& paths);

/// Moves files, index and the files of an unfinished operation. `kept` are the files whose bytes are written, `known` those
/// that git does not know and that may be written over.
void moveAll(const GitRepository& repo, const std::filesystem::path& gitDirectory, const UndoWay& way,
             const std::vector<std::string>& kept, const std::vector<std::string>& known);
/// Goes back after a failure. What fails here, too, is not told: it stays kept in the step.
void moveAllBack(const GitRepository& repo, const std::filesystem::path& gitDirectory, const UndoWay& way,
                 const std::vector<std::string>& kept, const std::vector<std::string>& known);

/// Moves HEAD. `reason` is the line for its log.
void moveHead(const GitRepository& repo, const HeadPlace& from, const HeadPlace& to, const std::string& reason);
/// Drops and stores stashes. Returns whether one came back, which is on top then.
bool moveStashes(const GitRepository& repo, const UndoPoint& to);
/// Makes the sections of the settings that differ between the moments what they were.
void moveSettings(const GitRepository& repo, const UndoPoint& from, const UndoPoint& to);

} // namespace gitkit
