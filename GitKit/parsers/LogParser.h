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
/// A subject or a name may hold any byte but a line feed, the separators included: a subject is one line by its
/// making, and a name stands on one line of the commit. A record's end, or its beginning, is therefore taken from the
/// separator together with the line feed next to it, and no text of anybody's can make a record of its own.
struct LogParser {
    static constexpr const char* listFormat = "--format=%H%x1f%P%x1f%an%x1f%ae%x1f%at%x1f%D%x1f%s%x1e";
    static constexpr const char* fileFormat = "--format=%x1e%H%x1f%P%x1f%an%x1f%ae%x1f%at%x1f%D%x1f%s";
    static constexpr const char* detailFormat = "--format=%H%x1f%P%x1f%an%x1f%ae%x1f%at%x1f%cn%x1f%ct%x1f%B";

    /// What has %D name the refs in full, and all that have a label here: log.excludeDecoration adds up over all
    /// configuration files and can be overruled by arguments alone.
    static constexpr std::array decorationArguments{"--decorate=full", "--decorate-refs=HEAD",
                                                    "--decorate-refs=refs/heads/", "--decorate-refs=refs/remotes/",
                                                    "--decorate-refs=refs/tags/"};

    /// History: one record of `listFormat` a commit, in git's order.
    static std::vector<Commit> parse(std::string_view output);

    /// The history of the file that is called `path` now: records of `fileFormat`, each followed by the commit's
    /// --name-status line.
    static std::vector<FileRevision> parseFileLog(std::string_view output, std::string_view path);

    /// One commit in `detailFormat`, without its files; nothing when a field is missing.
    static std::optional<CommitDetail> parseDetail(std::string_view output);

    /// One %D field with full names.
    static std::vector<RefLabel> decorations(std::string_view text);
};

} // namespace gitkit
