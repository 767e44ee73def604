// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/shell/LaunchOptions.h"

#include "app/store/ShownText.h"

#include <QCommandLineParser>
#include <QCoreApplication>

#include <algorithm>
#include <charconv>
#include <string_view>
#include <utility>

using namespace Qt::StringLiterals;

namespace plovik {

namespace {

struct LaunchTexts {
    Q_DECLARE_TR_FUNCTIONS(plovik::LaunchOptions)
};

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
    if (name == "timeline")
        return SidebarItem::timeline();
    if (name == "where-head-was")
        return SidebarItem::refLog("HEAD");
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
    const std::size_t equals = std::min(value.find('='), value.size());
    const std::string_view name = value.substr(0, equals);
    options.action.name = name;
    options.action.argument = value.substr(std::min(equals + 1, value.size()));
    if (name == launchActions::cloneRepository)
        return !options.action.argument.empty();
    return equals == value.size() && (name == launchActions::openRepository ||
                                      name == launchActions::recentRepository || name == launchActions::newRepository);
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
    const char* value;                                            ///< what is given, in capitals
    const char* help;                                             ///< in lines
    bool (*take)(LaunchOptions& options, std::string_view value); ///< returns false for an invalid value
};

const Option valueOptions[] = {
    {u"show"_s, QT_TRANSLATE_NOOP("plovik::LaunchOptions", "SECTION"),
     QT_TRANSLATE_NOOP(
         "plovik::LaunchOptions",
         "open with working-copy, history, stashes, timeline or where-head-was; or open the window welcome\n"
         "or settings, with the tab of that title: settings=editor"),
     &takeShow},
    {u"appearance"_s, QT_TRANSLATE_NOOP("plovik::LaunchOptions", "SCHEME"),
     QT_TRANSLATE_NOOP("plovik::LaunchOptions", "use light, dark or the system's colours for this run"),
     &takeAppearance},
    {u"screenshot"_s, QT_TRANSLATE_NOOP("plovik::LaunchOptions", "FILE"),
     QT_TRANSLATE_NOOP("plovik::LaunchOptions",
                       "write a picture of the first window to FILE and quit; needs no display"),
     &takeScreenshot},
    {u"size"_s, QT_TRANSLATE_NOOP("plovik::LaunchOptions", "WxH"),
     QT_TRANSLATE_NOOP("plovik::LaunchOptions", "the window's size in pixels"), &takeSize},
    {u"action"_s, QT_TRANSLATE_NOOP("plovik::LaunchOptions", "NAME"),
     QT_TRANSLATE_NOOP("plovik::LaunchOptions",
                       "open-repository shows what can be opened, recent-repository opens the latest,\n"
                       "clone-repository=ADDRESS clones into FOLDER, new-repository makes one in FOLDER"),
     &takeAction},
};

using HelpRow = std::pair<QString, QString>; ///< an option with its value, and what it does

std::vector<HelpRow> helpRows()
{
    std::vector<HelpRow> rows;
    for (const Option& each : valueOptions)
        rows.emplace_back(u"--%1 %2"_s.arg(each.name, LaunchTexts::tr(each.value)), LaunchTexts::tr(each.help));
    rows.emplace_back(u"--help"_s, LaunchTexts::tr("print this and quit"));
    rows.emplace_back(u"--version"_s, LaunchTexts::tr("print the version and quit"));
    return rows;
}

QString help()
{
    const std::vector<HelpRow> rows = helpRows();
    qsizetype width = 0;
    for (const HelpRow& row : rows)
        width = std::max(width, row.first.size() + 1);
    QString text = LaunchTexts::tr("Usage: plovik-app [options] [FOLDER...]") + u"\n\n"_s +
                   LaunchTexts::tr("Opens each FOLDER's repository in a window of its own.") + u"\n\n"_s;
    for (HelpRow row : rows) {
        row.second.replace(u'\n', u'\n' + QString(width + 2, u' '));
        text += u"  "_s + row.first.leftJustified(width) + row.second + u'\n';
    }
    return text;
}

LaunchAnswer misunderstood(const QString& why)
{
    const QString advice = LaunchTexts::tr("Try 'plovik-app --help'.");
    return {u"plovik-app: %1\n%2\n"_s.arg(why, advice).toStdString(), 2};
}

/// Says why the parser has refused the arguments. Its own words are in the toolkit's language, which may be another.
QString whyRefused(const QCommandLineParser& parser, const QString& lastArgument)
{
    if (const QStringList unknown = parser.unknownOptionNames(); !unknown.isEmpty())
        return LaunchTexts::tr("Unknown option '%1'.").arg(shownText(bytesOf(unknown.front())));
    for (const Option& each : valueOptions) {
        if (lastArgument == u"--"_s + each.name)
            return LaunchTexts::tr("Missing value after '%1'.").arg(lastArgument);
    }
    return LaunchTexts::tr("The options '--help' and '--version' take no value.");
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
        return misunderstood(whyRefused(parser, texts.back()));
    if (parser.isSet(u"help"_s))
        return LaunchAnswer{help().toStdString(), 0};
    if (parser.isSet(u"version"_s))
        return LaunchAnswer{"Plovik " PLOVIK_VERSION "\n", 0};
    LaunchOptions options;
    for (const Option& each : valueOptions) {
        if (parser.isSet(each.name) && !each.take(options, bytesOf(parser.value(each.name))))
            return misunderstood(LaunchTexts::tr("'--%1' needs a value that makes sense").arg(each.name));
    }
    std::vector<std::filesystem::path>& folders =
        options.action.name.empty() ? options.folders : options.action.folders;
    for (const QString& folder : parser.positionalArguments())
        folders.push_back(std::filesystem::absolute(folder.isEmpty() ? "." : bytesOf(folder)).lexically_normal());
    return options;
}

} // namespace plovik
