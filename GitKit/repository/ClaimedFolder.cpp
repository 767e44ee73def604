// SPDX-License-Identifier: GPL-3.0-or-later
#include "GitKit/repository/ClaimedFolder.h"

#include "GitKit/Text.h"
#include "GitKit/runner/GitError.h"

#include <algorithm>
#include <ranges>
#include <system_error>

namespace gitkit {

namespace fs = std::filesystem;

ClaimedFolder::ClaimedFolder(const char* command, const fs::path& folder) : folder_(folder)
{
    std::vector<fs::path> missing;
    std::error_code unknown;
    for (fs::path outer = folder; !outer.empty() && !fs::exists(outer, unknown); outer = outer.parent_path()) {
        if (outer.has_filename())
            missing.push_back(outer);
        if (!outer.has_relative_path())
            break;
    }
    for (const fs::path& next : missing | std::views::reverse)
        make(command, next);
}

void ClaimedFolder::make(const char* command, const fs::path& folder)
{
    std::error_code why;
    // What another program has made meanwhile is not ours.
    if (fs::create_directory(folder, why))
        made_.push_back(folder);
    if (!why)
        return;
    for (const fs::path& each : made_ | std::views::reverse)
        fs::remove(each, why);
    isKept_ = true;
    throw GitError(command, 1, "The folder " + inQuotes(folder.string()) + " cannot be made: " + why.message() + ".");
}

ClaimedFolder::~ClaimedFolder()
{
    if (isKept_)
        return;
    std::error_code ignored;
    // A program that was killed may have a child that writes its last file meanwhile.
    for (int tries = 0; tries < 3 && std::ranges::find(made_, folder_) != made_.end(); ++tries) {
        fs::remove_all(folder_, ignored);
        if (!fs::exists(fs::symlink_status(folder_, ignored)))
            break;
    }
    // A parent goes only while nothing else has come into it.
    for (const fs::path& each : made_ | std::views::reverse) {
        if (each != folder_)
            fs::remove(each, ignored);
    }
}

} // namespace gitkit
