// SPDX-License-Identifier: GPL-3.0-or-later
#include "GitKit/repository/HistoryStream.h"

#include "GitKit/parsers/LogParser.h"
#include "GitKit/repository/GitRepository.h"
#include "GitKit/repository/HistoryWalk.h"

#include <filesystem>
#include <system_error>
#include <utility>

namespace gitkit {

namespace {

constexpr std::uintmax_t manyRefs = 150'000; // bytes

/// What a search finds is handed on as it comes: it may be the last for long.
DateOrder orderFor(const HistoryWalk& walk)
{
    if (walk.isSortedByGit || walk.filter)
        return DateOrder(DateOrder::First::earliest, 0);
    return DateOrder(DateOrder::First::newest);
}

/// Returns whether the list of packed refs is that of some two thousand. Asks no git, because that is to save time; a
/// repository whose refs are stored elsewhere has few of them here.
bool hasManyRefs(const std::filesystem::path& root)
{
    std::error_code none;
    const std::uintmax_t size = std::filesystem::file_size(root / ".git/packed-refs", none);
    return !none && size > manyRefs;
}

} // namespace

HistoryStream::HistoryStream(const GitRepository& repo, const HistoryWalk& walk)
    : isWithoutTags_(walk.mayLeaveOutTags && !walk.scope.ref && hasManyRefs(repo.root())),
      terms_(walk.filter ? searchTerms(*walk.filter) : SearchTerms()), order_(orderFor(walk))
{
    std::vector<std::string> arguments{"log"};
    if (walk.isSortedByGit)
        arguments.emplace_back("--date-order");
    // Without this a setting would make git read every ref before the first commit.
    arguments.insert(arguments.end(), {"--no-decorate", "-z", LogParser::streamFormat});
    std::vector<std::string> starts = walkStarts(walk.scope, HeadStart::ifBorn);
    if (isWithoutTags_)
        std::erase(starts, "--tags");
    const std::vector<std::string> rest = walkArguments(starts, walk.filter);
    arguments.insert(arguments.end(), rest.begin(), rest.end());
    git_.emplace(repo.runner().stream(arguments));
}

/// Reads once. Returns false at the end.
bool HistoryStream::readMore(Clock::time_point until)
{
    bytes_.erase(0, std::exchange(taken_, 0));
    return git_->read(bytes_, until);
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
            if (!read->commit.hash.empty() && terms_.hold(read->commit))
                order_.add(std::move(read->commit), read->committed);
            continue;
        }
        if (Clock::now() >= until)
            return std::nullopt;
        if (!readMore(until)) {
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
