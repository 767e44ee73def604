// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/platform/AdministratorCommand.h"

#include <QCoreApplication>

#include <gio/gio.h>

#include <algorithm>
#include <memory>

namespace plovik {

namespace {

template <typename Object>
using Held = std::unique_ptr<Object, decltype(&g_object_unref)>;

template <typename Object>
Held<Object> held(Object* object)
{
    return {object, &g_object_unref};
}

struct ErrorDeleter {
    void operator()(GError* error) const { g_error_free(error); }
};
using Error = std::unique_ptr<GError, ErrorDeleter>;

// pkexec ends with this status when the user closed its dialog. Any other status except 0 is a failure.
constexpr int dismissed = 126;

[[noreturn]] void failToStart(const GError& error)
{
    if (g_error_matches(&error, G_SPAWN_ERROR, G_SPAWN_ERROR_NOENT) != 0)
        throw AdministratorFailure(
            QCoreApplication::translate(
                "AdministratorCommand",
                "An administrator's rights are needed, and “pkexec”, which asks for them, is not installed.")
                .toStdString());
    throw AdministratorFailure(error.message);
}

/// Returns the first paragraph. pkexec adds another one, which says that the incident has been reported.
std::string firstParagraph(std::string text)
{
    const std::size_t start = text.find_first_not_of(" \t\r\n");
    if (start == std::string::npos)
        return {};
    text.erase(0, start);
    text.erase(std::min(text.find("\n\n"), text.size()));
    text.erase(text.find_last_not_of(" \t\r\n") + 1);
    return text;
}

/// Starts pkexec, which is looked for on the PATH.
Held<GSubprocess> start(const std::vector<std::string>& command)
{
    // Without its own agent, pkexec would not turn to the terminal that Plovik may have been started from.
    std::vector<const gchar*> arguments{"pkexec", "--disable-internal-agent"};
    for (const std::string& argument : command)
        arguments.push_back(argument.c_str());
    arguments.push_back(nullptr);

    constexpr int flags = G_SUBPROCESS_FLAGS_STDOUT_SILENCE | G_SUBPROCESS_FLAGS_STDERR_PIPE;
    // NOLINTNEXTLINE(clang-analyzer-optin.core.EnumCastOutOfRange): a set of flags
    const auto launcher = held(g_subprocess_launcher_new(static_cast<GSubprocessFlags>(flags)));
    // pkexec refuses to run for a user whose shell is not in the system's list, although it starts no shell.
    g_subprocess_launcher_unsetenv(launcher.get(), "SHELL");
    g_subprocess_launcher_set_cwd(launcher.get(), "/");
    GError* problem = nullptr;
    GSubprocess* const process = g_subprocess_launcher_spawnv(launcher.get(), arguments.data(), &problem);
    if (!process)
        failToStart(*Error(problem));
    return held(process);
}

/// Waits for the end of `process` and returns what it wrote to its error stream.
std::string readToEnd(GSubprocess* process)
{
    GBytes* written = nullptr;
    GError* problem = nullptr;
    if (g_subprocess_communicate(process, nullptr, nullptr, nullptr, &written, &problem) == 0)
        throw AdministratorFailure(Error(problem)->message);
    const std::unique_ptr<GBytes, decltype(&g_bytes_unref)> bytes(written, &g_bytes_unref);
    gsize size = 0;
    const auto* const data = static_cast<const char*>(g_bytes_get_data(bytes.get(), &size));
    return data ? std::string(data, size) : std::string();
}

} // namespace

bool runAsAdministrator(const std::vector<std::string>& command)
{
    const auto process = start(command);
    const std::string said = readToEnd(process.get());
    const bool ended = g_subprocess_get_if_exited(process.get()) != 0;
    const int status = ended ? g_subprocess_get_exit_status(process.get()) : -1;
    if (status == dismissed)
        return false;
    if (status != 0)
        throw AdministratorFailure(firstParagraph(said));
    return true;
}

} // namespace plovik
