// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "GitKit/records/Ignore.h"

#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace gitkit {

class GitRepository;

/// A file that is not ignored all the same, and the rule that makes an exception of it.
struct NotIgnored {
    std::string path;
    std::string source = {}; ///< file of the rule; empty when there is no rule for the path
    std::string line = {};   ///< its number there
    std::string pattern = {};

    bool operator==(const NotIgnored&) const = default;
};

/// Returns the pattern that fits this path of the working tree alone; nullopt where a list cannot say it.
std::optional<std::string> ignorePatternOf(std::string_view path);
/// Returns the pattern for all files with the ending of this one; nullopt where it has none, or none that can be said.
std::optional<std::string> ignorePatternOfEnding(std::string_view path);

/// Returns a list with the patterns at its end, apart from those that it has already. Its line ends are kept.
std::string withPatterns(std::string list, const std::vector<std::string>& patterns);

// Any thread; these block and throw as the methods of GitRepository do.

/// Returns the absolute path of the list.
std::filesystem::path ignoreList(const GitRepository& repo, IgnorePlace place);

/// Writes the patterns into the list and then asks git. Returns the files that it does not ignore, leaving out those that
/// it goes on tracking. Throws where the list is a link, which git does not follow, or no file; nothing is changed then.
std::vector<NotIgnored> ignore(const GitRepository& repo, const IgnoreRequest& request);

} // namespace gitkit
