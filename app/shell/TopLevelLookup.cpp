// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/shell/TopLevelLookup.h"

#include "GitKit/repository/GitRepository.h"

#include <future>
#include <mutex>
#include <optional>
#include <utility>

namespace plovik {

namespace {

struct Begun {
    std::filesystem::path folder;
    std::future<std::filesystem::path> topLevel;
};

std::mutex mutex;
std::optional<Begun> begun; ///< guarded by mutex

std::optional<Begun> takeBegun(const std::filesystem::path& folder)
{
    const std::scoped_lock lock(mutex);
    if (!begun || begun->folder != folder)
        return std::nullopt;
    return std::exchange(begun, std::nullopt);
}

} // namespace

void beginTopLevelLookup(const std::filesystem::path& folder)
{
    // Deferred when no thread can be started.
    auto topLevel = std::async(std::launch::async | std::launch::deferred, &gitkit::GitRepository::topLevel, folder);
    const std::scoped_lock lock(mutex);
    begun = Begun{folder, std::move(topLevel)};
}

std::filesystem::path topLevelOf(const std::filesystem::path& folder)
{
    if (std::optional<Begun> early = takeBegun(folder))
        return early->topLevel.get();
    return gitkit::GitRepository::topLevel(folder);
}

} // namespace plovik
