// SPDX-License-Identifier: GPL-3.0-or-later
#include "GitKit/repository/PartialDiscard.h"

#include "GitKit/Text.h"
#include "GitKit/repository/GitRepository.h"
#include "GitKit/repository/StaleChange.h"

#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
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
        throw GitError("apply", 1, "“" + repairedUtf8(file.string()) + "” could not be read.");
    return bytes;
}

/// Puts bytes in a file's place in one step, with the mode that the file has or had.
void replaceFile(const std::filesystem::path& file, const std::string& bytes)
{
    struct stat previous{};
    const bool hasMode = ::lstat(file.c_str(), &previous) == 0;
    std::string temporary = file.string() + ".plovik-XXXXXX";
    const int descriptor = ::mkstemp(temporary.data());
    if (descriptor < 0)
        throw GitError("apply", 1, "“" + repairedUtf8(file.string()) + "” could not be written.");
    // A temporary file is its owner's alone; a new file is for whom the user's mask allows.
    const mode_t mask = ::umask(0);
    ::umask(mask);
    ::fchmod(descriptor, hasMode ? previous.st_mode & 07777U : 0666U & ~mask);
    ::close(descriptor);
    std::ofstream stream(temporary, std::ios::binary);
    stream << bytes;
    stream.close();
    if (!stream || ::rename(temporary.c_str(), file.c_str()) != 0) {
        ::unlink(temporary.c_str());
        throw GitError("apply", 1, "“" + repairedUtf8(file.string()) + "” could not be written.");
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
        throw GitError("apply", 1, "The file has changed since the discard, so that it cannot be taken back any more.");
    if (discard.before)
        replaceFile(file, *discard.before);
    else
        std::filesystem::remove(file);
}

} // namespace gitkit
