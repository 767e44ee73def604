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

std::string walkHistory(const GitRunner& runner, const HistoryScope& scope,
                        const std::function<std::vector<std::string>(const std::vector<std::string>& starts)>& command)
{
    if (scope.ref)
        return runner.bytes(command({revisionArgument("log", *scope.ref)}));
    std::vector<std::string> all{"--branches", "--remotes", "--tags", "HEAD"};
    try {
        return runner.bytes(command(all));
    } catch (const GitError&) {
        // HEAD names nothing on a branch without commits.
        if (resolvesHead(runner))
            throw;
    }
    all.pop_back();
    return runner.bytes(command(all));
}

} // namespace gitkit
