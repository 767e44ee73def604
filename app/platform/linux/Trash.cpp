// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/platform/Trash.h"

#include "GitKit/UniqueFd.h"

#include <QCoreApplication>
#include <QString>

#include <gio/gio.h>

#include <fcntl.h>
#include <memory>
#include <stdexcept>
#include <string>
#include <sys/stat.h>

namespace plovik {

namespace {

QString shownName(const std::filesystem::path& path)
{
    const std::unique_ptr<gchar, decltype(&g_free)> name(g_filename_display_basename(path.c_str()), &g_free);
    return QString::fromUtf8(name.get());
}

struct Text {
    Q_DECLARE_TR_FUNCTIONS(Trash)
};

[[noreturn]] void fail(const QString& sentence) { throw std::runtime_error(sentence.toStdString()); }

[[noreturn]] void fail(const std::filesystem::path& path, const char* reason)
{
    const QString name = shownName(path);
    if (!reason)
        fail(Text::tr("“%1” could not be moved to the Trash: the desktop gives no reason.").arg(name));
    fail(Text::tr("“%1” could not be moved to the Trash: %2").arg(name, QString::fromUtf8(reason)));
}

/// Returns a descriptor that stays on this file when the file is moved.
gitkit::UniqueFd descriptorOf(const std::filesystem::path& path)
{
    return gitkit::UniqueFd(
        ::open(path.c_str(), O_PATH | O_NOFOLLOW | O_CLOEXEC)); // NOLINT(cppcoreguidelines-pro-type-vararg)
}

} // namespace

void moveToTrash(const std::filesystem::path& path)
{
    const gitkit::UniqueFd file = descriptorOf(path);
    struct stat before{};
    if (file.get() < 0 || ::fstat(file.get(), &before) != 0)
        fail(path, g_strerror(errno));

    const std::unique_ptr<GFile, decltype(&g_object_unref)> object(g_file_new_for_path(path.c_str()), &g_object_unref);
    GError* error = nullptr;
    if (g_file_trash(object.get(), nullptr, &error) == 0) {
        const std::unique_ptr<GError, decltype(&g_error_free)> held(error, &g_error_free);
        fail(path, error ? error->message : nullptr);
    }

    // The service's word is checked: a file that has left its place and still exists is in the Trash.
    struct stat after{};
    struct stat there{};
    const bool isGone = ::lstat(path.c_str(), &there) != 0 || there.st_ino != before.st_ino;
    if (!isGone)
        fail(Text::tr("“%1” could not be moved to the Trash: it is still in its place.").arg(shownName(path)));
    if (::fstat(file.get(), &after) != 0 || after.st_nlink == 0)
        fail(Text::tr("“%1” could not be moved to the Trash: it was deleted instead.").arg(shownName(path)));
}

} // namespace plovik
