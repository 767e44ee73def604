// SPDX-License-Identifier: GPL-3.0-or-later
#include "GitKit/repository/Commits.h"

#include "GitKit/Text.h"
#include "GitKit/parsers/NumStatParser.h"
#include "GitKit/repository/GitRepository.h"
#include "GitKit/repository/HistoryStream.h"
#include "GitKit/repository/RefArguments.h"

#include <charconv>
#include <iterator>
#include <string_view>

namespace gitkit {

std::string resolveCommit(const GitRepository& repo, const std::string& name)
{
    return std::string(trimmed(repo.runner().bytes({"rev-parse", "--verify", commitArgument("rev-parse", name)})));
}

std::optional<int> position(const GitRepository& repo, const HistoryScope& scope, const std::string& hash)
{
    int before = 0;
    for (bool isSortedByGit : {false, true}) {
        before = 0;
        HistoryStream stream(repo, {.scope = scope, .isSortedByGit = isSortedByGit});
        while (!stream.hasEnded() && !stream.isWrong()) {
            for (const Commit& commit : stream.next(DateOrder::usualWindow)) {
                if (commit.hash == hash && !stream.isWrong())
                    return before;
                ++before;
            }
        }
        if (!stream.isWrong())
            break;
    }
    return std::nullopt;
}

LeftBehind commitsLeftBehind(const GitRepository& repo, const std::string& target)
{
    if (repo.runner().output({"symbolic-ref", "--quiet", "HEAD"}).status == 0)
        return {};
    LeftBehind left{.head = resolveCommit(repo, "HEAD")};
    const std::string counted =
        repo.runner().bytes({"rev-list", "--count", left.head, "--not", commitArgument("rev-list", target),
                             "--branches", "--remotes", "--tags", "--"});
    std::from_chars(counted.data(), counted.data() + counted.size(), left.commits);
    return left;
}

std::vector<ChangeCounts> changeCounts(const GitRepository& repo, const std::string& hash, CommitKind kind)
{
    const auto counts = [&repo](const std::string& commit) {
        return NumStatParser::parse(
            repo.runner().bytes({"show", "--format=", "--numstat", "-z", "--first-parent", "--no-ext-diff",
                                 "--no-textconv", commitArgument("show", commit), "--"}));
    };
    std::vector<ChangeCounts> files = counts(hash);
    if (kind == CommitKind::stash) {
        // The untracked files are in a commit of their own.
        const std::string untracked(trimmed(repo.runner().bytes(
            {"rev-parse", "--verify", "--quiet", revisionArgument("rev-parse", hash) + "^3"}, {.accepting = {0, 1}})));
        if (!untracked.empty())
            std::ranges::move(counts(untracked), std::back_inserter(files));
    }
    return files;
}

} // namespace gitkit
