// SPDX-License-Identifier: GPL-3.0-or-later
#include "GitKit/repository/StagedPaths.h"

#include "GitKit/Text.h"
#include "GitKit/repository/PathCommand.h"
#include "GitKit/runner/GitError.h"

#include <map>
#include <optional>
#include <set>
#include <string_view>

namespace gitkit {

namespace {

/// What HEAD has at a path that is staged.
struct StagedPath {
    std::string mode, hash;
    bool isInIndex = false;

    bool isInHead() const { return mode.find_first_not_of('0') != std::string::npos; }
};
using StagedByPath = std::map<std::string, StagedPath>;

/// Reads ":mode mode hash hash letter", NUL, path, NUL.
StagedByPath stagedPaths(const GitRunner& runner)
{
    const std::vector<std::string> listed =
        splitNul(runner.bytes({"diff", "--cached", "--raw", "-z", "--no-renames", "--no-abbrev"}));
    StagedByPath staged;
    for (std::size_t index = 0; index + 1 < listed.size(); index += 2) {
        const std::string_view line = listed[index];
        const std::size_t now = line.find(' ');
        const std::size_t hash = line.find(' ', now + 1);
        if (!line.starts_with(':') || hash == std::string_view::npos)
            continue;
        const std::string_view rest = line.substr(hash + 1);
        staged[listed[index + 1]] = {std::string(line.substr(1, now - 1)), std::string(rest.substr(0, rest.find(' '))),
                                     line.substr(now + 1, hash - now - 1).find_first_not_of('0') !=
                                         std::string_view::npos};
    }
    return staged;
}

/// Returns another staged path that cannot be in the index together with `path`.
std::optional<std::string> obstacle(const StagedByPath& staged, const std::set<std::string>& wanted,
                                    const std::string& path)
{
    const auto isObstacle = [&](const auto& entry) { return entry.second.isInIndex && !wanted.contains(entry.first); };
    const std::string folder = path + '/';
    for (auto inside = staged.lower_bound(folder); inside != staged.end() && inside->first.starts_with(folder);
         ++inside)
    {
        if (isObstacle(*inside))
            return inside->first;
    }
    for (std::size_t end = path.find('/'); end != std::string::npos; end = path.find('/', end + 1)) {
        if (const auto parent = staged.find(path.substr(0, end)); parent != staged.end() && isObstacle(*parent))
            return parent->first;
    }
    return std::nullopt;
}

} // namespace

void stagePaths(const GitRunner& runner, const std::vector<std::string>& standing, const std::vector<std::string>& gone)
{
    // First what can fail. What it replaces by a folder or a file of the same name needs no removal any more.
    runOnExactPaths(runner, {"update-index", "-z", "--add", "--replace", "--ignore-skip-worktree-entries", "--stdin"},
                    standing);
    forgetPaths(runner, gone);
}

void unstagePaths(const GitRunner& runner, const std::vector<std::string>& paths)
{
    if (paths.empty())
        return;
    const StagedByPath staged = stagedPaths(runner);
    const std::set<std::string> wanted(paths.begin(), paths.end());
    std::string removals;
    std::string entries;
    for (const std::string& path : wanted) {
        const auto found = staged.find(path);
        if (found == staged.end())
            continue;
        const StagedPath& head = found->second;
        if (!head.isInHead()) {
            removals += "0 " + head.hash + '\t' + path + '\0';
            continue;
        }
        if (const std::optional<std::string> other = obstacle(staged, wanted, path))
            throw GitError("reset", 1,
                           inQuotes(path) + " cannot be unstaged alone, because " + inQuotes(*other) +
                               " is staged in its place. Unstage both.");
        entries += head.mode + ' ' + head.hash + '\t' + path + '\0';
    }
    if (removals.empty() && entries.empty())
        return;
    runner.accepted({"update-index", "-z", "--index-info"}, {.input = removals + entries});
    // Without the files' times in the index, every status would read these files again.
    static_cast<void>(runner.output({"update-index", "-q", "--refresh"}));
}

void forgetPaths(const GitRunner& runner, const std::vector<std::string>& paths)
{
    runOnExactPaths(runner, {"update-index", "-z", "--force-remove", "--stdin"}, paths);
}

} // namespace gitkit
