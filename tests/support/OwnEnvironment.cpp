// SPDX-License-Identifier: GPL-3.0-or-later
#include "tests/support/OwnEnvironment.h"

#include "tests/support/TemporaryFolder.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <pwd.h>
#include <stdexcept>
#include <string>
#include <string_view>
#include <system_error>
#include <unistd.h>
#include <vector>

#include <sys/stat.h>
#include <sys/statvfs.h>

#if __has_feature(address_sanitizer)
#include <sanitizer/lsan_interface.h>
#endif

namespace fs = std::filesystem;

namespace {

using Environment = std::vector<std::string>;

// Holds the process and its folder. The process is named because a program that a test starts inherits the variable.
constexpr const char* marker = "PLOVIK_TEST_ENVIRONMENT";

constexpr std::array letThrough{"PATH",
                                "LD_LIBRARY_PATH",
                                "ASAN_OPTIONS",
                                "UBSAN_OPTIONS",
                                "ASAN_SYMBOLIZER_PATH",
                                "UBSAN_SYMBOLIZER_PATH",
                                "LLVM_PROFILE_FILE",
                                "PLOVIK_ACTIONS",
                                "PLOVIK_SEED",
                                "PLOVIK_TEST_GIT",
                                "PLOVIK_TOPICS"};

// The core files of DejaVu alone, wherever the system keeps its fonts and whatever else it has. Folders have to pass
// the globs too, so only names with a dot are rejected.
constexpr std::string_view fonts = R"(<?xml version="1.0"?>
<!DOCTYPE fontconfig SYSTEM "urn:fontconfig:fonts.dtd">
<fontconfig>
  <dir>/usr/share/fonts</dir>
  <dir>/usr/local/share/fonts</dir>
  <cachedir>/var/cache/fontconfig</cachedir>
  <cachedir prefix="xdg">fontconfig</cachedir>
  <selectfont>
    <rejectfont><glob>*.*</glob></rejectfont>
    <acceptfont>
      <glob>*/DejaVuSans.ttf</glob>
      <glob>*/DejaVuSans-Bold.ttf</glob>
      <glob>*/DejaVuSansMono.ttf</glob>
      <glob>*/DejaVuSansMono-Bold.ttf</glob>
      <glob>*/DejaVuSerif.ttf</glob>
      <glob>*/DejaVuSerif-Bold.ttf</glob>
    </acceptfont>
  </selectfont>
  <alias binding="same"><family>sans-serif</family><prefer><family>DejaVu Sans</family></prefer></alias>
  <alias binding="same"><family>serif</family><prefer><family>DejaVu Serif</family></prefer></alias>
  <alias binding="same"><family>monospace</family><prefer><family>DejaVu Sans Mono</family></prefer></alias>
</fontconfig>
)";

// The people of the tests stand in a file, because what git inherits of its people from the environment is removed.
constexpr std::string_view people = R"([author]
	name = Ada
	email = ada@example.org
[committer]
	name = Charles
	email = charles@example.org
)";

// Caches that these libraries keep for the life of the process. The scanner of source-highlight forgets a part of every
// definition that it reads, and reads each definition once.
constexpr std::string_view leaks = R"(leak:libfontconfig
leak:libglib-2.0
leak:libgobject-2.0
leak:libdbus-1
leak:libQt6Gui
leak:libQt6DBus
leak:libQt6Widgets
leak:libsource-highlight
)";

std::string inherited(const char* name)
{
    const char* const value = std::getenv(name);
    return value ? value : "";
}

bool allowsPrograms(const fs::path& folder)
{
    struct statvfs system{};
    return ::access(folder.c_str(), W_OK | X_OK) == 0 && ::statvfs(folder.c_str(), &system) == 0 &&
           (system.f_flag & ST_NOEXEC) == 0;
}

/// Returns a new folder with a path short enough for sockets. TMPDIR comes last because its path may be long, hold odd
/// characters or lie inside a repository.
fs::path newFolder()
{
    const std::array<fs::path, 3> places{"/tmp", "/var/tmp", inherited("TMPDIR")};
    const auto* const place = std::ranges::find_if(places, allowsPrograms);
    if (place == places.end())
        throw std::runtime_error("the tests need a temporary folder where programs may be started");
    std::string pattern = (*place / "plovik-XXXXXX").string();
    if (::mkdtemp(pattern.data()) == nullptr)
        throw std::system_error(errno, std::generic_category(), pattern);
    return fs::canonical(pattern);
}

