// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "GitKit/DateOrder.h"
#include "GitKit/SearchTerms.h"
#include "GitKit/records/Commit.h"
#include "GitKit/records/HistoryFilter.h"
#include "GitKit/records/HistoryScope.h"
#include "GitKit/runner/GitRunner.h"

#include <chrono>
#include <cstddef>
#include <optional>
#include <string>
#include <vector>

namespace gitkit {

class GitRepository;

/// Which history to read, and how.
struct HistoryWalk {
    HistoryScope scope;
    std::optional<HistoryFilter> filter = {};
    /// Lets git sort, which walks the whole history before the first commit is printed.
    bool isSortedByGit = false;
    /// Lets the walk start without the tags where there are so many that git takes long to open them.
    bool mayLeaveOutTags = false;

    bool operator==(const HistoryWalk&) const = default;
};

/// The history that GitRepository::log() lists, in the same order, read while git walks it. The commits have no labels.
///
/// A filter leaves out parents, so what it finds comes in git's default order, which is the same where no date is wrong;
/// none stands above a child that was found, too.
///
/// Any thread, but one at a time. Destroying it ends its git. Between two reads git waits on its full pipe.
class HistoryStream {
public:
    /// Starts git. Ends with RunStopped when the repository's context requests a stop. Throws as GitRunner::stream().
    HistoryStream(const GitRepository& repo, const HistoryWalk& walk);

    using Clock = GitStream::Clock;
    /// Returns the next commits: at most `most`, and fewer when `until` passes or the history ends. Throws GitError
    /// when git fails.
    std::vector<Commit> next(std::size_t most, Clock::time_point until = Clock::time_point::max());

    /// Whether the history has ended; what next() returned last was the rest of it.
    bool hasEnded() const { return hasEnded_ && !ahead_; }
    /// Whether the walk has started without the tags.
    bool isWithoutTags() const { return isWithoutTags_; }
    /// Whether wrong dates have spoilt the order. The history must then be read with `isSortedByGit`.
    bool isWrong() const { return order_.isWrong(); }

private:
    std::optional<Commit> take(Clock::time_point until);
    bool readMore(Clock::time_point until);

    std::optional<GitStream> git_; ///< until the history has ended
    bool hasEnded_ = false;
    bool isWithoutTags_ = false;
    std::string bytes_;     ///< printed and not yet taken
    std::size_t taken_ = 0; ///< how much of `bytes_` is taken
    SearchTerms terms_;     ///< what git is not asked to find is looked at here
    DateOrder order_;
    std::optional<Commit> ahead_; ///< the next one, read to see whether there is one
};

} // namespace gitkit
