// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/store/readers/UndoReaders.h"

#include "GitKit/parsers/DisplayOrder.h"
#include "GitKit/repository/GitRepository.h"
#include "GitKit/repository/TreeChanges.h"
#include "GitKit/undo/Overlay.h"
#include "GitKit/undo/TreeMove.h"

#include <algorithm>
#include <iterator>

namespace plovik {

namespace {

using gitkit::GitRepository;
using gitkit::TreePair;
using gitkit::UndoPoint;

/// Returns the trees of the files, or of what is staged where the files follow the same tree before and after.
TreePair followedTrees(const StepFilesRequest& request)
{
    const TreePair files{request.from.filesTree, request.to.filesTree};
    const bool areFilesMoved = !files.from.empty() && !files.to.empty() && files.from != files.to;
    return areFilesMoved ? files : TreePair{request.from.indexTree, request.to.indexTree};
}

std::set<std::string> overlayPaths(const GitRepository& repo, const UndoPoint& point)
{
    std::set<std::string> paths;
    if (point.overlay.empty())
        return paths;
    for (gitkit::OverlayFile& file : gitkit::overlayFiles(repo, point.overlay))
        paths.insert(std::move(file.path));
    return paths;
}

/// Returns the files that are absent in `one` and not in `other`, as far as `other` does not keep their bytes.
std::vector<std::string> onlyIn(const UndoPoint& other, const UndoPoint& one, const std::set<std::string>& bytes)
{
    std::vector<std::string> paths;
    for (const std::string& path : one.absent) {
        if (std::ranges::find(other.absent, path) == other.absent.end() && !bytes.contains(path))
            paths.push_back(path);
    }
    return paths;
}

StepFiles treesOf(const GitRepository& repo, const StepFilesRequest& request)
{
    StepFiles step;
    step.trees = followedTrees(request);
    if (step.trees.from.empty() || step.trees.to.empty())
        step.trees = {};
    const std::set<std::string> from = overlayPaths(repo, request.from);
    const std::set<std::string> to = overlayPaths(repo, request.to);
    step.back = onlyIn(request.to, request.from, to);
    step.gone = onlyIn(request.from, request.to, from);
    step.keptPaths = from;
    step.keptPaths.insert(to.begin(), to.end());
    if (step.keptPaths.empty())
        return step;
    const auto overlay = [&repo](const UndoPoint& point) {
        return point.overlay.empty() ? gitkit::emptyTreeHash(repo) : gitkit::overlayInFolders(repo, point.overlay);
    };
    step.kept = {overlay(request.from), overlay(request.to)};
    return step;
}

/// Returns what `read` finds in both pairs of trees. The bytes of a kept file count, whatever tree it follows.
template <typename Item>
std::vector<Item> inBoth(const GitRepository& repo, const StepFiles& step,
                         std::vector<Item> (*read)(const GitRepository&, const TreePair&, gitkit::Renames))
{
    const bool isAllInOne = step.keptPaths.empty();
    std::vector<Item> found = read(repo, step.trees, isAllInOne ? gitkit::Renames::paired : gitkit::Renames::apart);
    std::erase_if(found, [&step](const Item& item) { return step.keptPaths.contains(item.path); });
    if (!isAllInOne)
        std::ranges::move(read(repo, step.kept, gitkit::Renames::apart), std::back_inserter(found));
    gitkit::sortForDisplay(found);
    return found;
}

} // namespace

StepFiles readStepFiles(const GitRepository& repo, const StepFilesRequest& request)
{
    StepFiles step = treesOf(repo, request);
    step.files = inBoth(repo, step, &gitkit::changedFiles);
    if (!step.trees.from.empty())
        step.submodules = gitkit::movedSubmodules(repo, {step.trees.from, step.trees.to});
    return step;
}

std::vector<gitkit::ChangeCounts> readStepCounts(const GitRepository& repo, const StepFilesRequest& request)
{
    return inBoth<gitkit::ChangeCounts>(repo, treesOf(repo, request), &gitkit::changeCounts);
}

gitkit::ParsedDiff readStepDiff(const GitRepository& repo, const StepDiffRequest& request)
{
    return repo.treeDiff(request.trees, request.file, request.reading);
}

} // namespace plovik
