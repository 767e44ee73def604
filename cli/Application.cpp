// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/Application.h"

#include "cli/ShownName.h"

#include <QCoreApplication>

#include <csignal>
#include <cstdlib>
#include <fcntl.h>
#include <spawn.h>
#include <string>
#include <system_error>
#include <unistd.h>
#include <vector>

namespace plovik {

namespace {

namespace fs = std::filesystem;

struct ApplicationTexts {
    Q_DECLARE_TR_FUNCTIONS(plovik::CommandLine)
};

[[noreturn]] void giveUp(const QString& sentence) { throw LaunchFailure(sentence.toStdString()); }

bool isSet(const char* variable)
{
    const char* const value = std::getenv(variable);
    return value && *value;
}

/// Returns the path of the application beside this program, so that both can be moved together. Follows links.
fs::path application()
{
    std::error_code error;
    const fs::path program = fs::read_symlink("/proc/self/exe", error);
    if (error)
        giveUp(ApplicationTexts::tr("Plovik could not be found: %1.").arg(QString::fromStdString(error.message())));
    return program.parent_path() / "plovik-app";
}

/// Makes the application independent of the terminal: it survives its end and holds neither its folder nor streams.
class Detachment {
public:
    Detachment()
    {
        posix_spawn_file_actions_init(&actions_);
        for (const int stream : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO})
            posix_spawn_file_actions_addopen(&actions_, stream, "/dev/null", O_RDWR, 0);
        posix_spawn_file_actions_addclosefrom_np(&actions_, STDERR_FILENO + 1);
        posix_spawn_file_actions_addchdir_np(&actions_, "/");

        posix_spawnattr_init(&attributes_);
        sigset_t signals;
        sigemptyset(&signals);
        posix_spawnattr_setsigmask(&attributes_, &signals);
        sigfillset(&signals);
        posix_spawnattr_setsigdefault(&attributes_, &signals);
        posix_spawnattr_setflags(&attributes_, POSIX_SPAWN_SETSID | POSIX_SPAWN_SETSIGMASK | POSIX_SPAWN_SETSIGDEF);
    }
    ~Detachment()
    {
        posix_spawnattr_destroy(&attributes_);
        posix_spawn_file_actions_destroy(&actions_);
    }
    Detachment(const Detachment&) = delete;
    Detachment& operator=(const Detachment&) = delete;

    /// Returns 0, or the error number if the program did not start.
    int start(std::vector<std::string> command) const
    {
        std::vector<char*> arguments;
        arguments.reserve(command.size() + 1);
        for (std::string& argument : command)
            arguments.push_back(argument.data());
        arguments.push_back(nullptr);
        pid_t ignored = -1;
        return ::posix_spawn(&ignored, arguments.front(), &actions_, &attributes_, arguments.data(), ::environ);
    }

private:
    posix_spawn_file_actions_t actions_{};
    posix_spawnattr_t attributes_{};
};

} // namespace

void openInApplication(std::span<const fs::path> folders, const ApplicationAction& action)
{
    // Without a display the toolkit would end the application, and its message would not reach the terminal.
    if (!isSet("DISPLAY") && !isSet("WAYLAND_DISPLAY"))
        giveUp(
            ApplicationTexts::tr("There is no display to open Plovik on: neither DISPLAY nor WAYLAND_DISPLAY is set."));

    const fs::path program = application();
    std::vector<std::string> command{program.string()};
    if (!action.name.empty())
        command.push_back("--action=" + action.name + (action.argument.empty() ? "" : "=" + action.argument));
    command.emplace_back("--");
    for (const fs::path& folder : folders)
        command.push_back(folder.string());
    // Otherwise programs that the application starts would inherit a wrong PWD.
    ::setenv("PWD", "/", 1);
    if (const int error = Detachment().start(std::move(command)); error != 0)
        giveUp(ApplicationTexts::tr("“%1” could not be started: %2.")
                   .arg(QString::fromStdString(shownName(program.string())),
                        QString::fromStdString(std::generic_category().message(error))));
}

} // namespace plovik
