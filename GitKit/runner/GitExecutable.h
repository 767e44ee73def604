// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <filesystem>
#include <string_view>
#include <vector>

namespace gitkit {

/// The user's git.
struct GitExecutable {
    /// Where git is: the first of a few known places that holds it, looked up once in a process. Returns /usr/bin/git
    /// when none does, so that a missing git shows when it is run. Any thread.
    ///
    /// PLOVIK_TEST_GIT in the environment names another git by its absolute path, for running the tests with it. It
    /// is ignored unless it names a program.
    static const std::filesystem::path& path();

    /// Throws LaunchError, which names both versions, when git is older than leastGitVersion, and when it cannot be
    /// run. Any thread; blocks the first time.
    static void requireSupported();

    /// The first of `candidates` that is an executable file; the last one when none is.
    static std::filesystem::path firstExecutable(const std::vector<std::filesystem::path>& candidates);

    /// Throws LaunchError unless `versionText`, which `git version` printed, names a supported version.
    static void checkVersion(std::string_view versionText);
};

} // namespace gitkit
