// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/services/commandline/CommandLineTool.h"

#include "app/platform/AdministratorCommand.h"
#include "app/platform/OwnProgram.h"

#include <algorithm>
#include <cstdlib>
#include <fcntl.h>
#include <string_view>
#include <system_error>
#include <unistd.h>

namespace plovik {

namespace {

namespace fs = std::filesystem;

constexpr std::string_view toolName = "plovik";

std::string variable(const char* name)
{
    const char* const value = std::getenv(name);
    return value ? value : "";
}

bool isExecutableFile(const fs::path& path)
{
    std::error_code missing;
    return fs::is_regular_file(path, missing) && ::access(path.c_str(), X_OK) == 0;
}

bool isSame(const fs::path& one, const fs::path& other)
{
    std::error_code missing;
    const fs::path real = fs::canonical(one, missing);
    return !missing && real == fs::canonical(other, missing);
}

/// Returns whether a file can be made in `folder`, which may have to be made first.
bool canWrite(fs::path folder)
{
    std::error_code missing;
    while (!fs::exists(fs::symlink_status(folder, missing)) && folder != folder.root_path())
        folder = folder.parent_path();
    return fs::is_directory(folder, missing) && ::faccessat(AT_FDCWD, folder.c_str(), W_OK | X_OK, AT_EACCESS) == 0;
}

/// Returns the absolute target. Like the system, it takes a relative target from the link's folder, which may itself be
/// reached by links.
fs::path destination(const CommandLineTool::Installation& link)
{
    return link.target ? link.path.parent_path() / *link.target : fs::path();
}

[[noreturn]] void fail(const QString& sentence) { throw CommandLineTool::InstallError(sentence.toStdString()); }

/// `sentence` has a place for the path.
[[noreturn]] void fail(const QString& sentence, const fs::path& path)
{
    fail(sentence.arg(QString::fromStdString(path.string())));
}

[[noreturn]] void fail(const fs::path& link, const std::error_code& error)
{
    fail(CommandLineTool::tr("“%1” could not be made: %2.")
             .arg(QString::fromStdString(link.string()), QString::fromStdString(error.message())));
}

/// Makes a link with a new name beside `link`, so that renaming it replaces `link` in one step.
fs::path makeBeside(const fs::path& link, const fs::path& tool)
{
    constexpr int mostAttempts = 100;
    std::error_code error;
    for (int i = 0; i < mostAttempts; ++i) {
        const std::string name = "." + std::string(toolName) + "-" + std::to_string(::getpid()) + "-";
        fs::path beside = link.parent_path() / (name + std::to_string(i));
        fs::create_symlink(tool, beside, error);
        if (!error)
            return beside;
        if (error != std::errc::file_exists)
            break;
    }
    fail(link, error);
}

void makeLink(const fs::path& tool, const fs::path& link)
{
    std::error_code error;
    fs::create_directories(link.parent_path(), error);
    if (error)
        fail(link, error);
    // This fails when something was put there meanwhile.
    fs::create_symlink(tool, link, error);
    if (error)
        fail(link, error);
}

void replaceLink(const fs::path& tool, const fs::path& link)
{
    const fs::path beside = makeBeside(link, tool);
    std::error_code error;
    fs::rename(beside, link, error);
    if (!error)
        return;
    std::error_code ignored;
    fs::remove(beside, ignored);
    fail(link, error);
}

} // namespace

CommandLineTool::CommandLineTool()
    : CommandLineTool(placesFor(ownProgramFolder(), variable("HOME"), variable("PATH")), &runAsAdministrator)
{}

CommandLineTool::CommandLineTool(Places places, Administrator administrator)
    : places_(std::move(places)), administrator_(std::move(administrator))
{}

CommandLineTool::Places CommandLineTool::placesFor(fs::path programs, const fs::path& home,
                                                   const std::string& searchPath)
{
    Places places;
    places.programs = std::move(programs);
    for (std::size_t at = 0; at <= searchPath.size();) {
        const std::size_t end = std::min(searchPath.find(':', at), searchPath.size());
        // A relative folder depends on the terminal's working folder, so it holds no program of ours.
        if (const fs::path folder = searchPath.substr(at, end - at); folder.is_absolute())
            places.searchPath.push_back(folder);
        at = end + 1;
    }
    const fs::path own = home / ".local/bin";
    const auto isOwn = [&own](const fs::path& folder) {
        return (folder / "").lexically_normal() == (own / "").lexically_normal() || isSame(folder, own);
    };
    if (home.is_absolute() && std::ranges::any_of(places.searchPath, isOwn))
        places.linkFolders.push_back(own);
    places.linkFolders.emplace_back("/usr/local/bin");
    return places;
}

std::optional<fs::path> CommandLineTool::bundled() const
{
    fs::path tool = places_.programs / toolName;
    return places_.programs.is_absolute() && isExecutableFile(tool) ? std::optional(std::move(tool)) : std::nullopt;
}

std::optional<fs::path> CommandLineTool::packaged() const
{
    auto tool = bundled();
    if (!tool)
        return std::nullopt;
    const auto isItsFolder = [this](const fs::path& folder) { return isSame(folder, places_.programs); };
    if (std::ranges::any_of(places_.linkFolders, isItsFolder))
        return tool;
    const auto holdsOne = [](const fs::path& folder) { return isExecutableFile(folder / toolName); };
    const auto first = std::ranges::find_if(places_.searchPath, holdsOne);
    if (first == places_.searchPath.end() || !isItsFolder(*first))
        return std::nullopt;
    return *first / toolName;
}

std::optional<CommandLineTool::Installation> CommandLineTool::installation() const
{
    for (const fs::path& folder : places_.linkFolders) {
        Installation found;
        found.path = folder / toolName;
        std::error_code error;
        const fs::file_status status = fs::symlink_status(found.path, error);
        if (!fs::status_known(status) || !fs::exists(status))
            continue;
        if (fs::is_symlink(status))
            found.target = fs::read_symlink(found.path, error);
        const auto tool = bundled();
        found.isCurrent = found.target && tool && isSame(destination(found), *tool);
        return found;
    }
    return std::nullopt;
}

QString CommandLineTool::staleDescription(const Installation& installation)
{
    if (!installation.target)
        return tr("This is not a link to Plovik.");
    std::error_code missing;
    return fs::exists(destination(installation), missing) ? tr("Links to another copy of Plovik:")
                                                          : tr("Links to a file that no longer exists:");
}

fs::path CommandLineTool::linkFolder() const
{
    const auto writable = std::find_if(places_.linkFolders.begin(), places_.linkFolders.end() - 1, canWrite);
    return *writable;
}

bool CommandLineTool::install() const
{
    const auto tool = bundled();
    if (!tool)
        fail(tr("This copy of Plovik does not contain the command line tool."));
    const auto existing = installation();
    if (existing && !existing->target)
        fail(tr("%1 is not a link, so it was left alone. Remove it and try again."), existing->path);

    const fs::path link = existing ? existing->path : linkFolder() / toolName;
    if (!canWrite(link.parent_path()))
        return linkAsAdministrator(*tool, link);
    if (existing)
        replaceLink(*tool, link);
    else
        makeLink(*tool, link);
    return true;
}

bool CommandLineTool::linkAsAdministrator(const fs::path& tool, const fs::path& link) const
{
    const std::string folder = link.parent_path().string();
    std::vector<std::string> command{"/bin/ln", "-sfn", tool.string(), link.string()};
    // Two commands for one password need a shell.
    if (std::error_code missing; !fs::exists(folder, missing))
        command = {"/bin/sh", "-c",
                   "/bin/mkdir -p " + shellQuoted(folder) + " && /bin/ln -sfn " + shellQuoted(tool.string()) + " " +
                       shellQuoted(link.string())};
    try {
        return administrator_(command);
    } catch (const AdministratorFailure& failure) {
        const QString said = QString::fromUtf8(failure.what());
        fail(said.isEmpty() ? tr("The command line tool could not be installed.") : said);
    }
}

} // namespace plovik
