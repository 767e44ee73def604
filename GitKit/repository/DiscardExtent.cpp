// SPDX-License-Identifier: GPL-3.0-or-later
#include "GitKit/repository/DiscardExtent.h"

#include "GitKit/parsers/NumStatParser.h"
#include "GitKit/repository/GitRepository.h"
#include "GitKit/repository/PathCommand.h"

#include <algorithm>
#include <iterator>
#include <set>

namespace gitkit {

namespace {

constexpr std::size_t longestArguments = std::size_t{64} << 10;

struct Counted {
    int lines = 0;
    std::set<std::string> binary;
};

/// Adds up one side's changes.
Counted counted(const GitRepository& repo, std::vector<std::string> arguments, const std::set<std::string>& paths)
{
    std::size_t length = 0;
    for (const std::string& path : paths)
        length += path.size() + 1;
    arguments.insert(arguments.end(), {"--numstat", "-z", "--no-renames", "--"});
    if (length <= longestArguments)
        std::ranges::transform(paths, std::back_inserter(arguments), literalPathspec);
    Counted all;
    for (const ChangeCounts& file : NumStatParser::parse(repo.runner().bytes(arguments))) {
        if (!paths.contains(file.path)) // a path also names what is in the folder of that name
            continue;
        if (!file.added || !file.removed)
            all.binary.insert(file.path);
        else
            all.lines += std::max(*file.added, *file.removed);
    }
    return all;
}

} // namespace

DiscardExtent discardExtent(const GitRepository& repo, const std::vector<FileChange>& files)
{
    DiscardExtent counts;
    std::set<std::string> unstaged;
    std::set<std::string> staged;
    for (const FileChange& file : files) {
        const bool isNew = file.isUntracked() || file.index == 'A' || (file.index == '.' && file.worktree == 'A');
        counts.newFiles += isNew ? 1 : 0;
        if (isNew || file.isConflicted || file.isSubmodule)
            continue;
        if (file.worktree != '.')
            unstaged.insert(file.path);
        if (file.hasStaged()) {
            for (const std::string& path : file.allPaths())
                staged.insert(path);
        }
    }
    Counted inWorkingTree;
    Counted inIndex;
    if (!unstaged.empty())
        inWorkingTree = counted(repo, {"diff"}, unstaged);
    if (!staged.empty())
        inIndex = counted(repo, {"diff", "--cached"}, staged);
    counts.unstagedLines = inWorkingTree.lines;
    counts.stagedLines = inIndex.lines;
    inWorkingTree.binary.merge(inIndex.binary);
    counts.binaryFiles = static_cast<int>(inWorkingTree.binary.size());
    return counts;
}

} // namespace gitkit
