// SPDX-License-Identifier: GPL-3.0-or-later
#include "GitKit/undo/UndoWay.h"

#include "GitKit/Text.h"
#include "GitKit/repository/FileCopies.h"
#include "GitKit/repository/GitRepository.h"
#include "GitKit/runner/GitError.h"
#include "GitKit/undo/HelperRuns.h"
#include "GitKit/undo/OperationFiles.h"
#include "GitKit/undo/Overlay.h"
#include "GitKit/undo/UndoPoints.h"

#include <algorithm>
#include <array>
#include <map>
#include <set>
#include <sys/stat.h>
#include <unistd.h>

namespace gitkit {

namespace {

namespace fs = std::filesystem;
using Names = std::vector<std::string>;

bool isAbsent(const UndoPoint& point, const std::string& path)
{
    return std::ranges::find(point.absent, path) != point.absent.end();
}

unsigned modeOf(const UndoPoint& point, const std::string& path)
{
    const auto found = std::ranges::find(point.modes, path, &std::pair<std::string, unsigned>::first);
    return found == point.modes.end() ? 0 : found->second;
}

/// Removes a folder in which there are only folders.
void removeEmptyFolder(const fs::path& folder)
{
    std::error_code failure;
    for (const fs::directory_entry& inside : fs::directory_iterator(folder, failure)) {
        if (kindAt(inside.path()) == FileKind::folder)
            removeEmptyFolder(inside.path());
    }
    ::rmdir(folder.c_str());
}

/// Removes what stands in the way of a file: folders without files, and files in the places of its own folders, as long as
/// `isKept` says that their bytes are kept.
template <typename IsKept>
void makeRoomFor(const GitRepository& repo, const std::string& path, IsKept isKept)
{
    for (std::size_t end = path.find('/'); end != std::string::npos; end = path.find('/', end + 1)) {
        const std::string above = path.substr(0, end);
        const FileKind kind = isKept(above) ? kindAt(repo.root() / above) : FileKind::none;
        if (kind != FileKind::none && kind != FileKind::folder)
            ::unlink((repo.root() / above).c_str());
    }
    if (kindAt(repo.root() / path) == FileKind::folder)
        removeEmptyFolder(repo.root() / path);
}

/// Writes the bytes that a moment keeps of these files. Throws GitError with the first that could not be written.
void moveBytes(const GitRepository& repo, const UndoPoint& to, const Names& paths)
{
    const auto isMeant = [&paths](const std::string& path) { return std::ranges::binary_search(paths, path); };
    Names failed;
    // What goes first, since a file may come in the place of a folder, or the other way round.
    for (const std::string& path : to.absent) {
        const FileKind kind = isMeant(path) ? kindAt(repo.root() / path) : FileKind::none;
        if (kind != FileKind::none && kind != FileKind::folder && ::unlink((repo.root() / path).c_str()) != 0)
            failed.push_back(path);
    }
    if (!to.overlay.empty()) {
        std::vector<OverlayFile> files = overlayFiles(repo, to.overlay);
        std::erase_if(files, [&](const OverlayFile& file) { return !isMeant(file.path); });
        for (const OverlayFile& file : files) {
            makeRoomFor(repo, file.path, isMeant);
        }
        std::ranges::move(restoreOverlay(repo, files), std::back_inserter(failed));
    }
    for (const auto& [path, mode] : to.modes) {
        if (isMeant(path) && kindAt(repo.root() / path) == FileKind::regular)
            ::chmod((repo.root() / path).c_str(), mode);
    }
    if (!failed.empty())
        throw GitError("undo", 1, inQuotes(failed.front()) + " could not be written.");
}

/// Returns the settings of each section, in the order in which they stand.
std::map<std::string, std::vector<Setting>> sectionsOf(const std::vector<Setting>& settings)
{
    std::map<std::string, std::vector<Setting>> sections;
    for (const Setting& setting : settings)
        sections[setting.key.substr(0, setting.key.rfind('.'))].push_back(setting);
    return sections;
}

} // namespace

TreeMove filesOf(const UndoWay& way) { return {way.from.filesTree, way.to.filesTree}; }
TreeMove indexOf(const UndoWay& way)
{
    return {way.from.indexTree, way.to.indexTree, way.from.conflicts, way.to.conflicts};
}
bool movesFiles(const UndoWay& way) { return !way.from.filesTree.empty() && !way.to.filesTree.empty(); }
bool movesIndex(const UndoWay& way) { return !way.from.indexTree.empty() && !way.to.indexTree.empty(); }

UndoWay reversed(const UndoWay& way)
{
    UndoWay back{way.to, way.from, {}};
    for (const RefUpdate& update : way.refs)
        back.refs.push_back({update.name, update.to, update.from});
    return back;
}

Names keptPaths(const GitRepository& repo, const UndoWay& way)
{
    std::map<std::string, std::array<OverlayFile, 2>> found;
    const UndoPoint* const points[] = {&way.from, &way.to};
    for (std::size_t side = 0; side < 2; ++side) {
        if (points[side]->overlay.empty())
            continue;
        for (OverlayFile& file : overlayFiles(repo, points[side]->overlay)) {
            const std::string path = file.path;
            found[path][side] = std::move(file);
        }
    }
    const std::set<std::string> moved = movesFiles(way) ? movedPaths(repo, filesOf(way)) : std::set<std::string>();
    // A file that is missing at one moment may have no bytes at the other one, where it follows the tree.
    std::set<std::string> missing;
    for (const UndoPoint* point : points) {
        for (const std::string& path : point->absent) {
            if (moved.contains(path))
                missing.insert(path);
        }
    }
    Names paths(missing.begin(), missing.end());
    for (const auto& [path, files] : found) {
        if (files[0] != files[1] || moved.contains(path) || modeOf(way.from, path) != modeOf(way.to, path))
            paths.push_back(path);
    }
    std::ranges::sort(paths);
    paths.erase(std::ranges::unique(paths).begin(), paths.end());
    return paths;
}

Names removedPaths(const UndoPoint& point, const Names& kept)
{
    Names paths;
    for (const std::string& path : point.absent) {
        if (!std::ranges::binary_search(kept, path))
            paths.push_back(path);
    }
    return paths;
}

Names editedBytes(const GitRepository& repo, const UndoPoint& point, const Names& paths)
{
    if (paths.empty())
        return {};
    std::vector<OverlayFile> wanted;
    if (!point.overlay.empty())
        wanted = overlayFiles(repo, point.overlay);
    std::erase_if(wanted, [&paths](const OverlayFile& file) { return !std::ranges::binary_search(paths, file.path); });
    std::vector<OverlayFile> found = overlayFiles(repo, writeOverlay(repo, paths));
    // A file that follows a tree at that moment is looked at elsewhere.
    std::erase_if(found, [&](const OverlayFile& file) {
        return std::ranges::find(wanted, file.path, &OverlayFile::path) == wanted.end() && !isAbsent(point, file.path);
    });
    std::set<std::string> changed;
    const auto noteMissing = [&changed](const std::vector<OverlayFile>& from, const std::vector<OverlayFile>& in) {
        for (const OverlayFile& file : from) {
            if (std::ranges::find(in, file) == in.end())
                changed.insert(file.path);
        }
    };
    noteMissing(wanted, found);
    noteMissing(found, wanted);
    return {changed.begin(), changed.end()};
}

void moveHead(const GitRepository& repo, const HeadPlace& from, const HeadPlace& to, const std::string& reason)
{
    if (from.branch == to.branch && (!to.branch.empty() || from.hash == to.hash))
        return;
    if (!to.branch.empty())
        repo.runner().accepted({"symbolic-ref", "-m", reason, "HEAD", to.branch}, helperOptions());
    else
        repo.runner().accepted({"update-ref", "--no-deref", "-m", reason, "HEAD", to.hash}, helperOptions());
}

bool moveStashes(const GitRepository& repo, const UndoPoint& to)
{
    if (!to.stashes)
        return false;
    const auto has = [](const std::vector<KeptStash>& stashes, const std::string& hash) {
        return std::ranges::find(stashes, hash, &KeptStash::hash) != stashes.end();
    };
    const std::vector<KeptStash> now = stashesNow(repo);
    // From the last on, so that the numbers of the others stay.
    for (std::size_t index = now.size(); index-- > 0;) {
        if (!has(*to.stashes, now[index].hash))
            repo.runner().accepted({"stash", "drop", "--quiet", "stash@{" + std::to_string(index) + "}"},
                                   helperOptions());
    }
    bool cameBack = false;
    for (auto stash = to.stashes->rbegin(); stash != to.stashes->rend(); ++stash) {
        if (has(now, stash->hash))
            continue;
        repo.runner().accepted({"stash", "store", "--quiet", "-m", stash->message, stash->hash}, helperOptions());
        cameBack = true;
    }
    return cameBack;
}

namespace {

/// Lets the HEAD of a remote name what the setting says, or removes it. Its branch may be gone by now, or not be there yet.
void moveRemoteHead(const GitRepository& repo, const std::string& remote, const std::vector<Setting>& wanted)
{
    const std::string head = "refs/remotes/" + remote + "/HEAD";
    if (!wanted.empty())
        repo.runner().accepted({"symbolic-ref", head, wanted.front().value}, helperOptions());
    else if (repo.runner().output({"symbolic-ref", "--quiet", head}, helperOptions()).status == 0)
        repo.runner().accepted({"symbolic-ref", "--delete", head}, helperOptions());
}

} // namespace

void moveSettings(const GitRepository& repo, const UndoPoint& from, const UndoPoint& to)
{
    if (!from.settings || !to.settings)
        return;
    auto wanted = sectionsOf(*to.settings);
    auto left = sectionsOf(*from.settings);
    auto now = sectionsOf(settingsNow(repo));
    std::set<std::string> names;
    for (const auto* sections : {&wanted, &left}) {
        for (const auto& [name, settings] : *sections)
            names.insert(name);
    }
    for (const std::string& name : names) {
        if (wanted[name] == left[name])
            continue;
        if (name.starts_with(remoteHeadKey)) {
            moveRemoteHead(repo, name.substr(remoteHeadKey.size()), wanted[name]);
            continue;
        }
        if (wanted[name] == now[name])
            continue;
        std::set<std::string> keys;
        for (const Setting& setting : now[name])
            keys.insert(setting.key);
        for (const std::string& key : keys)
            repo.runner().accepted({"config", "--local", "--unset-all", key}, helperOptions());
        for (const Setting& setting : wanted[name])
            repo.runner().accepted({"config", "--local", "--add", setting.key, setting.value}, helperOptions());
    }
}

void moveAll(const GitRepository& repo, const fs::path& gitDirectory, const UndoWay& way, const Names& kept,
             const Names& known)
{
    if (movesFiles(way))
        moveFiles(repo, gitDirectory, filesOf(way), known);
    if (movesIndex(way))
        moveIndex(repo, gitDirectory, indexOf(way));
    moveBytes(repo, way.to, kept);
    if (way.from.operation != way.to.operation || way.from.operationRefs != way.to.operationRefs)
        restoreOperationFiles(repo, gitDirectory, {way.to.operation, way.to.operationRefs});
}

void moveAllBack(const GitRepository& repo, const fs::path& gitDirectory, const UndoWay& way, const Names& kept,
                 const Names& known)
{
    try {
        moveAll(repo, gitDirectory, reversed(way), kept, known);
    } catch (const std::exception&) { // NOLINT(bugprone-empty-catch): the first failure is told
    }
}

} // namespace gitkit
