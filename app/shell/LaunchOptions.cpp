// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/shell/LaunchOptions.h"

#include <QCommandLineParser>

#include <charconv>
#include <string_view>

using namespace Qt::StringLiterals;

namespace plovik {

namespace {

// QCommandLineParser can print a help only once there is an application, and --help must work without a display.
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

// File names are bytes. Latin-1 carries all bytes through the parser unchanged.
QString parserText(std::string_view bytes)
{
    return QString::fromLatin1(bytes.data(), static_cast<qsizetype>(bytes.size()));
}

std::string bytesOf(const QString& parserText) { return parserText.toLatin1().toStdString(); }

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

bool takeShow(LaunchOptions& options, std::string_view value)
{
    const std::size_t equals = value.find('=');
    options.show = sectionNamed(value);
    options.window = windowNamed(value.substr(0, equals));
    if (options.window == LaunchWindow::settings && equals != std::string_view::npos)
        options.settingsTab = QString::fromUtf8(value.substr(equals + 1));
    return options.show || options.window != LaunchWindow::fitting;
}

bool takeAppearance(LaunchOptions& options, std::string_view value)
{
    const QString wanted = QString::fromUtf8(value);
    options.appearance = appearanceNamed(wanted);
    return rawValue(*options.appearance) == wanted;
}

bool takeAction(LaunchOptions& options, std::string_view value)
{
    options.action = value;
    return value == launchActions::openRepository || value == launchActions::recentRepository;
}

bool takeScreenshot(LaunchOptions& options, std::string_view value)
{
    if (value.empty())
        return false;
    options.screenshot = std::filesystem::absolute(value);
    return true;
}

std::optional<int> number(std::string_view text)
{
    int value = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    if (error != std::errc{} || end != text.data() + text.size() || value < 1 || value > 20'000)
        return std::nullopt;
    return value;
}

bool takeSize(LaunchOptions& options, std::string_view value)
{
    const std::size_t cross = value.find('x');
    if (cross == std::string_view::npos)
        return false;
    const auto width = number(value.substr(0, cross));
    const auto height = number(value.substr(cross + 1));
    options.size = QSize(width.value_or(0), height.value_or(0));
    return width && height;
}

struct Option {
    QString name;
    bool (*take)(LaunchOptions& options, std::string_view value); ///< returns false for an invalid value
};

const Option valueOptions[] = {
    {u"show"_s, &takeShow}, {u"appearance"_s, &takeAppearance}, {u"screenshot"_s, &takeScreenshot},
    {u"size"_s, &takeSize}, {u"action"_s, &takeAction},
};

LaunchAnswer misunderstood(const std::string& why)
{
    return {"plovik-app: " + why + "\nTry 'plovik-app --help'.\n", 2};
}

} // namespace

std::variant<LaunchOptions, LaunchAnswer> parseLaunchOptions(std::span<char* const> arguments)
{
    QCommandLineParser parser;
    parser.addOptions({{u"help"_s, {}}, {u"version"_s, {}}});
    for (const Option& each : valueOptions)
        parser.addOption({each.name, {}, u"value"_s});
    QStringList texts{u"plovik-app"_s};
    for (const char* const argument : arguments)
        texts.append(parserText(argument));

    if (!parser.parse(texts))
        return misunderstood(bytesOf(parser.errorText()));
    if (parser.isSet(u"help"_s))
        return LaunchAnswer{std::string(usage), 0};
    if (parser.isSet(u"version"_s))
        return LaunchAnswer{"Plovik " PLOVIK_VERSION "\n", 0};
    LaunchOptions options;
    for (const Option& each : valueOptions) {
        if (parser.isSet(each.name) && !each.take(options, bytesOf(parser.value(each.name))))
            return misunderstood("'--" + each.name.toStdString() + "' needs a value that makes sense");
    }
    for (const QString& folder : parser.positionalArguments())
        options.folders.push_back(
            std::filesystem::absolute(folder.isEmpty() ? "." : bytesOf(folder)).lexically_normal());
    return options;
}

} // namespace plovik
