// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/shell/LaunchOptions.h"

#include <charconv>
#include <string_view>

namespace plovik {

namespace {

constexpr std::string_view usage =
    R"(Usage: plovik-app [options] [FOLDER...]

Opens each FOLDER's repository in a window of its own.

  --show SECTION      open with working-copy, history or stashes; or open the window welcome or settings,
                      with the tab of that title: settings=editor
  --appearance SCHEME use light, dark or the system's colours for this run
  --screenshot FILE   write a picture of the first window to FILE and quit; needs no display
  --size WxH          the window's size in pixels
  --action NAME       open-repository shows what can be opened, recent-repository opens the latest
  --help              print this and quit
  --version           print the version and quit
)";

std::optional<SidebarItem> sectionNamed(std::string_view name)
{
    if (name == "working-copy")
        return SidebarItem::workingCopy();
    if (name == "history")
        return SidebarItem::history();
    if (name == "stashes")
        return SidebarItem::stashes();
    return std::nullopt;
}

LaunchWindow windowNamed(std::string_view name)
{
    if (name == "welcome")
        return LaunchWindow::welcome;
    return name == "settings" ? LaunchWindow::settings : LaunchWindow::fitting;
}

QString textOf(std::string_view value) { return QString::fromUtf8(value.data(), static_cast<qsizetype>(value.size())); }

std::optional<int> number(std::string_view text)
{
    int value = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    if (error != std::errc{} || end != text.data() + text.size() || value < 1 || value > 20'000)
        return std::nullopt;
    return value;
}

std::optional<QSize> sizeNamed(std::string_view text)
{
    const std::size_t cross = text.find('x');
    if (cross == std::string_view::npos)
        return std::nullopt;
    const auto width = number(text.substr(0, cross));
    const auto height = number(text.substr(cross + 1));
    if (!width || !height)
        return std::nullopt;
    return QSize(*width, *height);
}

/// Takes one option's value in; false when it makes no sense.
bool takeValue(LaunchOptions& options, std::string_view name, std::string_view value)
{
    if (name == "--show") {
        options.show = sectionNamed(value);
        options.window = windowNamed(value.substr(0, value.find('=')));
        if (options.window == LaunchWindow::settings && value.find('=') != std::string_view::npos)
            options.settingsTab = textOf(value.substr(value.find('=') + 1));
        return options.show || options.window != LaunchWindow::fitting;
    }
    if (name == "--appearance") {
        const QString wanted = textOf(value);
        options.appearance = appearanceNamed(wanted);
        return rawValue(*options.appearance) == wanted;
    }
    if (name == "--action") {
        options.action = value;
        return value == launchActions::openRepository || value == launchActions::recentRepository;
    }
    if (name == "--screenshot") {
        options.screenshot = std::filesystem::absolute(value);
        return !value.empty();
    }
    const std::optional<QSize> size = sizeNamed(value);
    options.size = size.value_or(QSize());
    return size.has_value();
}

bool takesValue(std::string_view name)
{
    return name == "--show" || name == "--appearance" || name == "--action" || name == "--screenshot" ||
           name == "--size";
}

LaunchAnswer misunderstood(const std::string& why)
{
    return {"plovik-app: " + why + "\nTry 'plovik-app --help'.\n", 2};
}

} // namespace

std::variant<LaunchOptions, LaunchAnswer> parseLaunchOptions(std::span<char* const> arguments)
{
    LaunchOptions options;
    bool onlyFolders = false;
    for (std::size_t i = 0; i < arguments.size(); ++i) {
        const std::string_view argument = arguments[i];
        if (onlyFolders || !argument.starts_with("-")) {
            options.folders.push_back(std::filesystem::absolute(argument).lexically_normal());
        } else if (argument == "--") {
            onlyFolders = true;
        } else if (argument == "--help") {
            return LaunchAnswer{std::string(usage), 0};
        } else if (argument == "--version") {
            return LaunchAnswer{"Plovik " PLOVIK_VERSION "\n", 0};
        } else if (!takesValue(argument)) {
            return misunderstood("unknown option '" + std::string(argument) + "'");
        } else if (i + 1 == arguments.size() || !takeValue(options, argument, arguments[++i])) {
            return misunderstood("'" + std::string(argument) + "' needs a value that makes sense");
        }
    }
    return options;
}

} // namespace plovik
