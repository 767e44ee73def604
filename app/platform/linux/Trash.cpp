// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/platform/Trash.h"

#include "app/platform/linux/UniqueFd.h"

#include <gio/gio.h>

#include <fcntl.h>
#include <memory>
#include <stdexcept>
#include <string>
#include <sys/stat.h>

namespace plovik {

namespace {

std::string shownName(const std::filesystem::path& path)
{
    const std::unique_ptr<gchar, decltype(&g_free)> name(g_filename_display_basename(path.c_str()), &g_free);
    return name.get();
}

[[noreturn]] void fail(const std::filesystem::path& path, const std::string& reason)
{
    throw std::runtime_error("“" + shownName(path) + "” could not be moved to the Trash: " + reason);
}

/// The very file, wherever it is moved.
UniqueFd held(const std::filesystem::path& path)
{
    return UniqueFd(::open(path.c_str(), O_PATH | O_NOFOLLOW | O_CLOEXEC)); // NOLINT(cppcoreguidelines-pro-type-vararg)
}

} // namespace

void moveToTrash(const std::filesystem::path& path)
{
    const UniqueFd file = held(path);
    struct stat before{};
    if (file.get() < 0 || ::fstat(file.get(), &before) != 0)
        fail(path, g_strerror(errno));

    const std::unique_ptr<GFile, decltype(&g_object_unref)> object(g_file_new_for_path(path.c_str()), &g_object_unref);
    GError* error = nullptr;
    if (g_file_trash(object.get(), nullptr, &error) == 0) {
        const std::string reason = error != nullptr ? error->message : "the desktop gives no reason.";
        g_clear_error(&error);
        fail(path, reason);
    }

    // A service that says yes is not yet believed: the file has left its place and exists, so it is in the Trash.
    struct stat after{};
    struct stat there{};
    const bool isGone = ::lstat(path.c_str(), &there) != 0 || there.st_ino != before.st_ino;
    if (!isGone)
        fail(path, "it is still in its place.");
    if (::fstat(file.get(), &after) != 0 || after.st_nlink == 0)
        fail(path, "it was deleted instead.");
}

} // namespace plovik
