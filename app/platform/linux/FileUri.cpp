// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/platform/FileUri.h"

#include <glib.h>

#include <memory>

namespace plovik {

namespace {

using GlibText = std::unique_ptr<gchar, decltype(&g_free)>;

} // namespace

std::string fileUri(const std::filesystem::path& path)
{
    const GlibText uri(g_filename_to_uri(path.c_str(), nullptr, nullptr), &g_free);
    return uri ? uri.get() : std::string();
}

std::optional<std::filesystem::path> pathOfFileUri(const std::string& uri)
{
    gchar* host = nullptr;
    const GlibText path(g_filename_from_uri(uri.c_str(), &host, nullptr), &g_free);
    const GlibText hostName(host, &g_free);
    if (!path || (host && std::string_view(host) != "localhost"))
        return std::nullopt;
    return path.get();
}

} // namespace plovik
