// SPDX-License-Identifier: GPL-3.0-or-later
#include "GitKit/repository/Picking.h"

#include "GitKit/Text.h"
#include "GitKit/parsers/Fields.h"
#include "GitKit/records/Commit.h"
#include "GitKit/repository/GitRepository.h"
#include "GitKit/repository/InTheWay.h"
#include "GitKit/repository/Overwriting.h"
#include "GitKit/repository/RefArguments.h"
#include "GitKit/repository/TellingCommand.h"

#include <algorithm>

namespace gitkit {

namespace {

using Words = std::vector<std::string>;

/// Returns a command that lists the files of such a kind of change which a commit has made.
Words filesOfPick(const std::string& commit, int parent, const char* kind)
{
    Words command{"diff-tree", "--name-only", "-z", "--no-renames", "--no-ext-diff", "-r", kind};
    if (parent > 0)
        command.insert(command.end(), {commit + '^' + std::to_string(parent), commit, "--"});
    else
        command.insert(command.end(), {"--root", "--no-commit-id", commit, "--"});
    return command;
}

constexpr const char* addedFiles = "--diff-filter=A";
constexpr const char* deletedFiles = "--diff-filter=D";

void runPick(const GitRepository& repo, Words command, const Words& commits, int parent, const char* comes)
{
    for (const std::string& commit : commits)
        exactArgument(command.front().c_str(), commit);
    // Without a name git would stop just before the commit, half-way.
    repo.runner().accepted({"var", "GIT_COMMITTER_IDENT"});
    waitForIndex(repo);
    for (const std::string& commit : commits)
        requireIgnoredStay(repo, command.front().c_str(), filesOfPick(commit, parent, comes));
    if (parent > 0)
        command.insert(command.end(), {"-m", std::to_string(parent)});
    command.insert(command.end(), commits.begin(), commits.end());
    runTelling(repo.runner(), command);
}

InTheWay inTheWayOfAll(const GitRepository& repo, const Pick& pick, const char* comes)
{
    InTheWay all;
    for (const std::string& commit : pick.commits) {
        const InTheWay one = standingAt(repo, filesOfPick(commit, pick.parent, comes));
        all.untracked.insert(all.untracked.end(), one.untracked.begin(), one.untracked.end());
        all.ignored.insert(all.ignored.end(), one.ignored.begin(), one.ignored.end());
    }
    for (Words* const paths : {&all.untracked, &all.ignored}) {
        std::ranges::sort(*paths);
        paths->erase(std::ranges::unique(*paths).begin(), paths->end());
    }
    return all;
}

} // namespace

void cherryPick(const GitRepository& repo, const Pick& pick)
{
    runPick(repo, {"cherry-pick"}, pick.commits, pick.parent, addedFiles);
}

void revert(const GitRepository& repo, const Pick& pick)
{
    runPick(repo, {"revert", "--no-edit"}, {pick.commits.rbegin(), pick.commits.rend()}, pick.parent, deletedFiles);
}

InTheWay inTheWayOfPick(const GitRepository& repo, const Pick& pick) { return inTheWayOfAll(repo, pick, addedFiles); }

InTheWay inTheWayOfRevert(const GitRepository& repo, const Pick& pick)
{
    return inTheWayOfAll(repo, pick, deletedFiles);
}

Words parentNames(const GitRepository& repo, const std::string& hash)
{
    Words names;
    const std::string parents(withoutLineEnd(
        repo.runner().bytes({"log", "-1", "--no-decorate", "--format=%P", exactArgument("log", hash), "--"})));
    Pieces words(parents, ' ');
    while (const auto parent = words.next()) {
        if (parent->empty())
            continue;
        std::string name(withoutLineEnd(
            repo.runner()
                .output({"name-rev", "--name-only", "--no-undefined", "--refs=refs/heads/*", std::string(*parent)})
                .stdoutBytes));
        const bool isBehindMerge = name.find('^') != std::string::npos;
        name = name.substr(0, name.find('~'));
        names.push_back(name.empty() || isBehindMerge ? std::string(shortHash(*parent)) : name);
    }
    return names;
}

} // namespace gitkit
