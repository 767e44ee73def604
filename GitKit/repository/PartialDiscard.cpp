// SPDX-License-Identifier: GPL-3.0-or-later
#include "GitKit/repository/PartialDiscard.h"

#include "GitKit/Text.h"
#include "GitKit/UniqueFd.h"
#include "GitKit/repository/GitRepository.h"
#include "GitKit/repository/StaleChange.h"

#include <cerrno>
#include <cstdint>
#include <fcntl.h>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string_view>
#include <sys/stat.h>
#include <unistd.h>

namespace gitkit {

namespace {

/// Files past this are discarded without a way back.
constexpr std::uintmax_t largestKept = std::uintmax_t{64} << 20;

bool standsOnDisk(const std::filesystem::path& file)
{
    struct stat found{};
    return ::lstat(file.c_str(), &found) == 0;
}

/// A file's bytes; nothing when there is none. Throws when it cannot be read.
std::optional<std::string> fileBytes(const std::filesystem::path& file)
{
    if (!standsOnDisk(file))
        return std::nullopt;
    std::ifstream stream(file, std::ios::binary);
    std::string bytes{std::istreambuf_iterator<char>(stream), {}};
    if (!stream.is_open() || stream.bad())
        throw GitError("apply", 1, inQuotes(file.string()) + " could not be read.");
    return bytes;
}

[[noreturn]] void throwUnwritable(const std::filesystem::path& file)
{
    throw GitError("apply", 1, inQuotes(file.string()) + " could not be written.");
}

/// A new, empty file beside `file`; not open when none can be made. The kernel applies the user's mask to its mode:
/// asking for the mask would mean to change it for the whole process.
UniqueFd makeBeside(const std::filesystem::path& file, std::string& name)
{
    for (int attempt = 0; attempt < 100; ++attempt) {
        name = file.string() + ".plovik-" + std::to_string(::getpid()) + "-" + std::to_string(attempt);
        UniqueFd made(::open(name.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC | O_NOFOLLOW, 0666));
        if (made || errno != EEXIST)
            return made;
    }
    return {};
}

bool writeAll(const UniqueFd& descriptor, std::string_view bytes)
{
    while (!bytes.empty()) {
        const ssize_t written = ::write(descriptor.get(), bytes.data(), bytes.size());
        if (written < 0 && errno == EINTR)
            continue;
        if (written <= 0)
            return false;
        bytes.remove_prefix(static_cast<std::size_t>(written));
    }
    return true;
}

/// Puts bytes in a file's place in one step. An existing file's mode is kept.
void replaceFile(const std::filesystem::path& file, const std::string& bytes)
{
    struct stat previous{};
    const bool hasMode = ::lstat(file.c_str(), &previous) == 0;
    std::string temporary;
    UniqueFd descriptor = makeBeside(file, temporary);
    if (!descriptor)
        throwUnwritable(file);
    const bool isWritten = (!hasMode || ::fchmod(descriptor.get(), previous.st_mode & 07777U) == 0) &&
                           writeAll(descriptor, bytes) && ::close(descriptor.release()) == 0;
    if (!isWritten || ::rename(temporary.c_str(), file.c_str()) != 0) {
        ::unlink(temporary.c_str());
        throwUnwritable(file);
    }
}

/// Throws unless the working tree has the blob that the patch was made from.
void requireWorkingTreeHolds(const GitRepository& repo, const PartialChange& change)
{
    if (!change.before)
        return;
    const bool stands = standsOnDisk(repo.root() / change.path);
    if (stands == isNoHash(*change.before))
        throw staleChange();
    if (stands && trimmed(repo.runner().bytes({"hash-object", "--", change.path})) != *change.before)
        throw staleChange();
}

} // namespace

std::optional<PartialDiscard> discardPart(const GitRepository& repo, const PartialChange& change)
{
    requireWorkingTreeHolds(repo, change);
    const std::filesystem::path file = repo.root() / change.path;
    std::error_code ignored;
    const bool kept = !standsOnDisk(file) || std::filesystem::file_size(file, ignored) <= largestKept;
    PartialDiscard done{change.path, kept ? fileBytes(file) : std::nullopt, std::nullopt};
    repo.runner().bytes({"apply", "--whitespace=nowarn", "-R", "-"}, {.input = change.patch});
    if (!kept)
        return std::nullopt;
    done.after = fileBytes(file);
    return done;
}

void undoDiscard(const GitRepository& repo, const PartialDiscard& discard)
{
    const std::filesystem::path file = repo.root() / discard.path;
    if (fileBytes(file) != discard.after)
        throw GitError("apply", 1, "The file has changed since the discard, so that it cannot be taken back any more.",
                       ErrorKind::changedMeanwhile);
    if (discard.before)
        replaceFile(file, *discard.before);
    else
        std::filesystem::remove(file);
}

} // namespace gitkit
