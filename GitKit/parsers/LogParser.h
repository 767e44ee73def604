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
/// A subject or a name can contain every byte except NUL. So each field ends in a NUL, and fields are told apart by
/// their number alone. All formats are for runs with -z.
struct LogParser {
    static constexpr const char* listFormat = "--format=%H%x00%P%x00%an%x00%ae%x00%at%x00%D%x00%s";
    static constexpr const char* detailFormat = "--format=%H%x00%P%x00%an%x00%ae%x00%at%x00%cn%x00%ct%x00%B";

    /// The same with the committer's date in place of the labels, for histories that are read while git walks.
    static constexpr const char* streamFormat = "--format=%H%x00%P%x00%an%x00%ae%x00%at%x00%ct%x00%s";

    /// Makes %D print full names of all refs that get a label here. These are arguments because log.excludeDecoration
    /// adds up over all configuration files, and only arguments overrule it.
    static constexpr std::array decorationArguments{"--decorate=full", "--decorate-refs=HEAD",
                                                    "--decorate-refs=refs/heads/", "--decorate-refs=refs/remotes/",
                                                    "--decorate-refs=refs/tags/"};

    /// Reads a history: one record of `listFormat` for each commit, in git's order.
    static std::vector<Commit> parse(std::string_view output);

    /// One record of `streamFormat`. Value.
    struct Streamed {
        Commit commit; ///< without labels
        Date committed;
    };
    /// Takes one record of `streamFormat` from the front of what git has printed so far. Returns nullopt, and takes
    /// nothing, when it is not complete. One without a hash is to be skipped.
    static std::optional<Streamed> take(std::string_view& output);

    /// Takes one record of `streamFormat` with the first file that --name-status lists for it, or with `path` where none
    /// is listed. As soon as that is clear the record is taken; further files are skipped by the next call. `isAll` says
    /// that nothing more will be printed. Otherwise as take().
    static std::optional<FileRevision> takeRevision(std::string_view& output, std::string_view path, bool isAll);

    /// The same as streamFormat for `git log -L`, which prints a patch behind each record. The first byte tells where a
    /// record begins: no line of a patch begins with it.
    static constexpr const char* linesFormat = "--format=%x1e%H%x00%P%x00%an%x00%ae%x00%at%x00%ct%x00%s";
    /// Takes one record of `linesFormat` with its patch, which is complete once the next record has begun or `isAll`. The
    /// file is that of the patch, or `path` where there is none.
    static std::optional<FileRevision> takeLinesRevision(std::string_view& output, std::string_view path, bool isAll);

    /// Reads the history of the file that is now called `path`: records of `listFormat`, each followed by what
    /// --name-status lists for the commit.
    static std::vector<FileRevision> parseFileLog(std::string_view output, std::string_view path);

    /// Reads one commit in `detailFormat` with what --name-status lists for it. Returns nullopt when a field is missing.
    static std::optional<CommitDetail> parseDetail(std::string_view output);

    /// Reads one %D field with full names.
    static std::vector<RefLabel> decorations(std::string_view text);
};

} // namespace gitkit
