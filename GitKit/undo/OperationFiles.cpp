// SPDX-License-Identifier: GPL-3.0-or-later
#include "GitKit/undo/OperationFiles.h"

#include "GitKit/FileReplacement.h"
#include "GitKit/Text.h"
#include "GitKit/repository/FileCopies.h"
#include "GitKit/repository/GitRepository.h"
#include "GitKit/runner/GitError.h"
#include "GitKit/undo/HelperRuns.h"
#include "GitKit/undo/Overlay.h"

#include <algorithm>
#include <array>
#include <set>

namespace gitkit {

namespace {

namespace fs = std::filesystem;

constexpr std::array fileNames{"MERGE_HEAD",   "MERGE_MSG",    "MERGE_MODE",          "MERGE_AUTOSTASH",
                               "SQUASH_MSG",   "BISECT_LOG",   "BISECT_START",        "BISECT_RUN",
                               "BISECT_TERMS", "BISECT_NAMES", "BISECT_FIRST_PARENT", "BISECT_ANCESTORS_OK"};
constexpr std::array folderNames{"sequencer", "rebase-merge", "rebase-apply"};
constexpr std::array refNames{"CHERRY_PICK_HEAD", "REVERT_HEAD", "REBASE_HEAD",
                              "AUTO_MERGE",       "BISECT_HEAD", "BISECT_EXPECTED_REV"};

/// Returns the paths of the files in the git directory.
std::vector<std::string> filesNow(const fs::path& gitDirectory)
{
    std::vector<std::string> paths;
    for (const char* name : fileNames) {
        if (kindAt(gitDirectory / name) == FileKind::regular)
            paths.emplace_back(name);
    }
    for (const char* name : folderNames) {
        if (kindAt(gitDirectory / name) != FileKind::folder)
            continue;
        for (const auto& entry : fs::recursive_directory_iterator(gitDirectory / name)) {
            if (kindAt(entry.path()) == FileKind::regular)
                paths.push_back(fs::path(name) / fs::relative(entry.path(), gitDirectory / name));
        }
    }
    std::ranges::sort(paths);
    return paths;
}

std::vector<std::pair<std::string, std::string>> operationRefs(const GitRepository& repo, const fs::path& gitDirectory)
{
    const bool areFiles =
        std::ranges::any_of(refNames, [&](const char* name) { return kindAt(gitDirectory / name) != FileKind::none; });
    // A repository of the other format has no file of a ref.
    if (!areFiles && kindAt(gitDirectory / "reftable") != FileKind::folder)
        return {};
    std::vector<std::pair<std::string, std::string>> refs;
    for (const char* name : refNames) {
        const GitOutput found = repo.runner().output({"rev-parse", "--verify", "--quiet", name}, helperOptions());
        if (found.status == 0)
            refs.emplace_back(name, withoutLineEnd(found.stdoutBytes));
    }
    return refs;
}

} // namespace

OperationFiles operationFiles(const GitRepository& repo, const fs::path& gitDirectory)
{
    OperationFiles kept{.tree = {}, .refs = operationRefs(repo, gitDirectory)};
    if (const std::vector<std::string> paths = filesNow(gitDirectory); !paths.empty())
        kept.tree = writeOverlay(repo, paths, gitDirectory);
    // A merge that git refused leaves what it had begun with, and is no operation, whatever earlier ones have left.
    if (kept.tree.empty())
        std::erase_if(kept.refs, [](const auto& ref) { return ref.first == "AUTO_MERGE"; });
    return kept;
}

void restoreOperationFiles(const GitRepository& repo, const fs::path& gitDirectory, const OperationFiles& to)
{
    const std::vector<OverlayFile> files = to.tree.empty() ? std::vector<OverlayFile>() : overlayFiles(repo, to.tree);
    std::set<std::string> wanted;
    for (const OverlayFile& file : files)
        wanted.insert(file.path);
    // Written before others go: what was cut off half-way is an operation still.
    if (const auto failed = restoreOverlay(repo, files, gitDirectory); !failed.empty())
        throw GitError("undo", 1, inQuotes(failed.front()) + " could not be written into git's folder.");
    std::error_code failure;
    for (const std::string& path : filesNow(gitDirectory)) {
        if (!wanted.contains(path))
            fs::remove(gitDirectory / path, failure);
    }
    for (const char* name : folderNames) {
        const auto isInside = [name](const std::string& path) { return path.starts_with(std::string(name) + '/'); };
        if (std::ranges::none_of(wanted, isInside))
            fs::remove_all(gitDirectory / name, failure);
    }
}

void restoreOperationRefs(const GitRepository& repo, const fs::path& gitDirectory, const OperationFiles& to)
{
    for (const auto& [name, hash] : operationRefs(repo, gitDirectory)) {
        if (std::ranges::find(to.refs, name, &std::pair<std::string, std::string>::first) == to.refs.end())
            repo.runner().accepted({"update-ref", "--no-deref", "-d", name}, helperOptions());
    }
    for (const auto& [name, hash] : to.refs)
        repo.runner().accepted({"update-ref", "--no-deref", name, hash}, helperOptions());
}

} // namespace gitkit
