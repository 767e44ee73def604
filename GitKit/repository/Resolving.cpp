// SPDX-License-Identifier: GPL-3.0-or-later
// The index is written first, then the files, so that git never sees a resolved file without its entry.
//
//   update-index --index-info   writes exactly the entries that are given; git remembers the conflict that they end.
//   ls-files --resolve-undo     lists what git remembers of it. update-index --unresolve would make something else of a
//                               path that was resolved by removing it.
//   hash-object                 without filters: what is resolved has come from the repository, and what a filter has made
//                               of it once must not go through it again. checkout-index makes the working file of it.

#include "GitKit/repository/Resolving.h"

#include "GitKit/FileReplacement.h"
#include "GitKit/MergeSegments.h"
#include "GitKit/Text.h"
#include "GitKit/repository/Blobs.h"
#include "GitKit/repository/ConflictOutcome.h"
#include "GitKit/repository/GitRepository.h"
#include "GitKit/repository/PathCommand.h"
#include "GitKit/repository/Stages.h"
#include "GitKit/runner/GitError.h"

#include <algorithm>
#include <map>
#include <sys/stat.h>

namespace gitkit {

namespace {

namespace fs = std::filesystem;

constexpr std::size_t largestSide = std::size_t{256} << 20;

std::int64_t inNanoseconds(const timespec& time)
{
    return static_cast<std::int64_t>(time.tv_sec) * 1'000'000'000 + time.tv_nsec;
}

void requireSeen(const GitRepository& repo, const std::string& path, const std::optional<FileStamp>& seen)
{
    if (seen && workingStamp(repo, path) != *seen)
        refuseToResolve(inQuotes(path) + " was changed by another program meanwhile. Nothing was done.",
                        ErrorKind::changedMeanwhile);
}

/// Returns a blob as a file of this path has it.
std::string asWorkingFile(const GitRepository& repo, const std::string& path, const std::string& hash)
{
    return repo.runner().bytes({"cat-file", "--filters", "--path=" + path, hash});
}

/// Returns the conflicts that were resolved since the last commit and are not there again.
std::map<std::string, Stages> resolvedConflicts(const GitRepository& repo)
{
    std::map<std::string, Stages> resolved = parseStages(repo.runner().bytes({"ls-files", "--resolve-undo", "-z"}));
    for (const auto& [path, stages] : parseStages(repo.runner().bytes({"ls-files", "--unmerged", "-z"})))
        resolved.erase(path);
    return resolved;
}

/// Writes the merge of a file's sides into the working tree, with markers. Returns false when they cannot be merged.
bool writeMerge(const GitRepository& repo, const std::string& path, const Stages& stages, const MergeMarkers& markers)
{
    const auto isFile = [](const std::optional<Stage>& stage) { return stage && stage->mode.starts_with("100"); };
    if (!isFile(stages[2]) || !isFile(stages[3]) || (stages[1] && !isFile(stages[1])))
        return false;
    std::vector<std::string> hashes{stages[2]->hash, stages[3]->hash};
    if (stages[1])
        hashes.push_back(stages[1]->hash);
    auto contents = blobs(repo, hashes, largestSide);
    const auto isText = [](const std::optional<std::string>& bytes) {
        return bytes && bytes->substr(0, 8000).find('\0') == std::string::npos;
    };
    if (!std::ranges::all_of(contents, isText))
        return false;
    const MergedSides sides =
        mergedSides(repo.runner().context(), {.base = stages[1] ? std::move(contents[2]) : std::nullopt,
                                              .left = std::move(*contents[0]),
                                              .right = std::move(*contents[1])});
    const bool isExecutable = stages[2]->mode == "100755";
    const std::string bytes = asWorkingFile(repo, path, storedBlob(repo, joined(sides, {}, markers)));
    if (!replaceFile(repo.root() / path, bytes, isExecutable))
        refuseToResolve(inQuotes(path) + " could not be written.");
    return true;
}

/// Writes the side that git leaves in the working tree where it cannot merge.
void writeSide(const GitRepository& repo, const std::string& path, const Stages& stages)
{
    const std::size_t side = stages[2] ? 2 : 3;
    if (!stages[side]) {
        removeWorkingFile(repo, path);
        return;
    }
    if (!stages[side]->isSubmodule())
        runOnExactPaths(repo.runner(),
                        {"checkout-index", "-f", "-q", "-z", "--stage=" + std::to_string(side), "--stdin"}, {path});
}

/// Gives the index the conflicts again that were resolved.
void unresolve(const GitRepository& repo, const std::vector<std::string>& paths)
{
    const std::map<std::string, Stages> known = resolvedConflicts(repo);
    ConflictOutcome outcome;
    for (const std::string& path : paths) {
        if (const auto found = known.find(path); found != known.end())
            outcome.conflicts.insert(*found);
    }
    if (!outcome.conflicts.empty())
        repo.runner().accepted({"update-index", "-z", "--index-info"}, {.input = entriesOf(outcome)});
}

std::string labelOf(const ConflictName& name)
{
    std::string text = !name.name.empty() ? name.name : !name.subject.empty() ? name.subject : name.hash;
    std::ranges::replace(text, '\n', ' ');
    return text;
}

} // namespace

FileStamp workingStamp(const GitRepository& repo, const std::string& path)
{
    FileStamp stamp{.path = path, .staged = {}};
    struct stat found{};
    if (::lstat((repo.root() / path).c_str(), &found) == 0) {
        stamp.inode = found.st_ino;
        stamp.size = found.st_size;
        stamp.modified = inNanoseconds(found.st_mtim);
        stamp.changed = inNanoseconds(found.st_ctim);
    }
    return stamp;
}

void resolveWith(const GitRepository& repo, const Conflict& conflict, const std::string& bytes,
                 const std::optional<FileStamp>& seen)
{
    requireConflicts(repo, {conflict});
    requireReplaceable(repo, conflict.path, Replaceable::file);
    requireSeen(repo, conflict.path, seen);
    ConflictOutcome outcome{.hashSize = hashSizeOf(conflict)};
    for (const std::string& path : conflict.allPaths())
        outcome.paths[path] = std::nullopt;
    outcome.paths[conflict.path] = Stage{mergedMode(conflict), storedBlob(repo, bytes)};
    apply(repo, outcome);
}

FileStamp keepResult(const GitRepository& repo, const Conflict& conflict, const std::string& bytes,
                     const std::optional<FileStamp>& seen)
{
    requireConflicts(repo, {conflict});
    requireReplaceable(repo, conflict.path, Replaceable::file);
    requireSeen(repo, conflict.path, seen);
    const std::string written = asWorkingFile(repo, conflict.path, storedBlob(repo, bytes));
    if (!replaceFile(repo.root() / conflict.path, written))
        refuseToResolve(inQuotes(conflict.path) + " could not be written.");
    return workingStamp(repo, conflict.path);
}

std::vector<std::string> resolvedPaths(const GitRepository& repo)
{
    std::vector<std::string> paths;
    for (const auto& [path, stages] : resolvedConflicts(repo))
        paths.push_back(path);
    return paths;
}

void startOver(const GitRepository& repo, const std::vector<std::string>& paths, const MergeMarkers& markers)
{
    for (const std::string& path : paths)
        requireReplaceable(repo, path, Replaceable::fileOrLink);
    unresolve(repo, paths);
    const std::map<std::string, Stages> listed = parseStages(repo.runner().bytes({"ls-files", "--unmerged", "-z"}));
    for (const std::string& path : paths) {
        const auto found = listed.find(path);
        if (found != listed.end() && !writeMerge(repo, path, found->second, markers))
            writeSide(repo, path, found->second);
    }
}

void forgetResolution(const GitRepository& repo, const std::string& path, const MergeMarkers& markers)
{
    requireReplaceable(repo, path, Replaceable::file);
    repo.runner().run({"rerere", "forget", "--", literalPathspec(path)});
    startOver(repo, {path}, markers);
}

MergeMarkers markersFor(const ConflictNames& names, int size)
{
    MergeMarkers markers{.size = static_cast<std::size_t>(std::max(size, 1)),
                         .left = labelOf(names.left),
                         .base = labelOf(names.base),
                         .right = labelOf(names.right),
                         .showsBase = false};
    if (names.right.kind == ConflictName::Kind::stash) {
        // By these words the conflict is known for that of a stash.
        markers.left = "Updated upstream";
        markers.right = "Stashed changes";
    }
    return markers;
}

} // namespace gitkit
