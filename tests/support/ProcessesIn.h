// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <chrono>
#include <filesystem>
#include <system_error>
#include <thread>

/// Returns how many processes have this folder as their own.
inline int processesIn(const std::filesystem::path& folder)
{
    int count = 0;
    for (const auto& process : std::filesystem::directory_iterator("/proc")) {
        std::error_code gone;
        if (std::filesystem::read_symlink(process.path() / "cwd", gone) == folder && !gone)
            ++count;
    }
    return count;
}

/// Waits until there are none. Returns false when there are still some after that time.
inline bool haveAllEndedIn(const std::filesystem::path& folder, std::chrono::milliseconds within)
{
    const auto until = std::chrono::steady_clock::now() + within;
    while (processesIn(folder) > 0) {
        if (std::chrono::steady_clock::now() > until)
            return false;
        std::this_thread::sleep_for(std::chrono::milliseconds(5));
    }
    return true;
}
