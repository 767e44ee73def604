// SPDX-License-Identifier: GPL-3.0-or-later
#include "GitKit/repository/HistoryStream.h"

#include "GitKit/parsers/LogParser.h"
#include "GitKit/repository/GitRepository.h"
#include "GitKit/repository/HistoryWalk.h"
#include "GitKit/runner/GitError.h"

#include <utility>

namespace gitkit {

namespace {

DateOrder orderFor(const HistoryWalk& walk)
{
    if (walk.isSortedByGit)
        return DateOrder(DateOrder::First::earliest, 0);
    return DateOrder(walk.filter ? DateOrder::First::earliest : DateOrder::First::newest);
}

} // namespace

HistoryStream::HistoryStream(const GitRepository& repo, HistoryWalk walk)
    : walk_(std::move(walk)), runner_(repo.runner()), order_(orderFor(walk_))
{
    start(true);
}

void HistoryStream::start(bool withHead)
{
    std::vector<std::string> arguments{"log"};
    if (walk_.isSortedByGit)
        arguments.emplace_back("--date-order");
    // Without this a setting would make git read every ref before the first commit.
    arguments.insert(arguments.end(), {"--no-decorate", "-z", LogParser::streamFormat});
    const std::vector<std::string> rest = walkArguments(walkStarts(walk_.scope, withHead), walk_.filter);
    arguments.insert(arguments.end(), rest.begin(), rest.end());
    git_.emplace(runner_.stream(arguments));
}

/// Reads once. Returns false at the end.
bool HistoryStream::readMore()
{
    bytes_.erase(0, std::exchange(taken_, 0));
    try {
        const bool isMore = git_->read(bytes_);
        hasRead_ = hasRead_ || isMore;
        return isMore;
    } catch (const GitError&) {
        // HEAD names nothing on a branch without commits, and the other branches still have their history.
        if (hasRead_ || walk_.scope.ref || resolvesHead(runner_))
            throw;
    }
    start(false);
    hasRead_ = true; // the second failure is one
    return git_->read(bytes_);
}

std::optional<Commit> HistoryStream::take(Clock::time_point until)
{
    while (true) {
        if (std::optional<Commit> next = order_.take())
            return next;
        if (hasEnded_)
            return std::nullopt;
        std::string_view rest = std::string_view(bytes_).substr(taken_);
        if (std::optional<LogParser::Streamed> read = LogParser::take(rest)) {
            taken_ = bytes_.size() - rest.size();
            if (!read->commit.hash.empty())
                order_.add(std::move(read->commit), read->committed);
            continue;
        }
        if (Clock::now() >= until)
            return std::nullopt;
        if (!readMore()) {
            hasEnded_ = true;
            git_.reset();
            order_.finish();
        }
    }
}

std::vector<Commit> HistoryStream::next(std::size_t most, Clock::time_point until)
{
    std::vector<Commit> commits;
    if (ahead_)
        commits.push_back(*std::exchange(ahead_, std::nullopt));
    while (commits.size() < most) {
        std::optional<Commit> commit = take(until);
        if (!commit)
            return commits;
        commits.push_back(*std::move(commit));
    }
    ahead_ = take(until);
    return commits;
}

} // namespace gitkit
