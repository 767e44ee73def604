// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <filesystem>
#include <string>
#include <vector>

namespace gitkit {

/// The user's git.
struct GitExecutable {
    /// The oldest version that understands everything that is asked of it.
    static constexpr int leastMajor = 2;
    static constexpr int leastMinor = 31;

    /// Where git is: the first of a few known places that holds it, looked up once in a process. Names /usr/bin/git
    /// when none does, so that a missing git shows when it is run. Any thread.
    static const std::filesystem::path& path();

    /// Throws LaunchError, naming both versions, when git is older than what is needed, or when it cannot be run. Runs
    /// git once in a process, and again only after a failure. Any thread; blocks.
    static void requireSupported();

    /// The first of `candidates` that is an executable file; the last one when none is.
    static std::filesystem::path firstExecutable(const std::vector<std::filesystem::path>& candidates);

    /// Throws LaunchError unless `versionText`, what `git version` printed, names a supported version.
    static void checkVersion(const std::string& versionText);
};

} // namespace gitkit
