// SPDX-License-Identifier: GPL-3.0-or-later
#include "GitKit/undo/KeepingMove.h"

#include "GitKit/Text.h"
#include "GitKit/repository/GitRepository.h"
#include "GitKit/runner/GitError.h"
#include "GitKit/undo/UndoWay.h"

#include <exception>

namespace gitkit {

void requireUnedited(const GitRepository& repo, const std::filesystem::path& gitDirectory, const TreeMove& move,
                     const char* command)
{
    std::vector<std::string> edited = editedFiles(repo, gitDirectory, move);
    if (edited.empty())
        edited = editedEntries(repo, gitDirectory, move);
    if (!edited.empty())
        throw GitError(command, 1, inQuotes(edited.front()) + " is changed here and in those commits.",
                       ErrorKind::wouldOverwriteLocalChanges);
}

void moveKeeping(const GitRepository& repo, const std::filesystem::path& gitDirectory, const TreeMove& move)
{
    UndoWay way;
    way.from.filesTree = way.from.indexTree = move.from;
    way.to.filesTree = way.to.indexTree = move.to;
    try {
        moveAll(repo, gitDirectory, way, {}, {});
    } catch (const std::exception&) {
        moveAllBack(repo, gitDirectory, way, {}, {});
        throw;
    }
}

} // namespace gitkit
