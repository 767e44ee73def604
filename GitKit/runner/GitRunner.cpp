// SPDX-License-Identifier: GPL-3.0-or-later
#include "GitKit/runner/GitRunner.h"

#include "GitKit/Text.h"
#include "GitKit/runner/GitEnvironment.h"
#include "GitKit/runner/GitError.h"
#include "GitKit/runner/GitExecutable.h"
#include "GitKit/runner/GitMessages.h"
#include "GitKit/runner/Process.h"
#include "GitKit/runner/RunReport.h"

#include <algorithm>
#include <chrono>
#include <string_view>
#include <thread>

namespace gitkit {

namespace {

constexpr std::chrono::milliseconds longestPause{480};

using Environment = std::vector<std::pair<std::string, std::string>>;

/// Returns the entries for all runs of an action, followed by those for this run and those that restrict it.
Environment overrides(const RunContext& context, const RunOptions& options, const Restriction& restriction)
{
    Environment all = context.environment;
    all.insert(all.end(), options.environment.begin(), options.environment.end());
    all.insert(all.end(), restriction.environment.begin(), restriction.environment.end());
    return all;
}

GitOutput reported(const ProcessRequest& request, const RunReport& report)
{
    try {
        GitOutput output = runProcess(request);
        report.ended({output.status, output.signalled, output.stopped, output.cut});
        return output;
    } catch (const std::exception& failure) {
        report.ended({.problem = failure.what()});
        throw;
    }
}

/// Returns what to start. Its input is a view into `options`.
ProcessRequest prepared(const std::filesystem::path& directory, const RunContext& context,
                        const std::vector<std::string>& arguments, const RunOptions& options,
                        const std::optional<std::string>& fileSystemMonitor, const Restriction& restriction = {})
{
    if (context.stop.stop_requested())
        throw RunStopped();
    const std::vector<std::string> inherited = applicationEnvironment();
    const std::vector<std::string_view> entries(inherited.begin(), inherited.end());
    ProcessRequest request{.executable = GitExecutable::path(),
                           .arguments = {"-c", "core.quotepath=false", "-c", "color.ui=false"},
                           .directory = directory,
                           .environment = gitEnvironment(entries, overrides(context, options, restriction),
                                                         fileSystemMonitor, restriction.settings),
                           .input = options.input,
                           .limit = options.limit,
                           .isIdle = options.isIdle,
                           .dropsMiddle = options.dropsMiddle,
                           .stop = context.stop};
    for (const std::string& setting : options.settings)
        request.arguments.insert(request.arguments.end(), {"-c", setting});
    request.arguments.insert(request.arguments.end(), arguments.begin(), arguments.end());
    return request;
}

/// What the user's and the machine's configuration files say about every run. No repository has a say in it.
struct UserSettings {
    std::optional<std::string> fileSystemMonitor = {}; ///< core.fsmonitor
    bool tracesEvents = false;                         ///< the user has git write its events to a place of their own
};

std::string_view takeField(std::string_view& rest)
{
    const std::string_view field = rest.substr(0, rest.find('\0'));
    rest.remove_prefix(std::min(rest.size(), field.size() + 1));
    return field;
}

/// Reads them in the root folder, so that no repository can set them.
UserSettings readUserSettings()
{
    const ProcessRequest request = prepared(
        "/", {}, {"config", "--show-scope", "-z", "--get-regexp", "^(core\\.fsmonitor|trace2\\.eventtarget)$"}, {}, {});
    const GitOutput output = reported(request, RunReport(nullptr, request));
    UserSettings settings;
    for (std::string_view rest = output.stdoutBytes; !rest.empty();) {
        const std::string_view scope = takeField(rest);
        const std::string_view entry = takeField(rest);
        if (scope != "system" && scope != "global")
            continue;
        const std::string_view name = entry.substr(0, entry.find('\n'));
        if (name == "core.fsmonitor")
            settings.fileSystemMonitor = entry.substr(std::min(entry.size(), name.size() + 1));
        else
            settings.tracesEvents = true;
    }
    return settings;
}

/// Reads them once in a process, because every status needs them and the files hardly ever change.
const UserSettings& userSettings()
{
    static const UserSettings settings = readUserSettings();
    return settings;
}

GitOutput start(const RunContext& context, ProcessRequest request)
{
    const RunReport report(context.listener, request);
    if (context.listener)
        request.printed = [&report](RunListener::Stream stream, std::string_view bytes) {
            report.printed(stream, bytes);
        };
    if (context.listener && context.listener->followsPrograms() && !userSettings().tracesEvents) {
        request.environment.push_back("GIT_TRACE2_EVENT=" + std::to_string(traceDescriptor));
        request.traced = [&report](std::string_view bytes) { report.traced(bytes); };
    }
    GitOutput output = reported(request, report);
    if (output.stopped)
        throw RunStopped();
    return output;
}

GitOutput topLevelFrom(const std::filesystem::path& directory, const RunContext& context)
{
    const RunContext quiet{.stop = context.stop};
    return start(quiet, prepared(directory, quiet, {"rev-parse", "--show-toplevel"}, {}, {}));
}

/// What git says where it finds none.
GitOutput noRepository()
{
    GitOutput output;
    output.status = 128;
    output.stderrBytes = "fatal: not a git repository";
    return output;
}

} // namespace

GitRunner::GitRunner(std::filesystem::path directory, RunContext context)
    : directory_(std::move(directory)), context_(std::move(context))
{}

std::optional<GitOutput> GitRunner::misplaced() const
{
    if (context_.requiredTopLevel.empty())
        return std::nullopt;
    GitOutput found = topLevelFrom(directory_, context_);
    if (withoutLineEnd(found.stdoutBytes) == context_.requiredTopLevel.string())
        return std::nullopt;
    return found.status == 0 ? noRepository() : found;
}

Restriction GitRunner::restriction(const std::vector<std::string>& arguments) const
{
    if (!context_.guard)
        return {};
    return context_.guard->before(arguments.empty() ? std::string() : arguments.front(), context_);
}

GitOutput GitRunner::output(const std::vector<std::string>& arguments, const RunOptions& options) const
{
    if (std::optional<GitOutput> elsewhere = misplaced())
        return *std::move(elsewhere);
    return start(context_, prepared(directory_, context_, arguments, options, userSettings().fileSystemMonitor,
                                    restriction(arguments)));
}

GitStream GitRunner::started(const std::vector<std::string>& arguments, const RunOptions& options) const
{
    const std::string command = arguments.empty() ? std::string() : arguments.front();
    if (const std::optional<GitOutput> elsewhere = misplaced())
        throw failureOf(command, *elsewhere);
    return GitStream(
        command, context_.listener,
        prepared(directory_, context_, arguments, options, userSettings().fileSystemMonitor, restriction(arguments)));
}

GitStream GitRunner::stream(const std::vector<std::string>& arguments) const { return started(arguments, {}); }

GitStream GitRunner::dialogue(const std::vector<std::string>& arguments, const RunOptions& options) const
{
    RunOptions open = options;
    open.input = std::string(); // a pipe instead of the null device
    return started(arguments, open);
}

GitOutput GitRunner::accepted(const std::vector<std::string>& arguments, const RunOptions& options) const
{
    const std::string command = arguments.empty() ? std::string() : arguments.front();
    GitOutput result = output(arguments, options);
    // A git in a terminal holds the lock for a moment. The pauses add up to about a second.
    for (std::chrono::milliseconds pause{30}; pause <= longestPause && isKeptFromIndex(command, result); pause *= 2) {
        std::this_thread::sleep_for(pause);
        result = output(arguments, options);
    }
    if (result.cut) // we ended it
        return result;
    if (!result.signalled && std::ranges::find(options.accepting, result.status) != options.accepting.end())
        return result;
    throw failureOf(command, result);
}

std::string GitRunner::bytes(const std::vector<std::string>& arguments, const RunOptions& options) const
{
    return accepted(arguments, options).stdoutBytes;
}

std::string GitRunner::run(const std::vector<std::string>& arguments, const RunOptions& options) const
{
    return repairedUtf8(bytes(arguments, options));
}

} // namespace gitkit
