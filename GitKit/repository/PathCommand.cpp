// SPDX-License-Identifier: GPL-3.0-or-later
#include "GitKit/repository/PathCommand.h"

#include <algorithm>
#include <cstddef>
#include <numeric>
#include <string_view>

namespace gitkit {

namespace {

/// Well below the smallest limit of a system, which includes the environment.
constexpr std::size_t longestPathList = std::size_t{64} << 10;

std::size_t sizeOf(const std::vector<std::string>& paths)
{
    return std::accumulate(paths.begin(), paths.end(), std::size_t{0},
                           [](std::size_t sum, const std::string& path) { return sum + path.size() + 1; });
}

std::string nulTerminated(const std::vector<std::string>& paths)
{
    std::string list;
    for (const std::string& path : paths)
        list.append(path).push_back('\0');
    return list;
}

/// The pattern that excludes what is in a folder. It leaves the folder's own name alone, which may be a submodule's.
std::string excludedInside(const std::string& path)
{
    std::string pattern = ":(exclude,glob)";
    for (const char character : path) {
        if (std::string_view("\\*?[").find(character) != std::string_view::npos)
            pattern += '\\';
        pattern += character;
    }
    return pattern + "/**";
}

} // namespace

std::string literalPathspec(const std::string& path) { return ":(literal)" + path; }

std::vector<std::string> exactPathspecs(const std::vector<std::string>& paths)
{
    std::vector<std::string> specs;
    for (const std::string& path : paths) {
        specs.push_back(literalPathspec(path));
        const auto isInside = [&](const std::string& other) { return other.starts_with(path + '/'); };
        if (std::ranges::none_of(paths, isInside))
            specs.push_back(excludedInside(path));
    }
    return specs;
}

void runOnPaths(const GitRunner& runner, std::vector<std::string> arguments, const std::vector<std::string>& paths)
{
    if (paths.empty())
        return;
    std::vector<std::string> specs(paths.size());
    std::ranges::transform(paths, specs.begin(), literalPathspec);
    RunOptions options;
    if (sizeOf(specs) <= longestPathList) {
        arguments.emplace_back("--");
        arguments.insert(arguments.end(), specs.begin(), specs.end());
    } else {
        arguments.insert(arguments.end(), {"--pathspec-from-file=-", "--pathspec-file-nul"});
        options.input = nulTerminated(specs);
    }
    runner.accepted(arguments, options);
}

void runOnExactPaths(const GitRunner& runner, const std::vector<std::string>& arguments,
                     const std::vector<std::string>& paths)
{
    if (!paths.empty())
        runner.accepted(arguments, {.input = nulTerminated(paths)});
}

} // namespace gitkit
