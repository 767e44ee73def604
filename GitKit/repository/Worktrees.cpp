// SPDX-License-Identifier: GPL-3.0-or-later
#include "GitKit/repository/Worktrees.h"

#include "GitKit/RegularFile.h"
#include "GitKit/Text.h"
#include "GitKit/parsers/Fields.h"
#include "GitKit/records/QuotedName.h"
#include "GitKit/repository/GitRepository.h"
#include "GitKit/repository/RefArguments.h"
#include "GitKit/runner/GitError.h"
#include "GitKit/runner/GitMessages.h"
#include "GitKit/runner/GitVersion.h"

#include <algorithm>
#include <array>
#include <system_error>

namespace gitkit {

namespace {

namespace fs = std::filesystem;

/// Returns the git directory that all working trees of a repository share; empty where there is none. Runs nothing.
fs::path commonDirectoryOf(const fs::path& root)
{
    constexpr std::size_t longest = 8192;
    constexpr std::string_view start = "gitdir: ";
    const fs::path place = root / ".git";
    std::error_code failure;
    if (fs::is_directory(place, failure))
        return place;
    const std::string link(trimmed(regularFileBytes(place, longest).value_or(std::string()), "\r\n"));
    if (!link.starts_with(start))
        return {};
    const fs::path own = root / link.substr(start.size());
    const std::string common(trimmed(regularFileBytes(own / "commondir", longest).value_or(std::string()), "\r\n"));
    return common.empty() ? own : own / common;
}

bool isAttribute(std::string_view line)
{
    constexpr std::array<std::string_view, 6> names{"HEAD", "branch", "bare", "detached", "locked", "prunable"};
    return std::ranges::find(names, line.substr(0, line.find(' '))) != names.end();
}

std::string quoted(std::string_view reason, char end)
{
    return end == '\0' ? std::string(reason) : unquotedName(reason);
}

void readAttribute(Worktree& tree, std::string_view line, char end)
{
    const std::size_t space = line.find(' ');
    const std::string_view name = line.substr(0, space);
    const std::string_view value = space == std::string_view::npos ? std::string_view() : line.substr(space + 1);
    if (name == "HEAD" && value.find_first_not_of('0') != std::string_view::npos)
        tree.head = value;
    else if (name == "branch")
        tree.branch = value;
    else if (name == "bare")
        tree.isBare = true;
    else if (name == "locked")
        tree.lock = quoted(value, end);
    else if (name == "prunable")
        tree.isMissing = true;
}

GitError refusal(const fs::path& folder, const std::string& why)
{
    return {"worktree", 1, inQuotes(folder.filename().string()) + ' ' + why};
}

/// Returns the name of an existing branch as `worktree add` takes it, which knows no full ones.
std::string branchArgument(const std::string& branch)
{
    if (branch.empty() || branch.starts_with('-'))
        throw GitError("worktree", 1, inQuotes(branch) + " cannot be checked out.");
    return branch;
}

/// Runs `worktree add`, which makes the branch before it finds that the folder cannot be used.
void addWithBranch(const GitRepository& repo, const std::string& branch, const std::vector<std::string>& command)
{
    const bool wasThere =
        repo.runner().output({"rev-parse", "--verify", "--quiet", "refs/heads/" + branch}).status == 0;
    try {
        repo.runner().accepted(command);
    } catch (const GitError&) {
        if (!wasThere)
            repo.runner().output({"branch", "-q", "-D", "--", branch}); // git refuses where it is checked out
        throw;
    }
}

} // namespace

bool mayHaveWorktrees(const fs::path& root)
{
    const fs::path common = commonDirectoryOf(root);
    std::error_code failure;
    return !common.empty() && fs::is_directory(common / "worktrees", failure);
}

WorktreeList parseWorktrees(std::string_view output, char end)
{
    constexpr std::string_view folder = "worktree ";
    WorktreeList list;
    bool isReadable = true;
    const auto close = [&] {
        if (!isReadable) {
            list.trees.pop_back();
            ++list.unreadable;
        }
        isReadable = true;
    };
    Pieces lines(output, end);
    while (const auto line = lines.next()) {
        if (line->starts_with(folder)) {
            close();
            list.trees.push_back({.folder = line->substr(folder.size()), .isMain = list.trees.empty()});
        } else if (!list.trees.empty()) {
            isReadable = isReadable && isAttribute(*line);
            readAttribute(list.trees.back(), *line, end);
        }
    }
    close();
    return list;
}

WorktreeList worktrees(const GitRepository& repo)
{
    if (!mayHaveWorktrees(repo.root()))
        return {};
    std::vector<std::string> command{"worktree", "list", "--porcelain"};
    const bool isSafe = can(Ability::listsWorktreesSafely);
    if (isSafe)
        command.emplace_back("-z");
    WorktreeList list = parseWorktrees(repo.runner().bytes(command), isSafe ? '\0' : '\n');
    for (Worktree& tree : list.trees) {
        std::error_code failure;
        tree.isHere = fs::equivalent(tree.folder, repo.root(), failure) && !tree.isBare;
        tree.isMissing = tree.isMissing || !fs::is_directory(tree.folder, failure);
    }
    return list;
}

std::optional<fs::path> otherWorktree(const GitRepository& repo, const std::string& message)
{
    const std::vector<Worktree> all = worktrees(repo).trees;
    // A folder says more than a branch, but its name may be shown with other bytes.
    auto place = std::ranges::find_if(
        all, [&message](const Worktree& tree) { return namesInQuotes(message, tree.folder.string()); });
    if (place == all.end())
        place = std::ranges::find_if(all, [&message](const Worktree& tree) {
            return !tree.branch.empty() && namesInQuotes(message, tree.branch.substr(tree.branch.find('/', 5) + 1));
        });
    const bool isOther = place != all.end() && !place->isBare && !place->isMissing && !place->isHere;
    return isOther ? std::optional(place->folder) : std::nullopt;
}

void addWorktree(const GitRepository& repo, const NewWorktree& tree)
{
    std::vector<std::string> command{"worktree", "add"};
    if (tree.isNewBranch)
        command.insert(command.end(), {"--no-track", "-b", newNameArgument("worktree", tree.branch)});
    command.insert(command.end(), {"--", tree.folder.string()});
    if (!tree.isNewBranch)
        command.push_back(branchArgument(tree.branch));
    else if (!tree.start.empty())
        command.push_back(exactArgument("worktree", tree.start));
    if (tree.isNewBranch)
        addWithBranch(repo, tree.branch, command);
    else
        repo.runner().accepted(command);
}

void lockWorktree(const GitRepository& repo, const fs::path& folder, const std::string& reason)
{
    std::vector<std::string> command{"worktree", "lock"};
    if (!reason.empty())
        command.insert(command.end(), {"--reason", reason});
    command.insert(command.end(), {"--", folder.string()});
    repo.runner().accepted(command);
}

void unlockWorktree(const GitRepository& repo, const fs::path& folder)
{
    repo.runner().accepted({"worktree", "unlock", "--", folder.string()});
}

void forgetWorktree(const GitRepository& repo, const fs::path& folder)
{
    std::error_code failure;
    if (fs::exists(fs::symlink_status(folder, failure)))
        throw refusal(folder, "is there again, so it is not forgotten.");
    repo.runner().accepted({"worktree", "remove", "--", folder.string()});
}

} // namespace gitkit
