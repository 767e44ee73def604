// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "GitKit/records/Commit.h"
#include "GitKit/records/CommitDetail.h"
#include "GitKit/records/FileRevision.h"

#include <array>
#include <optional>
#include <string_view>
#include <vector>

namespace gitkit {

/// Reads what `git log` and `git show` print. Pure; skips what it cannot read. Any thread.
///
/// A subject or a name can contain every byte except a line feed, even the separators. So a record begins or ends only
/// where a separator stands next to a line feed, so that no text in a commit can make a record of its own.
struct LogParser {
    static constexpr const char* listFormat = "--format=%H%x1f%P%x1f%an%x1f%ae%x1f%at%x1f%D%x1f%s%x1e";
    static constexpr const char* fileFormat = "--format=%x1e%H%x1f%P%x1f%an%x1f%ae%x1f%at%x1f%D%x1f%s";
    static constexpr const char* detailFormat = "--format=%H%x1f%P%x1f%an%x1f%ae%x1f%at%x1f%cn%x1f%ct%x1f%B";

    /// Makes %D print full names of all refs that get a label here. These are arguments because log.excludeDecoration
    /// adds up over all configuration files, and only arguments overrule it.
    static constexpr std::array decorationArguments{"--decorate=full", "--decorate-refs=HEAD",
                                                    "--decorate-refs=refs/heads/", "--decorate-refs=refs/remotes/",
                                                    "--decorate-refs=refs/tags/"};

    /// Reads a history: one record of `listFormat` for each commit, in git's order.
    static std::vector<Commit> parse(std::string_view output);

    /// Reads the history of the file that is now called `path`: records of `fileFormat`, each followed by the commit's
    /// --name-status line.
    static std::vector<FileRevision> parseFileLog(std::string_view output, std::string_view path);

    /// Reads one commit in `detailFormat`, without its files. Returns nullopt when a field is missing.
    static std::optional<CommitDetail> parseDetail(std::string_view output);

    /// Reads one %D field with full names.
    static std::vector<RefLabel> decorations(std::string_view text);
};

} // namespace gitkit
