// SPDX-License-Identifier: GPL-3.0-or-later
#include "GitKit/repository/FileCopies.h"

#include "GitKit/FileReplacement.h"
#include "GitKit/RegularFile.h"
#include "GitKit/Text.h"
#include "GitKit/UniqueFd.h"
#include "GitKit/runner/GitError.h"

#include <cerrno>
#include <fcntl.h>
#include <fstream>
#include <functional>
#include <sys/sendfile.h>
#include <sys/stat.h>
#include <unistd.h>
#include <utility>

namespace gitkit {

namespace {

namespace fs = std::filesystem;

/// Larger files are moved into place instead of copied.
constexpr std::uintmax_t largestCopied = std::uintmax_t{64} << 20;

[[noreturn]] void throwFileError(const fs::path& file, const char* what)
{
    const int error = errno;
    throw GitError("checkout", 1,
                   inQuotes(file.string()) + " could not be " + what + ": " + std::generic_category().message(error) +
                       ".");
}

/// Calls `make` with the names of files beside `file` until one is not taken. Returns that name, which is short: a
/// file's own name may be as long as names can be.
fs::path madeBeside(const fs::path& file, const std::function<bool(const fs::path&)>& make)
{
    for (int attempt = 0; attempt < 100; ++attempt) {
        fs::path name =
            file.parent_path() / (".plovik-" + std::to_string(::getpid()) + "-" + std::to_string(attempt) + ".tmp");
        if (make(name))
            return name;
        if (errno != EEXIST)
            break;
    }
    throwFileError(file, "written");
}

void moveInto(const fs::path& made, const fs::path& file)
{
    if (::rename(made.c_str(), file.c_str()) == 0)
        return;
    const int error = errno;
    ::unlink(made.c_str());
    errno = error;
    throwFileError(file, "written");
}

/// Copies with the file system's help, which may share the content, or with the kernel's.
bool copyContent(const UniqueFd& from, const UniqueFd& to)
{
    constexpr std::size_t most = std::size_t{1} << 30;
    bool canShare = true;
    for (;;) {
        const ssize_t copied = canShare ? ::copy_file_range(from.get(), nullptr, to.get(), nullptr, most, 0)
                                        : ::sendfile(to.get(), from.get(), nullptr, most);
        if (copied == 0)
            return true;
        if (copied < 0 && errno != EINTR && !std::exchange(canShare, false))
            return false;
    }
}

/// Copies a regular file to a new one with the same mode.
bool copyRegular(const fs::path& file, const fs::path& copy)
{
    struct stat found{};
    const UniqueFd from = openRegularFile(file);
    if (!from || ::fstat(from.get(), &found) != 0)
        return false;
    UniqueFd to(::open(copy.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC | O_NOFOLLOW, 0600));
    if (!to)
        return false;
    if (copyContent(from, to) && ::fchmod(to.get(), found.st_mode & 07777U) == 0 && ::close(to.release()) == 0)
        return true;
    const int error = errno;
    ::unlink(copy.c_str());
    errno = error;
    return false;
}

bool copyLink(const fs::path& link, const fs::path& copy)
{
    std::error_code error;
    const fs::path target = fs::read_symlink(link, error);
    if (!error)
        return ::symlink(target.c_str(), copy.c_str()) == 0;
    errno = error.value();
    return false;
}

bool copyAny(const fs::path& file, const fs::path& copy)
{
    return kindAt(file) == FileKind::link ? copyLink(file, copy) : copyRegular(file, copy);
}

bool moveCopy(const fs::path& copy, const fs::path& file)
{
    if (::rename(copy.c_str(), file.c_str()) != 0)
        return false;
    ::utimensat(AT_FDCWD, file.c_str(), nullptr, AT_SYMLINK_NOFOLLOW); // for what looks at times: it is new here
    return true;
}

bool hasOtherNames(const fs::path& file)
{
    struct stat found{};
    return ::lstat(file.c_str(), &found) == 0 && S_ISREG(found.st_mode) && found.st_nlink > 1;
}

} // namespace

FileKind kindAt(const fs::path& path)
{
    struct stat found{};
    if (::lstat(path.c_str(), &found) != 0)
        return FileKind::none;
    return S_ISREG(found.st_mode)   ? FileKind::regular
           : S_ISLNK(found.st_mode) ? FileKind::link
           : S_ISDIR(found.st_mode) ? FileKind::folder
                                    : FileKind::other;
}

std::string identityOf(const fs::path& path)
{
    struct stat found{};
    if (::lstat(path.c_str(), &found) != 0)
        return {};
    std::string identity;
    for (const long long number :
         {static_cast<long long>(found.st_dev), static_cast<long long>(found.st_ino),
          static_cast<long long>(found.st_mode), static_cast<long long>(found.st_size),
          static_cast<long long>(found.st_mtim.tv_sec), static_cast<long long>(found.st_mtim.tv_nsec)})
        identity += std::to_string(number) + ' ';
    return identity;
}

std::optional<std::string> bytesOf(const fs::path& path, std::uintmax_t limit)
{
    if (kindAt(path) == FileKind::link) {
        std::error_code error;
        const fs::path target = fs::read_symlink(path, error);
        return error ? std::nullopt : std::optional(target.string());
    }
    if (kindAt(path) != FileKind::regular)
        return std::nullopt;
    std::optional<std::string> bytes = regularFileBytes(path, limit < UINTMAX_MAX ? limit + 1 : limit);
    return bytes && bytes->size() <= limit ? bytes : std::nullopt;
}

bool isSameFile(const fs::path& one, const fs::path& other, std::uintmax_t limit)
{
    if (identityOf(one) == identityOf(other))
        return true;
    struct stat first{};
    struct stat second{};
    if (::lstat(one.c_str(), &first) != 0 || ::lstat(other.c_str(), &second) != 0 || first.st_mode != second.st_mode)
        return false;
    const auto bytes = bytesOf(one, limit);
    return bytes && bytes == bytesOf(other, limit);
}

void keepCopy(const fs::path& file, const fs::path& copy)
{
    // A file that has other names already would change with what is written under these.
    if (!hasOtherNames(file) && ::link(file.c_str(), copy.c_str()) == 0)
        return;
    if (!copyAny(file, copy) && ::link(file.c_str(), copy.c_str()) != 0)
        throwFileError(file, "kept");
}

void putCopy(const fs::path& copy, const fs::path& file)
{
    std::error_code ignored;
    const bool isLarge = kindAt(copy) == FileKind::regular && fs::file_size(copy, ignored) > largestCopied;
    if (isLarge && moveCopy(copy, file))
        return;
    try {
        saveCopy(copy, file);
    } catch (const GitError&) {
        // On a full disk there is room for the copy itself, and one that must not be read can still be moved.
        if (!moveCopy(copy, file))
            throw;
    }
}

void saveCopy(const fs::path& copy, const fs::path& file)
{
    moveInto(madeBeside(file, [&copy](const fs::path& made) { return copyAny(copy, made); }), file);
}

bool writeNew(std::string_view bytes, const fs::path& file)
{
    std::ofstream stream(file, std::ios::binary);
    stream.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
    stream.close();
    return stream.good();
}

void putBytes(std::string_view bytes, const fs::path& file)
{
    if (!replaceFile(file, bytes))
        throwFileError(file, "written");
}

bool makeParents(const fs::path& root, const std::string& path)
{
    for (std::size_t end = path.find('/'); end != std::string::npos; end = path.find('/', end + 1)) {
        const fs::path parent = root / path.substr(0, end);
        const FileKind kind = kindAt(parent);
        if (kind == FileKind::none && ::mkdir(parent.c_str(), 0777) != 0)
            return false;
        if (kind != FileKind::none && kind != FileKind::folder)
            return false;
    }
    return true;
}

} // namespace gitkit
