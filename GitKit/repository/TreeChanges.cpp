// SPDX-License-Identifier: GPL-3.0-or-later
#include "GitKit/repository/TreeChanges.h"

#include "GitKit/Text.h"
#include "GitKit/parsers/NameStatusParser.h"
#include "GitKit/parsers/NumStatParser.h"
#include "GitKit/repository/GitRepository.h"

namespace gitkit {

namespace {

std::string compare(const GitRepository& repo, const TreePair& trees, Renames renames, const char* format)
{
    if (trees.from == trees.to)
        return {};
    return repo.runner().bytes({"diff-tree", "-r", "-z", format, renames == Renames::paired ? "-M" : "--no-renames",
                                "--no-ext-diff", "--no-textconv", trees.from, trees.to, "--"});
}

} // namespace

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
