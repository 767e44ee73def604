// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/platform/Editors.h"

#include "app/platform/FileUri.h"

#include <gio/gdesktopappinfo.h>
#include <gio/gio.h>

#include <algorithm>
#include <array>
#include <map>
#include <memory>
#include <set>
#include <stdexcept>
#include <string_view>

namespace plovik::editors {

namespace {

struct Unref {
    void operator()(gpointer object) const { g_object_unref(object); }
};
using AppInfo = std::unique_ptr<GDesktopAppInfo, Unref>;

/// Desktop entries, by the names that distributions, vendors, Flatpak and Snap give them, without ".desktop". One that
/// ends in "*" stands for all that begin like it: some installers add a version or a serial number.
constexpr std::array knownEntries{
    "jetbrains-phpstorm*",
    "com.jetbrains.PhpStorm",
    "phpstorm_*",
    "jetbrains-webstorm*",
    "com.jetbrains.WebStorm",
    "webstorm_*",
    "jetbrains-idea*",
    "com.jetbrains.IntelliJ-IDEA*",
    "intellij-idea-*",
    "jetbrains-pycharm*",
    "com.jetbrains.PyCharm*",
    "pycharm-*",
    "jetbrains-goland*",
    "com.jetbrains.GoLand",
    "goland_*",
    "jetbrains-rubymine*",
    "com.jetbrains.RubyMine",
    "rubymine_*",
    "jetbrains-clion*",
    "com.jetbrains.CLion",
    "clion_*",
    "jetbrains-rider*",
    "com.jetbrains.Rider",
    "rider_*",
    "jetbrains-datagrip*",
    "com.jetbrains.DataGrip",
    "datagrip_*",
    "jetbrains-rustrover*",
    "com.jetbrains.RustRover",
    "rustrover_*",
    "jetbrains-fleet*",
    "android-studio",
    "jetbrains-studio*",
    "com.google.AndroidStudio",
    "android-studio_*",
    "code",
    "visual-studio-code",
    "code-oss",
    "com.visualstudio.code",
    "com.visualstudio.code-oss",
    "code_code",
    "code-insiders",
    "com.visualstudio.code.insiders",
    "code-insiders_*",
    "cursor",
    "codium",
    "vscodium",
    "com.vscodium.codium",
    "codium_codium",
    "sublime_text",
    "sublime-text",
    "com.sublimetext.three",
    "sublime-text_subl",
    "dev.zed.Zed",
    "zed",
    "org.kde.kate",
    "kate_kate",
    "org.gnome.TextEditor",
    "org.gnome.gedit",
    "gedit_gedit",
    "nvim",
    "io.neovim.nvim",
    "neovide",
    "gvim",
    "org.vim.Vim",
    "emacs",
    "org.gnu.emacs",
    "emacs_emacs",
    "emacsclient",
};

constexpr std::string_view suffix = ".desktop";

bool matches(std::string_view entry, std::string_view known)
{
    return known.ends_with('*') ? entry.starts_with(known.substr(0, known.size() - 1)) : entry == known;
}

/// The user's folder comes first: what is in it replaces what the system has under the same name.
std::vector<std::filesystem::path> applicationFolders()
{
    std::vector<std::filesystem::path> folders{std::filesystem::path(g_get_user_data_dir()) / "applications"};
    for (const gchar* const* folder = g_get_system_data_dirs(); *folder != nullptr; ++folder)
        folders.push_back(std::filesystem::path(*folder) / "applications");
    return folders;
}

/// Where each desktop entry is, by its name without ".desktop".
std::map<std::string, std::filesystem::path, std::less<>> desktopEntries()
{
    std::map<std::string, std::filesystem::path, std::less<>> entries;
    for (const auto& folder : applicationFolders()) {
        std::error_code unreadable;
        for (std::filesystem::directory_iterator file(folder, unreadable), end; !unreadable && file != end;
             file.increment(unreadable))
        {
            if (file->path().extension() == suffix)
                entries.emplace(file->path().stem().string(), file->path());
        }
    }
    return entries;
}

AppInfo appInfo(const std::filesystem::path& path)
{
    if (path.extension() != suffix || !path.is_absolute())
        return nullptr;
    // None for an entry whose program is not installed, too.
    AppInfo info(g_desktop_app_info_new_from_filename(path.c_str()));
    return info && g_desktop_app_info_get_is_hidden(info.get()) == 0 ? std::move(info) : nullptr;
}

std::string takeMessage(GError* error)
{
    std::string message = error ? error->message : "the desktop gives no reason.";
    g_clear_error(&error);
    return message;
}

[[noreturn]] void fail(const std::string& name, GError* error)
{
    throw std::runtime_error("“" + name + "” could not be opened: " + takeMessage(error));
}

} // namespace

std::optional<Application> at(const std::filesystem::path& path)
{
    const AppInfo info = appInfo(path);
    if (!info)
        return std::nullopt;
    return Application{path, g_app_info_get_display_name(G_APP_INFO(info.get()))};
}

std::vector<Application> known()
{
    std::vector<Application> found;
    std::set<std::filesystem::path> seen; // two entries can be links to one file
    const auto entries = desktopEntries();
    for (const std::string_view name : knownEntries) {
        for (const auto& [entry, path] : entries) {
            std::error_code missing;
            if (!matches(entry, name) || !seen.insert(std::filesystem::canonical(path, missing)).second)
                continue;
            if (auto application = at(path))
                found.push_back(*std::move(application));
        }
    }
    return found;
}

std::filesystem::path applicationsFolder() { return "/usr/share/applications"; }

std::string applicationPattern() { return "*" + std::string(suffix); }

void open(const Application& application, Files files)
{
    const AppInfo info = appInfo(application.path);
    if (!info)
        throw std::runtime_error("“" + application.name + "” is no longer installed.");
    std::vector<std::string> uris;
    std::ranges::transform(files, std::back_inserter(uris), &fileUri);
    GList* list = nullptr;
    for (auto uri = uris.rbegin(); uri != uris.rend(); ++uri)
        list = g_list_prepend(list, uri->data());
    GError* error = nullptr;
    const bool isOpen = g_app_info_launch_uris(G_APP_INFO(info.get()), list, nullptr, &error) != 0;
    g_list_free(list);
    if (!isOpen)
        fail(application.name, error);
}

void openWithDefaults(Files files)
{
    std::optional<std::runtime_error> first;
    for (const auto& file : files) {
        GError* error = nullptr;
        if (g_app_info_launch_default_for_uri(fileUri(file).c_str(), nullptr, &error) != 0)
            continue;
        const std::unique_ptr<gchar, decltype(&g_free)> name(g_filename_display_basename(file.c_str()), &g_free);
        const std::string sentence = "“" + std::string(name.get()) + "” could not be opened: " + takeMessage(error);
        if (!first)
            first.emplace(sentence);
    }
    if (first)
        throw *first;
}

} // namespace plovik::editors
