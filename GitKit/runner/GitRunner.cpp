// SPDX-License-Identifier: GPL-3.0-or-later
#include "GitKit/runner/GitRunner.h"

#include "GitKit/runner/GitEnvironment.h"
#include "GitKit/runner/GitError.h"
#include "GitKit/runner/GitExecutable.h"
#include "GitKit/runner/Process.h"

#include <algorithm>
#include <string_view>

namespace gitkit {

namespace {

GitOutput start(const std::filesystem::path& directory, const std::vector<std::string>& arguments,
                const RunOptions& options, const std::optional<std::string>& fileSystemMonitor)
{
    ProcessRequest request{.executable = GitExecutable::path(),
                           .arguments = {"-c", "core.quotepath=false", "-c", "color.ui=false"},
                           .directory = directory,
                           .environment =
                               gitEnvironment(applicationEnvironment(), options.environment, fileSystemMonitor),
                           .input = options.input,
                           .limit = options.limit};
    request.arguments.insert(request.arguments.end(), arguments.begin(), arguments.end());
    return runProcess(request);
}

/// core.fsmonitor as the user's own files and the machine's give it. Read in the root folder, so that no repository has
/// a say.
std::optional<std::string> readFileSystemMonitor()
{
    const GitOutput output = start("/", {"config", "--show-scope", "-z", "--get-all", "core.fsmonitor"}, {}, {});
    std::optional<std::string> last;
    std::string_view rest = output.stdoutBytes;
    while (!rest.empty()) {
        const std::string_view scope = rest.substr(0, rest.find('\0'));
        rest.remove_prefix(std::min(rest.size(), scope.size() + 1));
        const std::string_view value = rest.substr(0, rest.find('\0'));
        rest.remove_prefix(std::min(rest.size(), value.size() + 1));
        if (scope == "system" || scope == "global")
            last = value;
    }
    return last;
}

/// Asked once in a process: the answer lies in files that hardly ever change, and every status needs it.
const std::optional<std::string>& fileSystemMonitor()
{
    static const std::optional<std::string> value = readFileSystemMonitor();
    return value;
}

} // namespace

GitRunner::GitRunner(std::filesystem::path directory) : directory_(std::move(directory)) {}

GitOutput GitRunner::output(const std::vector<std::string>& arguments, const RunOptions& options) const
{
    return start(directory_, arguments, options, fileSystemMonitor());
}

GitOutput GitRunner::accepted(const std::vector<std::string>& arguments, const RunOptions& options) const
{
    GitOutput result = output(arguments, options);
    if (result.cut) // its end was ours
        return result;
    if (!result.signalled && std::ranges::find(options.accepting, result.status) != options.accepting.end())
        return result;
    std::string message(trimmed(result.errorText()));
    if (message.empty())
        message = trimmed(result.text());
    throw GitError(arguments.empty() ? std::string() : arguments.front(), result.status, std::move(message));
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
