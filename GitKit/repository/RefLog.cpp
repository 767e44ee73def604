// SPDX-License-Identifier: GPL-3.0-or-later
#include "GitKit/repository/RefLog.h"

#include "GitKit/Text.h"
#include "GitKit/parsers/Fields.h"
#include "GitKit/repository/GitRepository.h"
#include "GitKit/repository/RefArguments.h"

#include <algorithm>
#include <set>
#include <string_view>

namespace gitkit {

namespace {

/// %gd is the ref with a time in braces.
constexpr const char* moveFormat = "--format=%H%x00%P%x00%an%x00%ae%x00%at%x00%gd%x00%s%x00%gs";

Date timeIn(std::string_view selector)
{
    const std::size_t brace = selector.rfind('{');
    const std::string_view time = selector.substr(brace == std::string_view::npos ? selector.size() : brace + 1);
    return readDate(time.substr(0, time.find(' ')));
}

void markOnlyHere(const GitRepository& repo, std::vector<RefMove>& moves)
{
    std::set<std::string> hashes;
    for (const RefMove& move : moves)
        hashes.insert(move.commit.hash);
    std::vector<std::string> arguments{"rev-list", "--ignore-missing"};
    arguments.insert(arguments.end(), hashes.begin(), hashes.end());
    arguments.insert(arguments.end(), {"--not", "--branches", "--remotes", "--tags", "--"});
    const GitOutput printed = repo.runner().output(arguments);
    std::set<std::string_view> unreachable;
    Pieces lines(printed.stdoutBytes, '\n');
    while (const auto line = lines.next())
        unreachable.insert(*line);
    for (RefMove& move : moves)
        move.isOnlyHere = unreachable.contains(move.commit.hash);
}

} // namespace

std::string branchLeft(const std::string& action)
{
    constexpr std::string_view start = "checkout: moving from ";
    const std::size_t to = action.rfind(" to ");
    if (!action.starts_with(start) || to == std::string::npos || to < start.size())
        return {};
    std::string left = action.substr(start.size(), to - start.size());
    const bool isHash = left.size() >= 40 && left.find_first_not_of("0123456789abcdef") == std::string::npos;
    return isHash ? std::string() : left;
}

std::vector<RefMove> refMoves(const GitRepository& repo, const std::string& ref, std::size_t most)
{
    const std::string printed =
        repo.runner().bytes({"log", "--walk-reflogs", "--date=raw", "-z", "--no-decorate", moveFormat,
                             "--max-count=" + std::to_string(most), exactArgument("log", ref), "--"});
    std::vector<RefMove> moves;
    NulFields fields(printed);
    while (const auto record = fields.take<8>()) {
        const auto& [hash, parents, author, email, date, selector, subject, action] = *record;
        RefMove move{.commit = {}, .moved = timeIn(selector), .action = shownLine(action)};
        move.commit.hash = hash;
        Pieces names(parents, ' ');
        while (const auto parent = names.next())
            move.commit.parents.emplace_back(*parent);
        move.commit.authorName = shownLine(author);
        move.commit.authorEmail = shownLine(email);
        move.commit.date = readDate(date);
        move.commit.subject = shownLine(subject);
        moves.push_back(std::move(move));
    }
    if (!moves.empty())
        markOnlyHere(repo, moves);
    return moves;
}

} // namespace gitkit