Environment inheritedPart()
{
    Environment kept;
    for (char** entry = environ; *entry != nullptr; ++entry) {
        const std::string_view variable = *entry;
        const std::string_view name = variable.substr(0, variable.find('='));
        if (name.starts_with("GTEST_") || std::ranges::find(letThrough, name) != letThrough.end())
            kept.emplace_back(variable);
    }
    return kept;
}

void addFolders(Environment& environment, const fs::path& folder)
{
    for (const auto& [variable, name] : {std::pair{"HOME", "home"},
                                         {"TMPDIR", "tmp"},
                                         {"XDG_CONFIG_HOME", "config"},
                                         {"XDG_CACHE_HOME", "cache"},
                                         {"XDG_STATE_HOME", "state"},
                                         {"XDG_RUNTIME_DIR", "run"},
                                         {"XDG_CONFIG_DIRS", "no config"},
                                         {"GIT_TEMPLATE_DIR", "template"}})
    {
        fs::create_directory(folder / name);
        fs::permissions(folder / name, fs::perms::owner_all);
        environment.push_back(variable + ("=" + (folder / name).string()));
    }
    // The desktop makes this one when it is first needed.
    environment.push_back("XDG_DATA_HOME=" + (folder / "data/of its own").string());
    environment.emplace_back("XDG_DATA_DIRS=/usr/share");
    environment.push_back("GIT_CEILING_DIRECTORIES=" + (folder / "tmp").string());
}

void addSanitizers(Environment& environment, const fs::path& folder)
{
    writeFile(folder / "leaks.supp", leaks);
    environment.push_back("LSAN_OPTIONS=suppressions=" + (folder / "leaks.supp").string() +
                          ":print_suppressions=0:" + inherited("LSAN_OPTIONS"));
    if (inherited("UBSAN_OPTIONS").empty())
        environment.emplace_back("UBSAN_OPTIONS=print_stacktrace=1");
}

Environment ownEnvironment(const fs::path& folder)
{
    Environment environment = inheritedPart();
    addFolders(environment, folder);
    addSanitizers(environment, folder);
    writeFile(folder / "fonts.conf", fonts);
    environment.push_back("FONTCONFIG_FILE=" + (folder / "fonts.conf").string());
    for (const char* const variable :
         {"LANG=C.UTF-8", "LC_ALL=C.UTF-8", "TZ=UTC", "QT_QPA_PLATFORM=offscreen", "GSETTINGS_BACKEND=memory",
          "GIT_CONFIG_SYSTEM=/dev/null", "GIT_CONFIG_NOSYSTEM=1"})
        environment.emplace_back(variable);
    writeFile(folder / "gitconfig", people);
    environment.push_back("GIT_CONFIG_GLOBAL=" + (folder / "gitconfig").string());
    environment.push_back(marker + ("=" + std::to_string(::getpid()) + ":" + folder.string()));
    return environment;
}

/// Sets what a process inherits besides its environment.
void resetProcess(const fs::path& folder)
{
    fs::current_path(folder / "home");
    ::umask(022);
    sigset_t none;
    ::sigemptyset(&none);
    ::sigprocmask(SIG_SETMASK, &none, nullptr);
    for (const int number : {SIGCHLD, SIGPIPE})
        ::signal(number, SIG_DFL);
}

[[noreturn]] void startAnew(char** arguments, const fs::path& folder)
{
    Environment environment = ownEnvironment(folder);
    std::vector<char*> pointers;
    std::ranges::transform(environment, std::back_inserter(pointers), [](std::string& entry) { return entry.data(); });
    pointers.push_back(nullptr);
    resetProcess(folder);
    ::execve("/proc/self/exe", arguments, pointers.data());
    throw std::system_error(errno, std::generic_category(), "the test program cannot be started anew");
}

} // namespace

bool userHasAccount() { return ::getpwuid(::getuid()) != nullptr; }

OwnEnvironment::OwnEnvironment(char** arguments)
{
    const std::string mine = std::to_string(::getpid()) + ":";
    const std::string marked = inherited(marker);
    if (!marked.starts_with(mine))
        startAnew(arguments, newFolder());
    folder_ = marked.substr(mine.size());
    ::unsetenv(marker);
}

OwnEnvironment::~OwnEnvironment()
{
#if __has_feature(address_sanitizer)
    // At exit the list of what may leak, which is read only when something leaks, would be gone with the folder.
    __lsan_do_leak_check();
#endif
    std::error_code ignored;
    fs::current_path("/", ignored);
    removeWithRights(folder_);
}
