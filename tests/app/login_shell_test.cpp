// SPDX-License-Identifier: GPL-3.0-or-later
#include "GitKit/repository/GitRepository.h"
#include "app/services/loginshell/LoginShell.h"
#include "tests/support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <chrono>
#include <filesystem>
#include <thread>

namespace plovik {
namespace {

TEST(LoginShells, TellTheirPathAmongWhateverElseTheyPrintAndAreGivenUpWhenTheyDoNotEnd)
{
    const TemporaryFolder folder;
    const auto shell = folder / "shell";
    const auto told = [&shell](const std::string& script, std::stop_token stop = {}) {
        writeFile(shell, "#!/bin/sh\n" + script);
        std::filesystem::permissions(shell, std::filesystem::perms::owner_all);
        return loginShell::searchPath(shell, std::move(stop));
    };
    // It is asked as "-i -l -c SCRIPT".
    EXPECT_EQ(
        told("echo Welcome, PATH=/no\nexport PATH=\"/my own/bin:$PATH\"\nexec /bin/sh -c \"$4\"\n")->substr(0, 12),
        "/my own/bin:");
    EXPECT_FALSE(told("exit 1\n"));
    EXPECT_FALSE(told("echo nothing\n"));
    EXPECT_FALSE(loginShell::searchPath("/nonexistent/shell", {}));

    std::stop_source stop;
    std::jthread later([&stop] {
        std::this_thread::sleep_for(std::chrono::milliseconds(50));
        stop.request_stop();
    });
    EXPECT_FALSE(told("trap '' TERM; while :; do sleep 1; done\n", stop.get_token()));
}

} // namespace
} // namespace plovik
