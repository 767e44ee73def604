// SPDX-License-Identifier: GPL-3.0-or-later
#include "GitKit/repository/TreeChanges.h"

#include "GitKit/Text.h"
#include "GitKit/parsers/NameStatusParser.h"
#include "GitKit/parsers/NumStatParser.h"
#include "GitKit/repository/Folders.h"
#include "GitKit/repository/GitRepository.h"
#include "GitKit/repository/ScratchIndex.h"
#include "GitKit/runner/GitError.h"

#include <filesystem>
#include <system_error>
#include <utility>

namespace gitkit {

namespace {

/// Compares a tree with the working tree. Git looks into files that were only touched if the index says so, and this is
/// found out in a copy of the index, because a read writes nothing.
std::string compareWithFiles(const GitRepository& repo, const std::vector<std::string>& arguments)
{
    const std::filesystem::path index = gitDirectories(repo).own / "index";
    std::error_code ignored;
    const ScratchIndex copy(repo.runner(), std::filesystem::exists(index, ignored) ? index : std::filesystem::path());
    repo.runner().output({"update-index", "-q", "--refresh"}, copy.options());
    return repo.runner().bytes(arguments, copy.options());
}

std::string compareOnce(const GitRepository& repo, const TreePair& trees, Renames renames, const char* format)
{
    if (trees.from == trees.to)
        return {};
    const bool isOfWorkingTree = trees.from.empty() || trees.to.empty();
    std::vector<std::string> arguments{isOfWorkingTree ? "diff" : "diff-tree",
                                       "-r",
                                       "-z",
                                       format,
                                       renames == Renames::paired ? "-M" : "--no-renames",
                                       "--no-ext-diff",
                                       "--no-textconv"};
    for (std::string& side : treeArguments(trees))
        arguments.push_back(std::move(side));
    arguments.emplace_back("--");
    return isOfWorkingTree ? compareWithFiles(repo, arguments) : repo.runner().bytes(arguments);
}

/// Where contents are not here, renames stay unpaired.
std::string compare(const GitRepository& repo, const TreePair& trees, Renames renames, const char* format)
{
    try {
        return compareOnce(repo, trees, renames, format);
    } catch (const GitError& error) {
        if (error.kind() != ErrorKind::contentsNotHere || renames != Renames::paired)
            throw;
    }
    return compareOnce(repo, trees, Renames::apart, format);
}

} // namespace

std::vector<std::string> treeArguments(const TreePair& trees)
{
    if (trees.from.empty())
        return {"-R", trees.to};
    return trees.to.empty() ? std::vector{trees.from} : std::vector{trees.from, trees.to};
}

std::vector<CommitFile> changedFiles(const GitRepository& repo, const TreePair& trees, Renames renames)
{
    return NameStatusParser::parse(compare(repo, trees, renames, "--name-status"));
}

std::vector<ChangeCounts> changeCounts(const GitRepository& repo, const TreePair& trees, Renames renames)
{
    return NumStatParser::parse(compare(repo, trees, renames, "--numstat"));
}

std::string emptyTreeHash(const GitRepository& repo)
{
    return std::string(
        withoutLineEnd(repo.runner().bytes({"hash-object", "-t", "tree", "--stdin"}, {.input = std::string()})));
}

} // namespace gitkit
