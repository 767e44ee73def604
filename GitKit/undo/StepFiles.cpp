// SPDX-License-Identifier: GPL-3.0-or-later
#include "GitKit/undo/StepFiles.h"

#include "GitKit/Text.h"
#include "GitKit/repository/FileCopies.h"
#include "GitKit/repository/GitRepository.h"
#include "GitKit/repository/Keeping.h"
#include "GitKit/runner/GitError.h"
#include "GitKit/undo/HelperRuns.h"
#include "GitKit/undo/Overlay.h"
#include "GitKit/undo/TreeMove.h"
#include "GitKit/undo/UndoJournal.h"
#include "GitKit/undo/UndoLog.h"
#include "GitKit/undo/UndoRecord.h"

#include <chrono>
#include <set>
#include <sys/stat.h>
#include <unistd.h>

namespace gitkit {

namespace {

bool movesFiles(const UndoStep& step)
{
    return step.after && !step.before.filesTree.empty() && !step.after->filesTree.empty();
}

} // namespace

std::vector<std::string> filesOfStep(const GitRepository& repo, const UndoStep& step)
{
    std::set<std::string> paths;
    if (movesFiles(step))
        paths = movedPaths(repo, {step.before.filesTree, step.after->filesTree});
    if (!step.before.overlay.empty()) {
        for (OverlayFile& file : overlayFiles(repo, step.before.overlay))
            paths.insert(std::move(file.path));
    }
    paths.insert(step.before.absent.begin(), step.before.absent.end());
    return {paths.begin(), paths.end()};
}

void restoreFiles(const GitRepository& repo, const std::filesystem::path& gitDirectory, const UndoStep& step)
{
    if (movesFiles(step))
        moveFiles(repo, gitDirectory, {step.after->filesTree, step.before.filesTree});
    std::vector<std::string> failed;
    if (!step.before.overlay.empty())
        failed = restoreOverlay(repo, overlayFiles(repo, step.before.overlay));
    for (const auto& [path, mode] : step.before.modes) {
        if (kindAt(repo.root() / path) == FileKind::regular)
            ::chmod((repo.root() / path).c_str(), mode);
    }
    if (!failed.empty())
        throw GitError("undo", 1, inQuotes(failed.front()) + " could not be written.");
    repo.runner().output({"update-index", "-q", "--refresh"}, helperOptions());
}

void clearAside(const std::filesystem::path& gitDirectory, const Trash& trash)
{
    constexpr std::chrono::hours longest{24 * 30};
    std::error_code failure;
    std::vector<std::filesystem::path> old;
    for (const auto& folder : std::filesystem::directory_iterator(asideFolder(gitDirectory, {}), failure)) {
        std::error_code unknown;
        const auto time = folder.last_write_time(unknown);
        if (!unknown && std::filesystem::file_time_type::clock::now() - time > longest)
            old.push_back(folder.path());
    }
    for (const std::filesystem::path& folder : old) {
        try {
            trash(folder);
        } catch (const std::exception&) { // NOLINT(bugprone-empty-catch): it stays where it is
        }
    }
}

void forgetStep(const GitRepository& repo, const std::filesystem::path& gitDirectory, const UndoStep& step)
{
    constexpr std::size_t most = 100'000;
    const std::vector<UndoEntry> entries = undoEntries(repo, most);
    // From the oldest on, so that the numbers of the others stay.
    for (std::size_t index = entries.size(); index-- > 0;) {
        const auto read = readUndoRecord(entries[index].record);
        if (read && read->id == step.id)
            repo.runner().accepted({"reflog", "delete", "--rewrite", "--updateref",
                                    std::string(undoRef) + "@{" + std::to_string(index) + "}"},
                                   helperOptions());
    }
    std::error_code failure;
    std::filesystem::remove_all(asideFolder(gitDirectory, step.id), failure);
    for (const Kept& kept : allKept(gitDirectory)) {
        if (!step.kept.empty() && kept.name == step.kept)
            forget(gitDirectory, kept);
    }
}

} // namespace gitkit
