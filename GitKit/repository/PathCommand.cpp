// SPDX-License-Identifier: GPL-3.0-or-later
#include "GitKit/repository/PathCommand.h"

#include <cstddef>
#include <numeric>

namespace gitkit {

namespace {

/// Well below the smallest limit of a system, which includes the environment.
constexpr std::size_t longestPathList = std::size_t{64} << 10;

std::size_t sizeOf(const std::vector<std::string>& paths)
{
    return std::accumulate(paths.begin(), paths.end(), std::size_t{0},
                           [](std::size_t sum, const std::string& path) { return sum + path.size() + 1; });
}

} // namespace

void runOnPaths(const GitRunner& runner, std::vector<std::string> arguments, const std::vector<std::string>& paths)
{
    if (paths.empty())
        return;
    RunOptions options{.environment = {{"GIT_LITERAL_PATHSPECS", "1"}}};
    if (sizeOf(paths) <= longestPathList) {
        arguments.emplace_back("--");
        arguments.insert(arguments.end(), paths.begin(), paths.end());
    } else {
        arguments.insert(arguments.end(), {"--pathspec-from-file=-", "--pathspec-file-nul"});
        std::string& input = options.input.emplace();
        for (const std::string& path : paths)
            input.append(path).push_back('\0');
    }
    runner.accepted(arguments, options);
}

} // namespace gitkit
