// SPDX-License-Identifier: GPL-3.0-or-later
#include "GitKit/undo/TreeMove.h"

#include "GitKit/Text.h"
#include "GitKit/repository/GitRepository.h"
#include "GitKit/repository/ScratchIndex.h"
#include "GitKit/undo/HelperRuns.h"

namespace gitkit {

namespace {

/// Makes the copy of the index say of the changed files what they contain, so that git takes them for its own and moves
/// only what differs between the trees.
void bringLevel(const GitRepository& repo, const ScratchIndex& copy, const std::vector<std::string>& changed)
{
    RunOptions options = helperOptions(copy.options());
    options.input = std::string();
    for (const std::string& path : changed)
        *options.input += path + '\0';
    if (!changed.empty())
        repo.runner().accepted({"update-index", "-z", "--add", "--remove", "--stdin"}, options);
}

} // namespace

void moveTrees(const GitRepository& repo, const std::filesystem::path& gitDirectory, const TreeMove& files,
               const TreeMove& index, const std::vector<std::string>& changed)
{
    const ScratchIndex copy(repo.runner(), gitDirectory / "index");
    bringLevel(repo, copy, changed);
    const RunOptions onCopy = helperOptions(copy.options());
    const std::vector<std::string> moveFiles{"read-tree", "-m", "-u", files.from, files.to};
    const std::vector<std::string> moveIndex{"read-tree", "-m", "-i", index.from, index.to};
    const auto rehearsed = [](std::vector<std::string> command) {
        command.insert(command.begin() + 1, "-n");
        return command;
    };
    // Both are tried first, so that neither moves without the other.
    repo.runner().accepted(rehearsed(moveFiles), onCopy);
    repo.runner().accepted(rehearsed(moveIndex), helperOptions());
    repo.runner().accepted(moveFiles, onCopy);
    repo.runner().accepted(moveIndex, helperOptions());
    // Its exit status tells only that files are changed.
    repo.runner().output({"update-index", "-q", "--refresh"}, helperOptions());
}

std::string indexTree(const GitRepository& repo, const std::filesystem::path& gitDirectory)
{
    const ScratchIndex copy(repo.runner(), gitDirectory / "index");
    const RunOptions options = helperOptions(copy.options());
    // An entry is "MODE HASH STAGE\tPATH". One without a mode takes the path out.
    RunOptions dropping = options;
    dropping.input = std::string();
    for (const std::string& entry : splitNul(repo.runner().bytes({"ls-files", "--unmerged", "-z"}))) {
        const std::size_t hash = entry.find(' ') + 1;
        const std::string none(entry.find(' ', hash) - hash, '0');
        *dropping.input += "0 " + none + entry.substr(entry.find('\t')) + '\0';
    }
    if (!dropping.input->empty())
        repo.runner().accepted({"update-index", "-z", "--index-info"}, dropping);
    return std::string(withoutLineEnd(repo.runner().bytes({"write-tree"}, options)));
}

} // namespace gitkit
