// SPDX-License-Identifier: GPL-3.0-or-later
#include "GitKit/repository/FileStamps.h"

#include "GitKit/Text.h"
#include "GitKit/repository/GitRepository.h"
#include "GitKit/runner/GitError.h"

#include <map>
#include <sys/stat.h>

namespace gitkit {

namespace {

std::int64_t nanoseconds(const timespec& time)
{
    return static_cast<std::int64_t>(time.tv_sec) * 1'000'000'000 + time.tv_nsec;
}

/// What git says of each staged path: modes, hashes and a letter.
std::map<std::string, std::string> stagedLines(const GitRepository& repo)
{
    const std::vector<std::string> listed =
        splitNul(repo.runner().bytes({"diff", "--cached", "--raw", "-z", "--no-renames", "--no-abbrev"}));
    std::map<std::string, std::string> lines;
    for (std::size_t index = 0; index + 1 < listed.size(); index += 2)
        lines[listed[index + 1]] = listed[index];
    return lines;
}

FileStamp stampOf(const GitRepository& repo, const std::map<std::string, std::string>& staged, const std::string& path)
{
    FileStamp stamp{.path = path, .staged = {}};
    struct stat found{};
    if (::lstat((repo.root() / path).c_str(), &found) == 0) {
        stamp.inode = found.st_ino;
        stamp.size = found.st_size;
        stamp.modified = nanoseconds(found.st_mtim);
        stamp.changed = nanoseconds(found.st_ctim);
    }
    if (const auto line = staged.find(path); line != staged.end())
        stamp.staged = line->second;
    return stamp;
}

} // namespace

std::vector<FileStamp> fileStamps(const GitRepository& repo, const std::vector<FileChange>& files)
{
    const std::map<std::string, std::string> staged = stagedLines(repo);
    std::vector<FileStamp> stamps;
    for (const FileChange& file : files) {
        for (const std::string& path : file.allPaths())
            stamps.push_back(stampOf(repo, staged, path));
    }
    return stamps;
}

void requireUnchanged(const GitRepository& repo, const std::vector<FileStamp>& stamps)
{
    if (stamps.empty())
        return;
    const std::map<std::string, std::string> staged = stagedLines(repo);
    for (const FileStamp& stamp : stamps) {
        if (stampOf(repo, staged, stamp.path) != stamp)
            throw GitError("checkout", 1,
                           inQuotes(stamp.path) + " has changed since you were asked. Nothing was discarded; look at "
                                                  "it again.",
                           ErrorKind::changedMeanwhile);
    }
}

} // namespace gitkit
