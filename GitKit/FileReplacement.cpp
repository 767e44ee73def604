// SPDX-License-Identifier: GPL-3.0-or-later
#include "GitKit/FileReplacement.h"

#include "GitKit/UniqueFd.h"

#include <atomic>
#include <cerrno>
#include <fcntl.h>
#include <sys/stat.h>
#include <sys/xattr.h>
#include <unistd.h>
#include <vector>

namespace gitkit {

namespace {

namespace fs = std::filesystem;

constexpr int mostAttempts = 100;

/// A name beside `file`. Short, so that it fits where the file's own name is as long as names can be.
fs::path nameBeside(const fs::path& file)
{
    static std::atomic<unsigned> count = 0;
    return file.parent_path() / (".plovik-" + std::to_string(::getpid()) + "-" + std::to_string(++count));
}

/// Removes what has this name unless it was put in its place. Keeps errno.
class Temporary {
public:
    explicit Temporary(fs::path name) : name_(std::move(name)) {}
    ~Temporary()
    {
        const int error = errno;
        if (!isPlaced_)
            ::unlink(name_.c_str());
        errno = error;
    }
    Temporary(const Temporary&) = delete;
    Temporary& operator=(const Temporary&) = delete;

    bool place(const fs::path& file)
    {
        isPlaced_ = ::rename(name_.c_str(), file.c_str()) == 0;
        return isPlaced_;
    }

private:
    fs::path name_;
    bool isPlaced_ = false;
};

/// A new, empty file beside `file`; not open when none can be made. The kernel applies the user's mask to its mode:
/// asking for the mask would mean to change it for the whole process.
UniqueFd makeBeside(const fs::path& file, fs::path& name)
{
    for (int attempt = 0; attempt < mostAttempts; ++attempt) {
        name = nameBeside(file);
        UniqueFd made(::open(name.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC | O_NOFOLLOW, 0666));
        if (made || errno != EEXIST)
            return made;
    }
    return {};
}

/// Access lists are among these: without them, the group's part of the mode would mean another one.
void copyAttributes(const fs::path& from, const UniqueFd& to)
{
    const ssize_t size = ::llistxattr(from.c_str(), nullptr, 0);
    std::vector<char> names(size > 0 ? static_cast<std::size_t>(size) : 0);
    const ssize_t used = names.empty() ? 0 : ::llistxattr(from.c_str(), names.data(), names.size());
    std::string_view rest(names.data(), used > 0 ? static_cast<std::size_t>(used) : 0);
    while (!rest.empty()) {
        const std::string name(rest.substr(0, rest.find('\0')));
        rest.remove_prefix(std::min(rest.size(), name.size() + 1));
        std::vector<char> value(64 * 1024); // the longest that Linux knows
        const ssize_t length = ::lgetxattr(from.c_str(), name.c_str(), value.data(), value.size());
        if (length >= 0)
            ::fsetxattr(to.get(), name.c_str(), value.data(), static_cast<std::size_t>(length), 0);
    }
}

/// Gives a new file the owner, attributes and mode of the one that it replaces. The mode comes last, because changing
/// the owner takes some of it away.
bool takeOver(const fs::path& previous, const struct stat& look, const UniqueFd& made)
{
    struct stat own{};
    if (::fstat(made.get(), &own) != 0)
        return false;
    // Only root may give a file away; everybody may leave it to a group of theirs.
    if ((own.st_uid != look.st_uid || own.st_gid != look.st_gid) &&
        ::fchown(made.get(), look.st_uid, look.st_gid) != 0 && ::fchown(made.get(), own.st_uid, look.st_gid) != 0)
        errno = 0;
    copyAttributes(previous, made);
    return ::fchmod(made.get(), look.st_mode & 07777U) == 0;
}

/// As git does: who may read may execute.
bool setExecutable(const UniqueFd& file, bool isExecutable)
{
    struct stat own{};
    if (::fstat(file.get(), &own) != 0)
        return false;
    const mode_t mode = own.st_mode & 07777U;
    const mode_t wanted = isExecutable ? mode | ((mode & 0444U) >> 2U) : mode & ~mode_t{0111};
    return wanted == mode || ::fchmod(file.get(), wanted) == 0;
}

bool writeAll(const UniqueFd& file, std::string_view bytes)
{
    while (!bytes.empty()) {
        const ssize_t written = ::write(file.get(), bytes.data(), bytes.size());
        if (written < 0 && errno == EINTR)
            continue;
        if (written <= 0)
            return false;
        bytes.remove_prefix(static_cast<std::size_t>(written));
    }
    return true;
}

} // namespace

bool replaceFile(const fs::path& file, std::string_view bytes, const std::optional<bool>& isExecutable)
{
    struct stat previous{};
    const bool exists = ::lstat(file.c_str(), &previous) == 0 && S_ISREG(previous.st_mode);
    fs::path name;
    UniqueFd made = makeBeside(file, name);
    if (!made)
        return false;
    Temporary temporary(name);
    // Some file systems report a full disk only when they are told to write now, or when the file is closed.
    const bool isWritten = (!exists || takeOver(file, previous, made)) &&
                           (!isExecutable || setExecutable(made, *isExecutable)) && writeAll(made, bytes) &&
                           ::fsync(made.get()) == 0 && ::close(made.release()) == 0;
    return isWritten && temporary.place(file);
}

bool replaceByLink(const fs::path& link, const std::string& target)
{
    for (int attempt = 0; attempt < mostAttempts; ++attempt) {
        const fs::path name = nameBeside(link);
        if (::symlink(target.c_str(), name.c_str()) == 0)
            return Temporary(name).place(link);
        if (errno != EEXIST)
            return false;
    }
    return false;
}

} // namespace gitkit
