// SPDX-License-Identifier: GPL-3.0-or-later
#include "GitKit/repository/InTheWay.h"

#include "GitKit/Text.h"
#include "GitKit/repository/FileCopies.h"
#include "GitKit/repository/GitRepository.h"
#include "GitKit/repository/PathCommand.h"
#include "GitKit/runner/GitError.h"

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <fcntl.h>
#include <set>
#include <sys/stat.h>
#include <system_error>

namespace gitkit {

namespace {

namespace fs = std::filesystem;

constexpr std::size_t mostPathspecs = 500;

void copyTime(const fs::path& from, const fs::path& to)
{
    std::error_code failure;
    const auto time = fs::last_write_time(from, failure);
    if (!failure)
        fs::last_write_time(to, time, failure);
}

/// Moves one file or link, and overwrites nothing. Returns an errno, 0 after success.
int moveFile(const fs::path& from, const fs::path& to)
{
    if (::renameat2(AT_FDCWD, from.c_str(), AT_FDCWD, to.c_str(), RENAME_NOREPLACE) == 0)
        return 0;
    // Some file systems cannot promise that: there the copy below does.
    if (errno != EXDEV && errno != EINVAL && errno != ENOSYS)
        return errno;
    // Onto another file system: a copy, and the file goes only once that is whole.
    std::error_code failure;
    if (fs::is_symlink(fs::symlink_status(from)))
        fs::copy_symlink(from, to, failure);
    else
        fs::copy_file(from, to, failure);
    if (!failure && !fs::is_symlink(fs::symlink_status(to)))
        copyTime(from, to);
    std::error_code ignored;
    if (failure) {
        if (failure != std::errc::file_exists)
            fs::remove(to, ignored);
        return failure.value();
    }
    fs::remove(from, failure);
    return failure.value();
}

/// Removes the folders above a path that have become empty, up to the root.
void removeEmptyParents(const fs::path& root, const std::string& path)
{
    std::error_code failure;
    for (fs::path folder = fs::path(path).parent_path(); !folder.empty() && !failure; folder = folder.parent_path())
        fs::remove(root / folder, failure); // fails for one that is not empty
}

InTheWay standing(const GitRepository& repo, const std::vector<std::string>& paths)
{
    std::set<std::string> standing;
    for (const std::string& path : paths) {
        if (const auto place = standingInPlaceOf(repo.root(), path))
            standing.insert(*place);
    }
    const std::vector<std::string> places(standing.begin(), standing.end());
    if (places.empty())
        return {};
    return {unknownFiles(repo, Unknown::untracked, places), unknownFiles(repo, Unknown::ignored, places)};
}

/// The same for the files that a command lists.
InTheWay standingAtListed(const GitRepository& repo, std::vector<std::string> command)
{
    command.insert(command.begin() + 1, {"--name-only", "-z", "--no-renames", "--no-ext-diff"});
    const GitOutput listed = repo.runner().output(command);
    return listed.status == 0 ? standing(repo, splitNul(listed.stdoutBytes)) : InTheWay();
}

} // namespace

std::optional<std::string> standingInPlaceOf(const fs::path& root, const std::string& path)
{
    for (std::size_t end = path.find('/'); end != std::string::npos; end = path.find('/', end + 1)) {
        const FileKind kind = kindAt(root / path.substr(0, end));
        if (kind != FileKind::folder)
            return kind == FileKind::none ? std::nullopt : std::optional(path.substr(0, end));
    }
    return kindAt(root / path) == FileKind::none ? std::nullopt : std::optional(path);
}

std::vector<std::string> unknownFiles(const GitRepository& repo, Unknown kind, const std::vector<std::string>& paths)
{
    std::vector<std::string> options{"ls-files", "--others", "-z"};
    if (kind == Unknown::ignored)
        options.insert(options.end(), {"--ignored", "--exclude-standard"});
    if (kind == Unknown::untracked)
        options.emplace_back("--exclude-standard");
    options.emplace_back("--");
    std::vector<std::string> found;
    for (std::size_t begin = 0; begin < paths.size(); begin += mostPathspecs) {
        std::vector<std::string> arguments = options;
        const std::size_t end = std::min(paths.size(), begin + mostPathspecs);
        for (std::size_t index = begin; index < end; ++index)
            arguments.push_back(literalPathspec(paths[index]));
        std::ranges::move(splitNul(repo.runner().bytes(arguments)), std::back_inserter(found));
    }
    return found;
}

InTheWay inTheWay(const GitRepository& repo, const std::string& fromTree, const std::string& toTree)
{
    return standing(repo, splitNul(repo.runner().bytes({"diff-tree", "-r", "--name-only", "-z", "--no-renames",
                                                        "--diff-filter=AT", fromTree, toTree, "--"})));
}

InTheWay inTheWayOf(const GitRepository& repo, const std::vector<std::string>& paths) { return standing(repo, paths); }

InTheWay standingAt(const GitRepository& repo, const std::vector<std::string>& command)
{
    const GitOutput listed = repo.runner().output(command);
    return listed.status == 0 ? standing(repo, splitNul(listed.stdoutBytes)) : InTheWay();
}

InTheWay inTheWayOfCheckout(const GitRepository& repo, const std::string& ref)
{
    return standingAtListed(repo, {"diff-tree", "-r", "--diff-filter=AT", "HEAD", ref, "--"});
}

InTheWay inTheWayOfMerge(const GitRepository& repo, const std::string& ref)
{
    return standingAtListed(repo, {"diff", "--diff-filter=A", "HEAD..." + ref, "--"});
}

InTheWay inTheWayOfStash(const GitRepository& repo, const std::string& commit)
{
    return standingAtListed(repo, {"diff", "--diff-filter=A", commit + "^1", commit, "--"});
}

void moveAside(const GitRepository& repo, const std::vector<std::string>& paths, const fs::path& folder)
{
    for (auto path = paths.begin(); path != paths.end(); ++path) {
        std::error_code failure;
        fs::create_directories((folder / *path).parent_path(), failure);
        const int error = failure ? failure.value() : moveFile(repo.root() / *path, folder / *path);
        if (error == 0) {
            removeEmptyParents(repo.root(), *path);
            continue;
        }
        moveBack(repo, {paths.begin(), path}, folder);
        throw GitError("checkout", 1,
                       inQuotes(*path) +
                           " could not be moved out of the way: " + std::generic_category().message(error) + ".");
    }
}

std::vector<std::string> moveBack(const GitRepository& repo, const std::vector<std::string>& paths,
                                  const fs::path& folder)
{
    std::vector<std::string> left;
    for (const std::string& path : paths) {
        const fs::path place = repo.root() / path;
        const bool canMove = kindAt(folder / path) != FileKind::none && kindAt(place) == FileKind::none &&
                             makeParents(repo.root(), path);
        if (!canMove || moveFile(folder / path, place) != 0)
            left.push_back(path);
    }
    return left;
}

} // namespace gitkit
