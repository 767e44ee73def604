// SPDX-License-Identifier: GPL-3.0-or-later
#include "GitKit/repository/RecentBranches.h"

#include "GitKit/repository/GitRepository.h"
#include "GitKit/runner/GitRunner.h"

#include <set>
#include <string_view>

namespace gitkit {

std::vector<std::string> recentlyCheckedOut(const GitRepository& repo)
{
    const std::string printed =
        repo.runner().bytes({"log", "--walk-reflogs", "--format=%gs", "-z", "--max-count=500", "HEAD", "--"});
    std::vector<std::string> names;
    std::set<std::string_view> seen;
    std::string_view left = printed;
    while (!left.empty()) {
        const std::string_view entry = left.substr(0, left.find('\0'));
        left.remove_prefix(std::min(left.size(), entry.size() + 1));
        // What a reflog says is data, in English: "checkout: moving from main to side".
        constexpr std::string_view start = "checkout: moving from ";
        const std::size_t to = entry.rfind(" to ");
        if (!entry.starts_with(start) || to == std::string_view::npos || to < start.size())
            continue;
        for (const std::string_view name : {entry.substr(to + 4), entry.substr(start.size(), to - start.size())}) {
            if (seen.insert(name).second)
                names.emplace_back(name);
        }
    }
    return names;
}

} // namespace gitkit
