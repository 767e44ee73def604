// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "GitKit/records/FileRevision.h"
#include "GitKit/records/LineRange.h"
#include "GitKit/runner/GitStream.h"

#include <chrono>
#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace gitkit {

class GitRepository;

/// The name that a file had while its history is followed from the newest commit to the oldest. A value for one thread
/// at a time.
class FollowedPath {
public:
    explicit FollowedPath(std::string asked) : asked_(std::move(asked)), path_(asked_) {}

    /// Completes the path of a merge, which git lists without one: it gets the path that the next newer commit leaves.
    /// Returns false for a commit that changed files in a folder that once had the file's name; it is to be left out.
    bool complete(FileRevision& revision);

private:
    std::string asked_;
    std::string path_;
};

/// The history that GitRepository::fileLog() lists, in the same order, read while git walks it. The commits have no
/// labels.
///
/// Any thread, but one at a time. Destroying it ends its git. Between two reads git waits on its full pipe.
class FileLogStream {
public:
    /// `path` is the file's name in `revision`, or in HEAD without one. With `lines`, only what changed these lines of that
    /// revision is listed, also under earlier names of the file. Throws as GitRunner::stream() and
    /// revisionArgument().
    FileLogStream(const GitRepository& repo, const std::string& path, const std::optional<std::string>& revision,
                  const std::optional<LineRange>& lines = {});

    /// Waits for the next revision and returns it with those that come within `pause` after it, at most `most` in all;
    /// none at the end of the history. Throws GitError when git fails, and RunStopped when the repository's context
    /// requests a stop, but only after what was found before was returned.
    std::vector<FileRevision> next(std::size_t most, std::chrono::milliseconds pause);

    /// Whether the history has ended; what next() returned last was the rest of it. False while that is not known.
    bool hasEnded() const { return hasEnded_ && !ahead_; }

private:
    using Clock = GitStream::Clock;
    std::optional<FileRevision> take(Clock::time_point until);
    void collect(std::vector<FileRevision>& found, std::size_t most, std::chrono::milliseconds pause);

    std::optional<FileRevision> takeRevision(std::string_view& rest);
    bool complete(FileRevision& revision);

    std::string asked_;
    bool isOfLines_;
    FollowedPath path_;
    std::optional<GitStream> git_; ///< until the history has ended
    bool hasEnded_ = false;
    std::string bytes_;                 ///< printed and not yet taken
    std::size_t taken_ = 0;             ///< how much of `bytes_` is taken
    std::optional<FileRevision> ahead_; ///< the next one, read to see whether there is one
};

} // namespace gitkit
