// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/platform/Editors.h"

#include "app/platform/FileUri.h"

#include <QCoreApplication>

#include <gio/gdesktopappinfo.h>
#include <gio/gio.h>

#include <algorithm>
#include <array>
#include <fcntl.h>
#include <map>
#include <memory>
#include <optional>
#include <set>
#include <stdexcept>
#include <string_view>
#include <sys/stat.h>
#include <system_error>
#include <unistd.h>

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

/// The user's folder comes first, since an entry in it replaces the system's entry of the same name.
std::vector<std::filesystem::path> applicationFolders()
{
    std::vector<std::filesystem::path> folders{std::filesystem::path(g_get_user_data_dir()) / "applications"};
    for (const gchar* const* folder = g_get_system_data_dirs(); *folder != nullptr; ++folder)
        folders.push_back(std::filesystem::path(*folder) / "applications");
    return folders;
}

/// Returns the path of each desktop entry by its name without ".desktop".
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
    // This is also null for an entry whose program is not installed.
    AppInfo info(g_desktop_app_info_new_from_filename(path.c_str()));
    return info && g_desktop_app_info_get_is_hidden(info.get()) == 0 ? std::move(info) : nullptr;
}

/// Kinds of files that programs of the desktop run. Scripts are known by their beginning, too.
constexpr std::array<const char*, 9> runKinds{"application/x-executable",
                                              "application/x-desktop",
                                              "application/x-java-archive",
                                              "application/x-shellscript",
                                              "application/x-ms-dos-executable",
                                              "application/x-msdownload",
                                              "application/x-msi",
                                              "application/x-bat",
                                              "application/vnd.appimage"};

/// What is looked at of a regular file.
struct Sample {
    std::string beginning;
    bool isMarkedAsProgram = false;
};

/// Returns nullopt for what is no regular file, or cannot be read. Opening a pipe would wait, so it is not waited for.
std::optional<Sample> sampleOf(const std::filesystem::path& file)
{
    const int opened = ::open(file.c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC | O_NOCTTY);
    if (opened < 0)
        return std::nullopt;
    struct stat found{};
    Sample sample{std::string(512, '\0')};
    const bool isRegular = ::fstat(opened, &found) == 0 && S_ISREG(found.st_mode);
    const ssize_t size = isRegular ? ::read(opened, sample.beginning.data(), sample.beginning.size()) : -1;
    ::close(opened);
    if (size < 0)
        return std::nullopt;
    sample.beginning.resize(static_cast<std::size_t>(size));
    sample.isMarkedAsProgram = (found.st_mode & (S_IXUSR | S_IXGRP | S_IXOTH)) != 0;
    return sample;
}

/// Returns whether the desktop might run a file instead of showing it: because it is marked as a program, or because
/// others run files of its kind.
bool mightRun(const std::filesystem::path& file)
{
    const std::optional<Sample> sample = sampleOf(file);
    if (!sample)
        return false;
    const std::string& beginning = sample->beginning;
    if (sample->isMarkedAsProgram || beginning.starts_with("#!") ||
        beginning.starts_with("\x7f"
                              "ELF") ||
        beginning.starts_with("MZ"))
        return true;
    gchar* const type = g_content_type_guess(file.c_str(), reinterpret_cast<const guchar*>(beginning.data()),
                                             beginning.size(), nullptr);
    const bool isRun = std::any_of(runKinds.begin(), runKinds.end(),
                                   [type](const char* kind) { return g_content_type_is_a(type, kind) != 0; });
    g_free(type);
    return isRun;
}

/// Opens a file with the desktop's default for it, and one that it might run with the default for text.
bool openWithDefault(const std::filesystem::path& file, GError** error)
{
    const std::string uri = fileUri(file);
    if (!mightRun(file))
        return g_app_info_launch_default_for_uri(uri.c_str(), nullptr, error) != 0;
    const std::unique_ptr<GAppInfo, decltype(&g_object_unref)> editor(
        g_app_info_get_default_for_type("text/plain", FALSE), &g_object_unref);
    if (!editor) {
        g_set_error_literal(
            error, G_IO_ERROR, G_IO_ERROR_NOT_SUPPORTED,
            QCoreApplication::translate("Editors", "no application for text is installed").toUtf8().constData());
        return false;
    }
    std::string bytes = uri;
    GList list{bytes.data(), nullptr, nullptr};
    return g_app_info_launch_uris(editor.get(), &list, nullptr, error) != 0;
}

/// Returns the program of an entry, without the quotes that its name may stand in; nullopt for one that cannot be read.
std::optional<std::string> programOf(GDesktopAppInfo& info)
{
    const char* const line = g_app_info_get_commandline(G_APP_INFO(&info));
    gchar** words = nullptr;
    if (line == nullptr || g_shell_parse_argv(line, nullptr, &words, nullptr) == 0)
        return std::nullopt;
    std::string program = words[0];
    g_strfreev(words);
    return program;
}

