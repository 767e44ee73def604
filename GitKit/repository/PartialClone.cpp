// SPDX-License-Identifier: GPL-3.0-or-later
#include "GitKit/repository/PartialClone.h"

#include "GitKit/repository/GitRepository.h"
#include "GitKit/repository/RefArguments.h"
#include "GitKit/runner/GitError.h"

#include <algorithm>
#include <array>
#include <string_view>

namespace gitkit {

namespace {

constexpr auto keptFromFetching =
    std::to_array<std::string_view>({"cat-file", "diff", "diff-tree", "show", "status", "stash"});

} // namespace

void downloadContents(const GitRepository& repo, const std::string& hash)
{
    // Git fetches all that a diff needs at once. Pairing renames needs the most, and the totals are short to print.
    repo.runner().accepted({"show", "--format=", "--shortstat", "-M", "--first-parent", "--no-ext-diff",
                            "--no-textconv", commitArgument("show", hash), "--"});
}

Restriction PartialCloneGuard::before(const std::string& command, const RunContext& context)
{
    Restriction restriction = inner_ ? inner_->before(command, context) : Restriction();
    if (std::ranges::find(keptFromFetching, command) == keptFromFetching.end() || !isPartial(context))
        return restriction;
    restriction.settings.insert(restriction.settings.end(), {{"diff.renames", "false"}, {"status.renames", "false"}});
    // No version of git has another way to say so. An empty list allows no protocol.
    restriction.environment.emplace_back("GIT_ALLOW_PROTOCOL", "");
    return restriction;
}

bool PartialCloneGuard::isPartial(const RunContext& context)
{
    const std::lock_guard lock(reading_);
    if (!isPartial_) {
        const GitRepository repo(root_, RunContext{.stop = context.stop});
        isPartial_ = repo.runner()
                         .output({"config", "--type=bool", "--get-regexp", "^remote\\..*\\.promisor$"})
                         .stdoutBytes.find(" true") != std::string::npos;
    }
    return *isPartial_;
}

} // namespace gitkit
