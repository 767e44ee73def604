// SPDX-License-Identifier: GPL-3.0-or-later
#include "GitKit/repository/Comparing.h"

#include "GitKit/Text.h"
#include "GitKit/parsers/Fields.h"
#include "GitKit/parsers/LogParser.h"
#include "GitKit/repository/GitRepository.h"
#include "GitKit/repository/RefArguments.h"

#include <string_view>

namespace gitkit {

namespace {

CommitApart::Side sideOfMark(std::string_view mark)
{
    if (mark == "<")
        return CommitApart::Side::first;
    return mark == ">" ? CommitApart::Side::second : CommitApart::Side::same;
}

} // namespace

std::vector<std::string> mergeBases(const GitRepository& repo, const std::string& one, const std::string& other)
{
    const std::string printed =
        repo.runner().bytes({"merge-base", "-a", revisionArgument("merge-base", one), other}, {.accepting = {0, 1}});
    std::vector<std::string> bases;
    Pieces lines(printed, '\n');
    while (const auto line = lines.next())
        bases.emplace_back(*line);
    return bases;
}

std::vector<CommitApart> commitsApart(const GitRepository& repo, const std::string& first, const std::string& second,
                                      std::size_t most)
{
    constexpr std::string_view option = "--format=";
    const std::string format =
        std::string(option) + "%m%x00" + std::string(std::string_view(LogParser::streamFormat).substr(option.size()));
    const std::string printed =
        repo.runner().bytes({"log", "--left-right", "--cherry-mark", "--no-decorate", "-z", "-n", std::to_string(most),
                             format, revisionArgument("log", first) + "..." + second, "--"});
    std::vector<CommitApart> commits;
    std::string_view rest = printed;
    while (!rest.empty()) {
        const std::string_view mark = rest.substr(0, rest.find('\0'));
        rest.remove_prefix(std::min(mark.size() + 1, rest.size()));
        std::optional<LogParser::Streamed> read = LogParser::take(rest);
        if (!read)
            break;
        commits.push_back({sideOfMark(mark), std::move(read->commit)});
    }
    return commits;
}

std::vector<CommitFile> mergedFiles(const GitRepository& repo, const std::string& merge)
{
    std::vector<CommitFile> files;
    for (std::string& path :
         splitNul(repo.runner().bytes({"diff-tree", "-r", "-z", "-c", "--name-only", "--no-commit-id", "--no-ext-diff",
                                       "--no-textconv", revisionArgument("diff-tree", merge), "--"})))
        files.push_back({.status = 'M', .path = std::move(path), .originalPath = {}, .source = {}});
    return files;
}

} // namespace gitkit
