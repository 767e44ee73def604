// SPDX-License-Identifier: GPL-3.0-or-later
#include "GitKit/runner/GitExecutable.h"

#include "GitKit/runner/GitError.h"
#include "GitKit/runner/GitRunner.h"

#include <algorithm>
#include <cstdio>
#include <mutex>
#include <unistd.h>

namespace gitkit {

namespace {

bool isExecutableFile(const std::filesystem::path& path)
{
    std::error_code ignored;
    return std::filesystem::is_regular_file(path, ignored) && ::access(path.c_str(), X_OK) == 0;
}

} // namespace

std::filesystem::path GitExecutable::firstExecutable(const std::vector<std::filesystem::path>& candidates)
{
    const auto found = std::ranges::find_if(candidates, isExecutableFile);
    return found != candidates.end() ? *found : candidates.back();
}

const std::filesystem::path& GitExecutable::path()
{
    static const std::filesystem::path found =
        firstExecutable({"/opt/homebrew/bin/git", "/usr/local/bin/git", "/usr/bin/git"});
    return found;
}

void GitExecutable::checkVersion(const std::string& versionText)
{
    int major = 0;
    int minor = 0;
    const bool read = std::sscanf(versionText.c_str(), "git version %d.%d", &major, &minor) == 2;
    if (read && (major > leastMajor || (major == leastMajor && minor >= leastMinor)))
        return;
    throw LaunchError(LaunchError::Cause::other,
                      "Git " + std::to_string(leastMajor) + "." + std::to_string(leastMinor) +
                          " or newer is needed, but “" + path().string() + "” is " +
                          std::string(read ? trimmed(versionText) : "of an unknown version") + ".");
}

void GitExecutable::requireSupported()
{
    // A call that throws leaves the flag unset, so that a git installed meanwhile is found.
    static std::once_flag checked;
    std::call_once(checked, [] { checkVersion(GitRunner("/").run({"version"})); });
}

} // namespace gitkit
