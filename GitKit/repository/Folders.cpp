// SPDX-License-Identifier: GPL-3.0-or-later
#include "GitKit/repository/Folders.h"

#include "GitKit/Text.h"
#include "GitKit/repository/GitRepository.h"
#include "GitKit/runner/GitError.h"

#include <algorithm>
#include <utility>

namespace gitkit {

namespace {

bool isInAny(const std::string& folder, const std::vector<std::string>& submodules)
{
    return std::ranges::any_of(submodules, [&](const std::string& each) { return folder.starts_with(each + '/'); });
}

std::vector<std::string> checkIgnore(const GitRepository& repo, const std::vector<std::string>& folders)
{
    if (folders.empty())
        return {};
    std::string input;
    for (const std::string& folder : folders)
        input.append(folder).push_back('\0');
    return splitNul(
        repo.runner().bytes({"check-ignore", "-z", "--stdin"}, {.input = std::move(input), .accepting = {0, 1}}));
}

} // namespace

std::vector<std::string> submodulePaths(const GitRepository& repo)
{
    std::vector<std::string> found;
    // "160000 hash stage<tab>path"
    for (const std::string& entry : splitNul(repo.runner().bytes({"ls-files", "-s", "-z"}))) {
        std::string path = entry.substr(entry.find('\t') + 1);
        if (entry.starts_with("160000 ") &&
            (found.empty() || found.back() != path)) // once for all stages of a conflict
            found.push_back(std::move(path));
    }
    return found;
}

GitDirectories gitDirectories(const GitRepository& repo)
{
    const auto ask = [&repo](const char* which) {
        return std::filesystem::path(
            withoutLineEnd(repo.runner().bytes({"rev-parse", "--path-format=absolute", which})));
    };
    return {ask("--git-dir"), ask("--git-common-dir")};
}

bool isBare(const std::filesystem::path& root)
{
    std::error_code ignored;
    return !std::filesystem::exists(root / ".git", ignored) && std::filesystem::exists(root / "HEAD", ignored) &&
           std::filesystem::is_directory(root / "objects", ignored);
}

std::vector<std::string> ignoredFolders(const GitRepository& repo)
{
    std::vector<std::string> folders;
    for (std::string& path : splitNul(
             repo.runner().bytes({"ls-files", "--others", "--ignored", "--exclude-standard", "--directory", "-z"})))
    {
        if (path.ends_with('/')) {
            path.pop_back();
            folders.push_back(std::move(path));
        }
    }
    // Git also lists folders that merely hold nothing but ignored files; a file that is none may appear in those.
    return ignoredAmong(repo, folders);
}

std::vector<std::string> ignoredAmong(const GitRepository& repo, const std::vector<std::string>& folders)
{
    std::vector<std::string> asked = folders;
    std::erase_if(asked, [](const std::string& folder) { return folder.empty(); });
    try {
        return checkIgnore(repo, asked);
    } catch (const GitError& error) {
        if (error.kind() != ErrorKind::insideSubmodule)
            throw;
    }
    // A submodule ignores by its own rules, and git gives up at the first folder inside one.
    const std::vector<std::string> inside = submodulePaths(repo);
    std::erase_if(asked, [&](const std::string& folder) { return isInAny(folder, inside); });
    return checkIgnore(repo, asked);
}

} // namespace gitkit
