// SPDX-License-Identifier: GPL-3.0-or-later
#include "GitKit/repository/Locks.h"

#include "GitKit/Text.h"
#include "GitKit/repository/Folders.h"
#include "GitKit/repository/GitRepository.h"
#include "GitKit/runner/GitError.h"
#include "GitKit/runner/GitMessages.h"

#include <algorithm>
#include <fstream>
#include <sys/stat.h>
#include <system_error>
#include <unistd.h>

namespace gitkit {

namespace {

namespace fs = std::filesystem;

bool liesBelow(const fs::path& place, const fs::path& folder)
{
    const auto [end, other] = std::mismatch(folder.begin(), folder.end(), place.begin(), place.end());
    return end == folder.end();
}

/// Returns the folders in which a program works that uses this repository: all of its working trees, and git's own.
std::vector<fs::path> placesOf(const GitRepository& repo)
{
    std::vector<fs::path> places{repo.root(), gitDirectories(repo).common};
    constexpr std::string_view start = "worktree ";
    std::string_view rest = {};
    const std::string list = repo.runner().bytes({"worktree", "list", "--porcelain"});
    for (rest = list; !rest.empty();) {
        const std::string_view line = rest.substr(0, rest.find('\n'));
        rest.remove_prefix(std::min(line.size() + 1, rest.size()));
        if (line.starts_with(start))
            places.emplace_back(line.substr(start.size()));
    }
    return places;
}

std::string nameOfProcess(const fs::path& process)
{
    std::ifstream file(process / "comm");
    std::string name;
    std::getline(file, name);
    return name + " (" + process.filename().string() + ')';
}

std::vector<std::string> programsIn(const std::vector<fs::path>& places)
{
    std::vector<std::string> programs;
    std::error_code failure;
    for (const auto& process : fs::directory_iterator("/proc", failure)) {
        const std::string number = process.path().filename().string();
        if (number.find_first_not_of("0123456789") != std::string::npos || number == std::to_string(::getpid()))
            continue;
        std::error_code unreadable;
        const fs::path place = fs::read_symlink(process.path() / "cwd", unreadable);
        if (!unreadable &&
            std::ranges::any_of(places, [&place](const fs::path& folder) { return liesBelow(place, folder); }))
            programs.push_back(nameOfProcess(process.path()));
    }
    std::ranges::sort(programs);
    return programs;
}

/// Returns what is known of a lock; nullopt where it is no file of this repository's, or another user's.
std::optional<HeldLock> lockAt(const GitRepository& repo, const fs::path& file)
{
    const GitDirectories directories = gitDirectories(repo);
    const bool isOurs = liesBelow(file, directories.own) || liesBelow(file, directories.common);
    struct stat status{};
    if (!isOurs || file.extension() != ".lock" || ::lstat(file.c_str(), &status) != 0 || !S_ISREG(status.st_mode) ||
        status.st_uid != ::geteuid())
        return std::nullopt;
    const auto now = std::chrono::system_clock::to_time_t(std::chrono::system_clock::now());
    return HeldLock{file, std::chrono::seconds(std::max<std::time_t>(0, now - status.st_mtime)),
                    programsIn(placesOf(repo))};
}

} // namespace

std::optional<HeldLock> heldLock(const GitRepository& repo, const std::string& message)
{
    const std::string named = lockNamedIn(message);
    return named.empty() ? std::nullopt : lockAt(repo, (repo.root() / named).lexically_normal());
}

void moveLockAway(const GitRepository& repo, const fs::path& file)
{
    const std::optional<HeldLock> now = lockAt(repo, file);
    if (!now)
        throw GitError("lock", 1, inQuotes(file.filename().string()) + " is not there any more.",
                       ErrorKind::changedMeanwhile);
    if (!now->isLeftBehind())
        throw GitError("lock", 1, inQuotes(file.filename().string()) + " is in use again. Nothing was moved.",
                       ErrorKind::lockHeld);
    // Beside the lock it might be taken for a ref.
    const fs::path folder = gitDirectories(repo).own / "plovik" / "locks";
    std::error_code failure;
    fs::create_directories(folder, failure);
    const auto stamp = std::chrono::system_clock::now().time_since_epoch().count();
    fs::rename(file, folder / (file.filename().string() + '.' + std::to_string(stamp)), failure);
    if (failure)
        throw GitError("lock", 1,
                       inQuotes(file.filename().string()) + " could not be moved: " + failure.message() + '.');
}

} // namespace gitkit
