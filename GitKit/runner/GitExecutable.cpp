// SPDX-License-Identifier: GPL-3.0-or-later
#include "GitKit/runner/GitExecutable.h"

#include "GitKit/runner/GitError.h"
#include "GitKit/runner/GitRunner.h"
#include "GitKit/runner/GitVersion.h"

#include <algorithm>
#include <cstdlib>
#include <optional>
#include <string>
#include <unistd.h>

namespace gitkit {

namespace {

bool isExecutableFile(const std::filesystem::path& path)
{
    std::error_code ignored;
    return std::filesystem::is_regular_file(path, ignored) && ::access(path.c_str(), X_OK) == 0;
}

std::optional<std::filesystem::path> gitForTests()
{
    const char* const named = std::getenv("PLOVIK_TEST_GIT");
    if (named == nullptr || !std::filesystem::path(named).is_absolute() || !isExecutableFile(named))
        return std::nullopt;
    return named;
}

} // namespace

std::filesystem::path GitExecutable::firstExecutable(const std::vector<std::filesystem::path>& candidates)
{
    const auto found = std::ranges::find_if(candidates, isExecutableFile);
    return found != candidates.end() ? *found : candidates.back();
}

const std::filesystem::path& GitExecutable::path()
{
    static const std::filesystem::path found = [] {
        if (const std::optional<std::filesystem::path> named = gitForTests())
            return *named;
        return firstExecutable({"/opt/homebrew/bin/git", "/usr/local/bin/git", "/usr/bin/git"});
    }();
    return found;
}

void GitExecutable::checkVersion(std::string_view versionText)
{
    const std::optional<GitVersion> version = GitVersion::parse(versionText);
    if (version && *version >= leastGitVersion)
        return;
    throw LaunchError(LaunchCause::gitTooOld,
                      "Git " + std::to_string(leastGitVersion.major) + "." + std::to_string(leastGitVersion.minor) +
                          " or newer is needed, but “" + path().string() + "” is " +
                          std::string(version ? trimmed(versionText) : "of an unknown version") + ".");
}

void GitExecutable::requireSupported()
{
    if (gitVersion() < leastGitVersion)
        checkVersion(GitRunner("/").run({"version"}));
}

} // namespace gitkit