/// Returns why an application or a file could not be opened, as a sentence. Frees the error.
std::string takeSentence(const char* name, GError* error)
{
    const QString shown = QString::fromUtf8(name);
    const QString sentence =
        error ? QCoreApplication::translate("Editors", "“%1” could not be opened: %2")
                    .arg(shown, QString::fromUtf8(error->message))
              : QCoreApplication::translate("Editors", "“%1” could not be opened: the desktop gives no reason.")
                    .arg(shown);
    g_clear_error(&error);
    return sentence.toStdString();
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
        throw std::runtime_error(QCoreApplication::translate("Editors", "“%1” is no longer installed.")
                                     .arg(QString::fromStdString(application.name))
                                     .toStdString());
    std::vector<std::string> uris;
    std::ranges::transform(files, std::back_inserter(uris), &fileUri);
    GList* list = nullptr;
    for (auto uri = uris.rbegin(); uri != uris.rend(); ++uri)
        list = g_list_prepend(list, uri->data());
    GError* error = nullptr;
    const bool isOpen = g_app_info_launch_uris(G_APP_INFO(info.get()), list, nullptr, &error) != 0;
    g_list_free(list);
    if (!isOpen)
        throw std::runtime_error(takeSentence(application.name.c_str(), error));
}

std::optional<std::vector<std::string>> placeArguments(const std::filesystem::path& program,
                                                       const std::filesystem::path& file, Place place)
{
    const std::string name = program.stem().string(); // without ".sh"
    const auto isOneOf = [&name](std::initializer_list<std::string_view> names) {
        return std::ranges::any_of(names, [&name](std::string_view known) { return name == known; });
    };
    const std::string line = std::to_string(place.line);
    const std::string column = std::to_string(std::max(place.column, 1));
    const std::string behind = file.string() + ":" + line + ":" + column;
    if (isOneOf({"code", "code-oss", "code-insiders", "codium", "vscodium", "cursor"}))
        return std::vector{std::string("--goto"), behind};
    if (isOneOf({"subl", "sublime_text", "zed", "zeditor"}))
        return std::vector{behind};
    if (isOneOf(
            {"kate", "phpstorm", "webstorm", "idea", "pycharm", "goland", "rubymine", "clion", "rider", "rustrover"}))
        return std::vector<std::string>{"--line", line, "--column", column, file.string()};
    if (isOneOf({"emacs", "emacsclient", "gedit"}))
        return std::vector<std::string>{"+" + line + ":" + column, file.string()};
    if (isOneOf({"gvim"}))
        return std::vector<std::string>{"+" + line, file.string()};
    return std::nullopt;
}

void openAt(const Application& application, const std::filesystem::path& file, Place place)
{
    const AppInfo info = appInfo(application.path);
    const std::optional<std::string> program = info ? programOf(*info) : std::nullopt;
    const bool isInTerminal = info && g_desktop_app_info_get_boolean(info.get(), G_KEY_FILE_DESKTOP_KEY_TERMINAL) != 0;
    const auto arguments = program && !isInTerminal ? placeArguments(*program, file, place) : std::nullopt;
    if (!arguments) {
        open(application, std::span(&file, 1));
        return;
    }
    std::vector<std::string> command{*program};
    command.insert(command.end(), arguments->begin(), arguments->end());
    std::vector<char*> pointers;
    std::ranges::transform(command, std::back_inserter(pointers), [](std::string& part) { return part.data(); });
    pointers.push_back(nullptr);
    GError* error = nullptr;
    const GSpawnFlags flags =
        static_cast<GSpawnFlags>(G_SPAWN_SEARCH_PATH | G_SPAWN_STDOUT_TO_DEV_NULL | G_SPAWN_STDERR_TO_DEV_NULL);
    if (g_spawn_async(nullptr, pointers.data(), nullptr, flags, nullptr, nullptr, nullptr, &error) == 0)
        throw std::runtime_error(takeSentence(application.name.c_str(), error));
}

void openWithDefaults(Files files)
{
    std::optional<std::runtime_error> first;
    for (const auto& file : files) {
        GError* error = nullptr;
        if (openWithDefault(file, &error))
            continue;
        const std::unique_ptr<gchar, decltype(&g_free)> name(g_filename_display_basename(file.c_str()), &g_free);
        const std::string sentence = takeSentence(name.get(), error);
        if (!first)
            first.emplace(sentence);
    }
    if (first)
        throw *first;
}

} // namespace plovik::editors
