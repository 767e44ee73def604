// SPDX-License-Identifier: GPL-3.0-or-later
#include "GitKit/repository/KeptFolders.h"

#include "GitKit/Text.h"
#include "GitKit/runner/GitError.h"

#include <algorithm>
#include <charconv>
#include <chrono>
#include <cstdint>
#include <sys/stat.h>

namespace gitkit {

namespace {

namespace fs = std::filesystem;

constexpr std::chrono::hours keptFor{24 * 30};
constexpr std::size_t digitsOfTime = 20;

std::chrono::nanoseconds now() { return std::chrono::system_clock::now().time_since_epoch(); }

std::string nameFor(std::chrono::nanoseconds time)
{
    const std::string digits = std::to_string(time.count());
    return std::string(digitsOfTime - std::min(digitsOfTime, digits.size()), '0') + digits;
}

void removeOld(const fs::path& gitDirectory)
{
    const std::string oldest = nameFor(now() - keptFor);
    std::error_code ignored;
    for (const std::string& name : keptNames(gitDirectory)) {
        if (name < oldest)
            fs::remove_all(keepingFolder(gitDirectory) / name, ignored);
    }
}

} // namespace

fs::path keepingFolder(const fs::path& gitDirectory) { return gitDirectory / "plovik" / "kept"; }

std::vector<std::string> keptNames(const fs::path& gitDirectory)
{
    std::vector<std::string> names;
    std::error_code error;
    for (fs::directory_iterator each(keepingFolder(gitDirectory), error), end; !error && each != end;
         each.increment(error))
        names.push_back(each->path().filename().string());
    std::ranges::sort(names);
    return names;
}

Date keptDate(const std::string& name)
{
    std::int64_t count = 0;
    std::from_chars(name.data(), name.data() + name.size(), count);
    return Date(std::chrono::duration_cast<std::chrono::seconds>(std::chrono::nanoseconds(count)));
}

fs::path makeKeptFolder(const fs::path& gitDirectory)
{
    const fs::path folder = keepingFolder(gitDirectory);
    std::error_code error;
    fs::create_directories(folder, error);
    removeOld(gitDirectory);
    for (int attempt = 0; attempt < 100; ++attempt) {
        const fs::path made = folder / nameFor(now());
        if (::mkdir(made.c_str(), 0700) == 0)
            return made;
    }
    throw GitError("checkout", 1,
                   "No copy could be kept in " + inQuotes(folder.string()) + ", so nothing was discarded.");
}

} // namespace gitkit
