// SPDX-License-Identifier: GPL-3.0-or-later
#include "GitKit/repository/Overwriting.h"

#include "GitKit/Text.h"
#include "GitKit/repository/FileCopies.h"
#include "GitKit/repository/Folders.h"
#include "GitKit/repository/GitRepository.h"
#include "GitKit/repository/InTheWay.h"
#include "GitKit/runner/GitError.h"

namespace gitkit {

namespace {

/// The paths that the index or the working tree lack and HEAD may have.
std::vector<std::string> missingPaths(const FileChange& file)
{
    std::vector<std::string> paths;
    if (file.index == 'D' || file.worktree == 'D')
        paths.push_back(file.path);
    if (file.originalPath && (file.index == 'R' || file.worktree == 'R'))
        paths.push_back(*file.originalPath);
    return paths;
}

} // namespace

void requireStashKeeps(const GitRepository& repo, UntrackedFiles untracked)
{
    std::vector<std::string> inTheWay;
    for (const FileChange& file : repo.status().files) {
        for (const std::string& path : missingPaths(file)) {
            const auto standing = standingInPlaceOf(repo.root(), path);
            // A file of that very name is in the stash as its new content.
            if (standing && (*standing != path || kindAt(repo.root() / path) == FileKind::folder))
                inTheWay.push_back(*standing);
        }
    }
    const auto lost =
        unknownFiles(repo, untracked == UntrackedFiles::include ? Unknown::ignored : Unknown::both, inTheWay);
    if (!lost.empty())
        throw GitError("stash", 1,
                       inQuotes(lost.front()) +
                           " would be deleted and not be in the stash: it stands in the place of a file "
                           "that git puts back. Move it away first.",
                       ErrorKind::wouldOverwriteUnknownFiles);
}

void requireNothingBegun(const GitRepository& repo, const char* command)
{
    const std::filesystem::path directory = gitDirectories(repo).own;
    for (const char* mark : {"MERGE_HEAD", "CHERRY_PICK_HEAD", "REVERT_HEAD"}) {
        // While there are conflicts git itself refuses.
        if (kindAt(directory / mark) != FileKind::none && repo.runner().bytes({"ls-files", "--unmerged", "-z"}).empty())
            throw GitError(command, 1,
                           "A merge, cherry-pick or revert is in progress, and this would end it. Continue or abort it "
                           "first.",
                           ErrorKind::operationUnfinished);
    }
}

void requireIgnoredStay(const GitRepository& repo, const char* command, const std::vector<std::string>& listed)
{
    std::vector<std::string> inTheWay;
    const GitOutput paths = repo.runner().output(listed);
    if (paths.status != 0) // as between unrelated histories, which git refuses in words of its own
        return;
    for (const std::string& path : splitNul(paths.stdoutBytes)) {
        if (const auto standing = standingInPlaceOf(repo.root(), path))
            inTheWay.push_back(*standing);
    }
    if (const auto lost = unknownFiles(repo, Unknown::ignored, inTheWay); !lost.empty())
        throw GitError(command, 1,
                       inQuotes(lost.front()) +
                           " would be overwritten, because git ignores it here. Move it away first.",
                       ErrorKind::wouldOverwriteUnknownFiles);
}

} // namespace gitkit
