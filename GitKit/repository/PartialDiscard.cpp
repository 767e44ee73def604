// SPDX-License-Identifier: GPL-3.0-or-later
#include "GitKit/repository/PartialDiscard.h"

#include "GitKit/FileReplacement.h"
#include "GitKit/Text.h"
#include "GitKit/repository/GitRepository.h"
#include "GitKit/repository/ReversedFile.h"
#include "GitKit/repository/StaleChange.h"

#include <cerrno>
#include <filesystem>
#include <sys/stat.h>
#include <system_error>
#include <tuple>

namespace gitkit {

namespace {

[[noreturn]] void throwUnwritable(const std::filesystem::path& file)
{
    throw GitError("apply", 1,
                   inQuotes(file.string()) + " could not be written: " + std::generic_category().message(errno) + ".");
}

/// What tells whether somebody wrote a file meanwhile; nullopt when there is none.
std::optional<std::tuple<ino_t, off_t, time_t, long, time_t, long>> signOf(const std::filesystem::path& file)
{
    struct stat found{};
    if (::lstat(file.c_str(), &found) != 0)
        return std::nullopt;
    return std::tuple(found.st_ino, found.st_size, found.st_mtim.tv_sec, found.st_mtim.tv_nsec, found.st_ctim.tv_sec,
                      found.st_ctim.tv_nsec);
}

/// Makes a file of the working tree what it is to become.
void writeContent(const std::filesystem::path& file, const std::optional<FileContent>& content)
{
    std::error_code failure;
    if (!content) {
        if (!std::filesystem::remove(file, failure) && failure)
            throwUnwritable(file);
        return;
    }
    std::filesystem::create_directories(file.parent_path(), failure);
    const bool isWritten = content->isLink ? replaceByLink(file, content->bytes)
                                           : replaceFile(file, content->bytes, content->isExecutable);
    if (!isWritten)
        throwUnwritable(file);
}

} // namespace

void discardPart(const GitRepository& repo, const PartialChange& change)
{
    const std::filesystem::path file = repo.root() / change.path;
    const auto sign = signOf(file);
    const std::optional<FileContent> content = reversedFile(repo, change);
    if (signOf(file) != sign)
        throw staleChange();
    writeContent(file, content);
}

} // namespace gitkit
