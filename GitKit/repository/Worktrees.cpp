// SPDX-License-Identifier: GPL-3.0-or-later
#include "GitKit/repository/Worktrees.h"

#include "GitKit/Text.h"
#include "GitKit/parsers/Fields.h"
#include "GitKit/repository/GitRepository.h"
#include "GitKit/runner/GitMessages.h"
#include "GitKit/runner/GitVersion.h"

#include <algorithm>
#include <system_error>

namespace gitkit {

std::vector<Worktree> parseWorktrees(std::string_view output, char end)
{
    constexpr std::string_view folder = "worktree ";
    constexpr std::string_view branch = "branch ";
    std::vector<Worktree> found;
    Pieces lines(output, end);
    while (const auto line = lines.next()) {
        if (line->starts_with(folder))
            found.push_back({.folder = line->substr(folder.size()), .branch = {}});
        else if (line->starts_with(branch) && !found.empty())
            found.back().branch = line->substr(branch.size());
        else if (*line == "bare" && !found.empty())
            found.back().isBare = true;
    }
    return found;
}

std::vector<Worktree> worktrees(const GitRepository& repo)
{
    std::vector<std::string> command{"worktree", "list", "--porcelain"};
    const bool isSafe = can(Ability::listsWorktreesSafely);
    if (isSafe)
        command.emplace_back("-z");
    return parseWorktrees(repo.runner().bytes(command), isSafe ? '\0' : '\n');
}

std::optional<std::filesystem::path> otherWorktree(const GitRepository& repo, const std::string& message)
{
    const std::vector<Worktree> all = worktrees(repo);
    // A folder says more than a branch, but its name may be shown with other bytes.
    auto place = std::ranges::find_if(
        all, [&message](const Worktree& tree) { return namesInQuotes(message, tree.folder.string()); });
    if (place == all.end())
        place = std::ranges::find_if(all, [&message](const Worktree& tree) {
            return !tree.branch.empty() && namesInQuotes(message, tree.branch.substr(tree.branch.find('/', 5) + 1));
        });
    std::error_code failure;
    const bool isOther = place != all.end() && !place->isBare &&
                         std::filesystem::is_directory(place->folder, failure) &&
                         !std::filesystem::equivalent(place->folder, repo.root(), failure) && !failure;
    return isOther ? std::optional(place->folder) : std::nullopt;
}

} // namespace gitkit
