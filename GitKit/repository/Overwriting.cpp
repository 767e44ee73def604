// SPDX-License-Identifier: GPL-3.0-or-later
#include "GitKit/repository/Overwriting.h"

#include "GitKit/Text.h"
#include "GitKit/repository/FileCopies.h"
#include "GitKit/repository/Folders.h"
#include "GitKit/repository/GitRepository.h"
#include "GitKit/repository/PathCommand.h"
#include "GitKit/runner/GitError.h"

#include <algorithm>
#include <iterator>
#include <optional>

namespace gitkit {

namespace {

constexpr std::size_t mostPathspecs = 500;

/// Returns the file, or the folder of files, that would have to go for a file at `path`; nullopt when nothing would.
std::optional<std::string> standingInPlaceOf(const std::filesystem::path& root, const std::string& path)
{
    for (std::size_t end = path.find('/'); end != std::string::npos; end = path.find('/', end + 1)) {
        const FileKind kind = kindAt(root / path.substr(0, end));
        if (kind != FileKind::folder)
            return kind == FileKind::none ? std::nullopt : std::optional(path.substr(0, end));
    }
    return kindAt(root / path) == FileKind::none ? std::nullopt : std::optional(path);
}

/// Returns the first file that git does not track at these paths or in folders of these names.
std::optional<std::string> firstOther(const GitRepository& repo, const std::vector<std::string>& options,
                                      const std::vector<std::string>& paths)
{
    for (std::size_t begin = 0; begin < paths.size(); begin += mostPathspecs) {
        std::vector<std::string> arguments{"ls-files", "--others", "-z"};
        std::ranges::copy(options, std::back_inserter(arguments));
        arguments.emplace_back("--");
        const std::size_t end = std::min(paths.size(), begin + mostPathspecs);
        for (std::size_t index = begin; index < end; ++index)
            arguments.push_back(literalPathspec(paths[index]));
        if (const std::vector<std::string> found = splitNul(repo.runner().bytes(arguments)); !found.empty())
            return found.front();
    }
    return std::nullopt;
}

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
    const std::vector<std::string> onlyIgnored{"--ignored", "--exclude-standard"};
    const auto lost =
        firstOther(repo, untracked == UntrackedFiles::include ? onlyIgnored : std::vector<std::string>(), inTheWay);
    if (lost)
        throw GitError("stash", 1,
                       inQuotes(*lost) + " would be deleted and not be in the stash: it stands in the place of a file "
                                         "that git puts back. Move it away first.",
                       ErrorKind::wouldOverwriteLocalChanges);
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
                           ErrorKind::wouldOverwriteLocalChanges);
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
    if (const auto lost = firstOther(repo, {"--ignored", "--exclude-standard"}, inTheWay))
        throw GitError(command, 1,
                       inQuotes(*lost) + " would be overwritten, because git ignores it here. Move it away first.",
                       ErrorKind::wouldOverwriteLocalChanges);
}

} // namespace gitkit
