// SPDX-License-Identifier: GPL-3.0-or-later
// The patch is applied to the file as git would store it, in an index of its own, and not by `git apply` in the working
// tree: that removes the file before it writes the new one, and then loses all of it when a filter fails, the disk is
// full or git is killed.
//
// The scratch index begins with what the real one has at the path. Git looks there when it decides how to convert the
// line ends of a file, which is why `git hash-object` computes another blob than `git diff` for some files.

#include "GitKit/repository/ReversedFile.h"

#include "GitKit/Text.h"
#include "GitKit/records/Commit.h"
#include "GitKit/repository/GitRepository.h"
#include "GitKit/repository/IndexEntries.h"
#include "GitKit/repository/ScratchIndex.h"
#include "GitKit/repository/StaleChange.h"
#include "GitKit/runner/GitError.h"

namespace gitkit {

namespace {

std::optional<IndexEntry> entryIn(const ScratchIndex& index, const std::string& path)
{
    EntriesAtPath found = indexEntries(index.runner(), path, index.options());
    return found.own.size() == 1 ? std::optional(std::move(found.own.front())) : std::nullopt;
}

/// Puts the file as it is in the working tree into the scratch index.
std::optional<IndexEntry> takeIn(const ScratchIndex& index, const std::string& path)
{
    std::vector<std::string> arguments{"update-index", "--add", "--remove"};
    const std::vector<IndexEntry> known = indexEntries(index.runner(), path).own;
    if (known.size() == 1)
        arguments.insert(arguments.end(),
                         {"--cacheinfo", known.front().mode + ',' + known.front().hash + ',' + known.front().path});
    if (known.size() == 1 && known.front().isSubmodule())
        throw GitError("apply", 1, inQuotes(path) + " is a submodule: its changes are discarded in its own window.");
    arguments.insert(arguments.end(), {"--", path});
    index.runner().accepted(arguments, index.options());
    return entryIn(index, path);
}

} // namespace

std::optional<FileContent> reversedFile(const GitRepository& repo, const PartialChange& change)
{
    const ScratchIndex index(repo.runner());
    const std::optional<IndexEntry> now = takeIn(index, change.path);
    if (change.before && (now ? now->hash != *change.before : !isNoHash(*change.before)))
        throw staleChange();
    repo.runner().bytes({"apply", "--cached", "--whitespace=nowarn", "-R", "-"},
                        index.options({.input = change.patch}));
    const std::optional<IndexEntry> wanted = entryIn(index, change.path);
    if (!wanted)
        return std::nullopt;
    FileContent content{.bytes = {}, .isLink = wanted->isLink(), .isExecutable = std::nullopt};
    content.bytes = content.isLink
                        ? repo.runner().bytes({"cat-file", "blob", wanted->hash})
                        : repo.runner().bytes({"cat-file", "--filters", "--path=" + change.path, wanted->hash});
    if (!now || now->mode != wanted->mode)
        content.isExecutable = wanted->isExecutable();
    return content;
}

} // namespace gitkit
