// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/services/loginshell/LoginShell.h"

#include "GitKit/runner/GitEnvironment.h"
#include "GitKit/runner/Process.h"

#include <QCoreApplication>
#include <QTimer>

#include <chrono>
#include <cstdlib>
#include <string_view>
#include <system_error>
#include <thread>
#include <unistd.h>
#include <utility>

namespace plovik::loginShell {

namespace {

constexpr std::chrono::seconds longest{2};
constexpr std::size_t mostOutput = 1024UL * 1024;

bool hasTerminal()
{
    return ::isatty(STDIN_FILENO) != 0 || ::isatty(STDOUT_FILENO) != 0 || ::isatty(STDERR_FILENO) != 0 ||
           std::getenv("TERM") != nullptr;
}

/// Returns the entry of a list that `env -0` printed after whatever the user's own files print.
std::optional<std::string> pathIn(std::string_view printed)
{
    constexpr std::string_view name("\0PATH=/", 7);
    const std::size_t found = printed.rfind(name);
    if (found == std::string_view::npos)
        return std::nullopt;
    const std::string_view rest = printed.substr(found + name.size() - 1);
    return std::string(rest.substr(0, rest.find('\0')));
}

} // namespace

std::optional<std::string> searchPath(const std::filesystem::path& shell, std::stop_token stop)
{
    const char* const home = std::getenv("HOME");
    try {
        // Many set their PATH only where a shell is interactive. It gets no terminal that it could talk to.
        const gitkit::GitOutput output =
            gitkit::runProcess({.executable = shell,
                                .arguments = {"-i", "-l", "-c", "printf '\\0'; env -0"},
                                .directory = home != nullptr ? home : "/",
                                .environment = gitkit::applicationEnvironment(),
                                .limit = gitkit::OutputLimit{.lines = mostOutput, .bytes = mostOutput},
                                .stop = std::move(stop)});
        return output.status == 0 && !output.stopped ? pathIn(output.stdoutBytes) : std::nullopt;
    } catch (const std::exception&) { // git's programs then look where the desktop does
        return std::nullopt;
    }
}

void beginReadingSearchPath()
{
    const char* const shell = std::getenv("SHELL");
    if (hasTerminal() || shell == nullptr || !std::filesystem::path(shell).is_absolute())
        return;
    std::stop_source stop;
    try {
        std::thread([shell = std::filesystem::path(shell), stop] {
            const std::optional<std::string> path = searchPath(shell, stop.get_token());
            if (path && !stop.stop_requested())
                gitkit::setSearchPath(*path);
        }).detach();
    } catch (const std::system_error&) {
        return;
    }
    QTimer::singleShot(longest, QCoreApplication::instance(), [stop]() mutable { stop.request_stop(); });
}

} // namespace plovik::loginShell
