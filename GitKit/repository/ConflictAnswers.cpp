// SPDX-License-Identifier: GPL-3.0-or-later
// What an answer makes of a conflict's paths.

#include "GitKit/MergeSegments.h"
#include "GitKit/Text.h"
#include "GitKit/repository/ConflictOutcome.h"
#include "GitKit/repository/Conflicts.h"
#include "GitKit/repository/GitRepository.h"
#include "GitKit/repository/InTheWay.h"
#include "GitKit/repository/Resolving.h"

#include <algorithm>
#include <filesystem>
#include <set>

namespace gitkit {

namespace {

namespace fs = std::filesystem;

constexpr std::size_t largestRenamed = std::size_t{256} << 20;

/// Returns a name for the right side's file beside the left one's: "picture~topic.png".
std::string secondName(const Conflict& conflict, const std::string& label)
{
    std::string tidy = label.empty() ? "right" : label;
    std::ranges::replace_if(tidy, [](char byte) { return byte == '/' || byte == '\0' || byte == '\n'; }, '_');
    const fs::path path(conflict.path);
    return (path.parent_path() / (path.stem().string() + '~' + tidy + path.extension().string())).string();
}

/// Merges what both sides have made of a renamed file; nullopt where they clash.
std::optional<Stage> mergedRename(const GitRepository& repo, const Conflict& conflict)
{
    const std::string mode = mergedMode(conflict);
    if (conflict.base && conflict.base->hash == conflict.left->hash)
        return Stage{mode, conflict.right->hash};
    if (conflict.left->hash == conflict.right->hash || (conflict.base && conflict.base->hash == conflict.right->hash))
        return Stage{mode, conflict.left->hash};
    if (conflict.isBinary || conflict.left->isLink() || conflict.right->isLink())
        return std::nullopt;
    ConflictContents contents = conflictContents(repo, conflict, largestRenamed);
    if (!contents.left || !contents.right)
        return std::nullopt;
    const MergedSides sides = mergedSides(
        repo.runner().context(),
        {.base = std::move(contents.base), .left = std::move(*contents.left), .right = std::move(*contents.right)});
    if (sides.conflictCount() > 0)
        return std::nullopt;
    return Stage{mode, storedBlob(repo, joined(sides))};
}

void chooseName(const GitRepository& repo, const Conflict& conflict, ConflictAnswer answer, ConflictOutcome& outcome)
{
    for (const std::string& path : conflict.allPaths())
        outcome.paths[path] = std::nullopt;
    if (answer == ConflictAnswer::gone || !conflict.left || !conflict.right)
        return;
    const std::optional<Stage> merged = mergedRename(repo, conflict);
    if (answer == ConflictAnswer::both) {
        outcome.paths[conflict.left->path] = merged ? *merged : stageOf(*conflict.left);
        outcome.paths[conflict.right->path] = merged ? *merged : stageOf(*conflict.right);
        return;
    }
    const std::string& chosen = answer == ConflictAnswer::left ? conflict.left->path : conflict.right->path;
    if (merged) {
        outcome.paths[chosen] = merged;
        return;
    }
    outcome.paths.erase(chosen);
    Stages stages;
    if (conflict.base)
        stages[1] = stageOf(*conflict.base);
    stages[2] = stageOf(*conflict.left);
    stages[3] = stageOf(*conflict.right);
    outcome.conflicts[chosen] = stages;
}

/// One side has the file, and the other a folder of its name, or it was added in a folder that has moved.
void chooseOneOfTwoPlaces(const Conflict& conflict, ConflictAnswer answer, ConflictOutcome& outcome)
{
    const bool isOnLeft = conflict.left.has_value();
    const ConflictVersion& version = isOnLeft ? *conflict.left : *conflict.right;
    const bool takesOwn = answer == (isOnLeft ? ConflictAnswer::left : ConflictAnswer::right);
    if (conflict.kind == ConflictKind::folderRenamed) {
        outcome.paths[conflict.path] = std::nullopt;
        outcome.paths[takesOwn ? version.path : conflict.path] = stageOf(version);
        return;
    }
    outcome.paths[conflict.path] = std::nullopt;
    if (answer == ConflictAnswer::both) {
        outcome.paths[conflict.path] = stageOf(version);
    } else if (takesOwn) {
        outcome.paths[version.path] = stageOf(version);
        outcome.folders.push_back(version.path);
    }
}

void chooseSide(const Conflict& conflict, ConflictAnswer answer, const std::string& label, ConflictOutcome& outcome)
{
    for (const std::string& path : conflict.allPaths())
        outcome.paths[path] = std::nullopt;
    const auto place = [&](const std::string& path, const std::optional<ConflictVersion>& version) {
        outcome.paths[path] = version ? std::optional(stageOf(*version)) : std::nullopt;
    };
    if (answer == ConflictAnswer::both && conflict.kind == ConflictKind::fileAndLink) {
        // Git has given one of them another name already.
        const bool isLeftRenamed = conflict.isLeftRenamed;
        place(isLeftRenamed ? conflict.related.front() : conflict.path, conflict.left);
        place(isLeftRenamed ? conflict.path : conflict.related.front(), conflict.right);
    } else if (answer == ConflictAnswer::both) {
        place(conflict.path, conflict.left);
        place(secondName(conflict, label), conflict.right);
    } else if (answer != ConflictAnswer::gone) {
        place(conflict.path, answer == ConflictAnswer::left ? conflict.left : conflict.right);
    }
}

bool fits(const Conflict& conflict, ConflictAnswer answer)
{
    const std::vector<ConflictAnswer> answers = answersTo(conflict);
    return std::ranges::find(answers, answer) != answers.end();
}

/// Throws where a name that no conflict has is taken.
void requireFree(const GitRepository& repo, const std::vector<Conflict>& conflicts, const ConflictOutcome& outcome)
{
    std::set<std::string> own(outcome.folders.begin(), outcome.folders.end());
    for (const Conflict& conflict : conflicts) {
        for (std::string& path : conflict.allPaths())
            own.insert(std::move(path));
    }
    for (const auto& [path, stage] : outcome.paths) {
        if (!own.contains(path) && standingInPlaceOf(repo.root(), path) == path)
            refuseToResolve("There is a file " + inQuotes(path) + " already. Nothing was done.",
                            ErrorKind::wouldOverwriteUnknownFiles);
    }
}

} // namespace

void requireConflicts(const GitRepository& repo, const std::vector<Conflict>& conflicts)
{
    const auto listed = parseStages(repo.runner().bytes({"ls-files", "--unmerged", "-z"}));
    for (const Conflict& conflict : conflicts) {
        if (!listed.contains(conflict.path))
            refuseToResolve(inQuotes(conflict.path) + " is not in conflict any more. Nothing was done.",
                            ErrorKind::changedMeanwhile);
    }
}

std::vector<std::string> pathsOfAnswer(const Conflict& conflict, ConflictAnswer answer, const std::string& label)
{
    std::vector<std::string> paths = conflict.allPaths();
    const auto addIf = [&](bool isWritten, const std::optional<ConflictVersion>& version) {
        if (isWritten && version)
            paths.push_back(version->path);
    };
    if (conflict.kind == ConflictKind::folderAndFile || conflict.kind == ConflictKind::folderRenamed) {
        addIf(answer == ConflictAnswer::left, conflict.left);
        addIf(answer == ConflictAnswer::right, conflict.right);
    } else if (answer == ConflictAnswer::both && fits(conflict, answer)) {
        paths.push_back(secondName(conflict, label));
    }
    std::ranges::sort(paths);
    paths.erase(std::ranges::unique(paths).begin(), paths.end());
    return paths;
}

void answerConflicts(const GitRepository& repo, const std::vector<Conflict>& conflicts, ConflictAnswer answer,
                     const std::string& label)
{
    requireConflicts(repo, conflicts);
    ConflictOutcome outcome;
    for (const Conflict& conflict : conflicts) {
        outcome.hashSize = hashSizeOf(conflict);
        if (!fits(conflict, answer))
            refuseToResolve("The conflict in " + inQuotes(conflict.path) +
                            " cannot be resolved like this. Nothing was done.");
        if (conflict.kind == ConflictKind::renamedBoth)
            chooseName(repo, conflict, answer, outcome);
        else if (conflict.kind == ConflictKind::folderAndFile || conflict.kind == ConflictKind::folderRenamed)
            chooseOneOfTwoPlaces(conflict, answer, outcome);
        else
            chooseSide(conflict, answer, label, outcome);
    }
    requireFree(repo, conflicts, outcome);
    if (!outcome.paths.empty())
        apply(repo, outcome);
}

} // namespace gitkit
