// SPDX-License-Identifier: GPL-3.0-or-later
#include "GitKit/repository/ConflictOutcome.h"

#include "GitKit/Text.h"
#include "GitKit/repository/GitRepository.h"
#include "GitKit/repository/InTheWay.h"
#include "GitKit/repository/PathCommand.h"
#include "GitKit/runner/GitError.h"

#include <algorithm>
#include <filesystem>
#include <sys/stat.h>

namespace gitkit {

namespace {

namespace fs = std::filesystem;

/// Checks out the commit that a submodule is to have. Where the submodule is not here, does not have the commit, or has
/// changes in the way, it stays and shows as changed.
void updateSubmodule(const GitRepository& repo, const std::string& path, const std::string& hash)
{
    const fs::path folder = repo.root() / path;
    std::error_code ignored;
    if (!fs::exists(folder / ".git", ignored))
        return;
    RunContext context = repo.runner().context();
    context.requiredTopLevel.clear();
    GitRunner(folder, context).output({"checkout", "-q", "--detach", "--no-recurse-submodules", hash, "--"});
}

void removeFolder(const GitRepository& repo, const std::string& folder)
{
    const std::string spec = literalPathspec(folder);
    if (!repo.runner().bytes({"ls-files", "--others", "-z", "--", spec}).empty())
        refuseToResolve("The folder " + inQuotes(folder) + " has files that git does not know. Nothing was done.",
                        ErrorKind::wouldOverwriteUnknownFiles);
    repo.runner().run({"rm", "-r", "-q", "--", spec}); // refuses where files were changed
}

} // namespace

std::string entriesOf(const ConflictOutcome& outcome)
{
    const std::string none(outcome.hashSize, '0');
    std::string entries;
    for (const auto& [path, stage] : outcome.paths) {
        // What goes first, so that a file can take the place of a folder.
        if (!stage)
            entries.insert(0, "0 " + none + '\t' + path + '\0');
        else
            entries += "0 " + none + '\t' + path + '\0' + stage->mode + ' ' + stage->hash + '\t' + path + '\0';
    }
    for (const auto& [path, stages] : outcome.conflicts) {
        entries += absentEntry(stages, path);
        for (std::size_t number = 1; number < stages.size(); ++number) {
            if (stages[number])
                entries += stages[number]->mode + ' ' + stages[number]->hash + ' ' + std::to_string(number) + '\t' +
                           path + '\0';
        }
    }
    return entries;
}

void apply(const GitRepository& repo, const ConflictOutcome& outcome)
{
    std::vector<std::string> written;
    for (const auto& [path, stage] : outcome.paths) {
        if (stage && stage->isSubmodule()) {
            continue;
        }
        if (std::ranges::find(outcome.folders, path) == outcome.folders.end())
            requireReplaceable(repo, path, Replaceable::fileOrLink);
        if (stage)
            written.push_back(path);
    }
    for (const std::string& folder : outcome.folders)
        removeFolder(repo, folder);
    repo.runner().accepted({"update-index", "-z", "--index-info"}, {.input = entriesOf(outcome)});
    for (const auto& [path, stage] : outcome.paths) {
        if (!stage)
            removeWorkingFile(repo, path);
    }
    if (!written.empty())
        runOnExactPaths(repo.runner(), {"checkout-index", "-f", "-q", "-z", "--stdin"}, written);
    for (const auto& [path, stage] : outcome.paths) {
        if (stage && stage->isSubmodule())
            updateSubmodule(repo, path, stage->hash);
    }
    // Without the files' times in the index, git takes the files for changed and refuses to abort.
    repo.runner().accepted({"update-index", "-q", "--refresh"}, {.accepting = {0, 1}});
}

void requireReplaceable(const GitRepository& repo, const std::string& path, Replaceable allowed)
{
    const std::optional<std::string> standing = standingInPlaceOf(repo.root(), path);
    if (!standing)
        return;
    if (*standing != path)
        refuseToResolve(inQuotes(*standing) + " stands in the place of a folder. Nothing was done.",
                        ErrorKind::wouldOverwriteUnknownFiles);
    struct stat found{};
    const bool isThere = ::lstat((repo.root() / path).c_str(), &found) == 0;
    if (isThere && !S_ISREG(found.st_mode) && !(S_ISLNK(found.st_mode) && allowed == Replaceable::fileOrLink))
        refuseToResolve("What stands at " + inQuotes(path) + " is no file. Nothing was done.",
                        ErrorKind::wouldOverwriteUnknownFiles);
}

void removeWorkingFile(const GitRepository& repo, const std::string& path)
{
    std::error_code error;
    fs::remove(repo.root() / path, error);
    if (error && error != std::errc::no_such_file_or_directory)
        refuseToResolve(inQuotes(path) + " could not be removed: " + error.message() + ".");
    // As git does: folders that are empty now go, too.
    for (fs::path folder = fs::path(path).parent_path(); !folder.empty(); folder = folder.parent_path()) {
        if (!fs::remove(repo.root() / folder, error) || error)
            break;
    }
}

std::string storedBlob(const GitRepository& repo, const std::string& bytes)
{
    return std::string(
        withoutLineEnd(repo.runner().bytes({"hash-object", "-w", "--no-filters", "--stdin"}, {.input = bytes})));
}

std::string mergedMode(const Conflict& conflict)
{
    if (!conflict.left || !conflict.right)
        return conflict.left ? conflict.left->mode : conflict.right ? conflict.right->mode : "100644";
    return conflict.base && conflict.left->mode == conflict.base->mode ? conflict.right->mode : conflict.left->mode;
}

std::size_t hashSizeOf(const Conflict& conflict)
{
    for (const auto* version : {&conflict.base, &conflict.left, &conflict.right}) {
        if (*version)
            return (*version)->hash.size();
    }
    return 40;
}

void refuseToResolve(const std::string& sentence, ErrorKind kind) { throw GitError("update-index", 1, sentence, kind); }

} // namespace gitkit
