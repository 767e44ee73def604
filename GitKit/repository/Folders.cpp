// SPDX-License-Identifier: GPL-3.0-or-later
#include "GitKit/repository/Folders.h"

#include "GitKit/Text.h"
#include "GitKit/repository/GitRepository.h"
#include "GitKit/runner/GitError.h"

#include <optional>

namespace gitkit {

namespace {

/// The submodule that check-ignore refuses to look into, when that is what its message says.
std::optional<std::string> refusedSubmodule(const std::string& message)
{
    constexpr std::string_view phrase = "' is in submodule '";
    const std::size_t found = message.find(phrase);
    if (found == std::string::npos || !message.ends_with('\''))
        return std::nullopt;
    const std::size_t start = found + phrase.size();
    return message.substr(start, message.size() - 1 - start);
}

} // namespace

GitDirectories gitDirectories(const GitRepository& repo)
{
    const auto ask = [&repo](const char* which) {
        return std::filesystem::path(
            withoutLineEnd(repo.runner().bytes({"rev-parse", "--path-format=absolute", which})));
    };
    return {ask("--git-dir"), ask("--git-common-dir")};
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
    while (!asked.empty()) {
        std::string input;
        for (const std::string& folder : asked)
            input.append(folder).push_back('\0');
        try {
            return splitNul(repo.runner().bytes({"check-ignore", "-z", "--stdin"},
                                                {.input = std::move(input), .accepting = {0, 1}, .environment = {}}));
        } catch (const GitError& error) {
            // A submodule ignores by its own rules, and git gives up at the first folder inside one.
            const auto submodule = refusedSubmodule(error.message());
            if (!submodule)
                throw;
            const auto erased =
                std::erase_if(asked, [&](const std::string& folder) { return folder.starts_with(*submodule + "/"); });
            if (erased == 0)
                throw;
        }
    }
    return {};
}

} // namespace gitkit
