// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/store/readers/ConflictReaders.h"

#include "GitKit/MergeSegments.h"
#include "GitKit/repository/Blobs.h"
#include "GitKit/repository/Conflicts.h"
#include "GitKit/repository/Folders.h"
#include "GitKit/repository/GitRepository.h"
#include "GitKit/repository/Resolving.h"

#include <utility>

namespace plovik {

namespace {

constexpr std::size_t largestShownSide = std::size_t{32} << 20; // as of other pictures

bool isText(const std::optional<std::string>& bytes)
{
    constexpr std::size_t looked = 8000; // as many as git looks at
    return !bytes || bytes->substr(0, looked).find('\0') == std::string::npos;
}

gitkit::ConflictOrigin originOf(const gitkit::GitRepository& repo, const ConflictsRequest& request)
{
    return {request.gitDirectory.empty() ? gitkit::gitDirectories(repo).own : request.gitDirectory, request.operation,
            request.stash};
}

} // namespace

gitkit::ConflictList readConflicts(const gitkit::GitRepository& repo, const ConflictsRequest& request)
{
    return gitkit::conflictList(repo, originOf(repo, request));
}

gitkit::ConflictNames readConflictNames(const gitkit::GitRepository& repo, const ConflictsRequest& request)
{
    return gitkit::conflictNames(repo, originOf(repo, request));
}

bool readHasResolved(const gitkit::GitRepository& repo, const ResolvedRequest& /*request*/)
{
    return !gitkit::resolvedPaths(repo).empty();
}

ReadMerge readMerge(const gitkit::GitRepository& repo, const MergeRequest& request)
{
    ReadMerge read{.sides = {}, .working = {}, .stamp = gitkit::workingStamp(repo, request.conflict.path)};
    gitkit::ConflictContents contents = gitkit::conflictContents(repo, request.conflict, largestMergedFile);
    read.working = std::move(contents.working);
    const bool lacksBase = request.conflict.base && !contents.base;
    if (!contents.left || !contents.right || lacksBase || !isText(contents.base) || !isText(contents.left) ||
        !isText(contents.right))
        return read;
    read.sides = std::make_shared<const gitkit::MergedSides>(
        gitkit::mergedSides(repo.runner().context(), {.base = std::move(contents.base),
                                                      .left = *std::move(contents.left),
                                                      .right = *std::move(contents.right),
                                                      .ignoresLineEnds = request.ignoresLineEnds}));
    return read;
}

ConflictFacts readConflictFacts(const gitkit::GitRepository& repo, const gitkit::Conflict& conflict)
{
    const auto blobOf = [](const std::optional<gitkit::ConflictVersion>& version) {
        return version && !version->isSubmodule() ? std::optional(version->hash) : std::nullopt;
    };
    const gitkit::DiffSource source{blobOf(conflict.left), blobOf(conflict.right), {}};
    const gitkit::SideSizes sizes = gitkit::diffSizes(repo, source);
    gitkit::DiffSides contents = gitkit::diffSides(repo, source, largestShownSide);
    return {.leftSize = sizes.before,
            .rightSize = sizes.after,
            .left = std::move(contents.before),
            .right = std::move(contents.after),
            .submodule = gitkit::submoduleSides(repo, conflict)};
}

} // namespace plovik
