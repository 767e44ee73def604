// SPDX-License-Identifier: GPL-3.0-or-later
#include "GitKit/repository/HistoryWalk.h"

#include "GitKit/repository/RefArguments.h"
#include "GitKit/runner/GitError.h"

namespace gitkit {

namespace {

bool resolvesHead(const GitRunner& runner)
{
    return runner.output({"rev-parse", "--verify", "--quiet", "HEAD"}).status == 0;
}

} // namespace

std::vector<std::string> walkStarts(const HistoryScope& scope, HeadStart head)
{
    if (scope.ref)
        return {revisionArgument("log", *scope.ref)};
    std::vector<std::string> all{"--branches", "--remotes", "--tags"};
    if (head == HeadStart::always)
        all.emplace_back("HEAD");
    // --all adds HEAD where it has a commit, and here no ref besides.
    if (head == HeadStart::ifBorn)
        all.insert(all.end(), {"--single-worktree", "--exclude=refs/*", "--all"});
    return all;
}

std::vector<std::string> walkArguments(const std::vector<std::string>& starts,
                                       const std::optional<HistoryFilter>& filter)
{
    using Field = HistoryFilter::Field;
    const bool isFiltered = filter && !filter->text.empty();
    std::vector<std::string> arguments;
    if (isFiltered && filter->field == Field::message)
        arguments = {"--fixed-strings", "-i", "--grep=" + filter->text};
    if (isFiltered && filter->field == Field::author)
        arguments = {"--fixed-strings", "-i", "--author=" + filter->text};
    arguments.insert(arguments.end(), starts.begin(), starts.end());
    arguments.emplace_back("--");
    if (isFiltered && filter->field == Field::path)
        arguments.push_back(":(icase)*" + filter->text + "*");
    return arguments;
}

std::string walkHistory(const GitRunner& runner, const HistoryScope& scope,
                        const std::function<std::vector<std::string>(const std::vector<std::string>& starts)>& command)
{
    if (scope.ref)
        return runner.bytes(command(walkStarts(scope)));
    try {
        return runner.bytes(command(walkStarts(scope)));
    } catch (const GitError&) {
        // HEAD names nothing on a branch without commits.
        if (resolvesHead(runner))
            throw;
    }
    return runner.bytes(command(walkStarts(scope, HeadStart::never)));
}

} // namespace gitkit
