// SPDX-License-Identifier: GPL-3.0-or-later
#include "GitKit/undo/UndoPoints.h"

#include "GitKit/Text.h"
#include "GitKit/parsers/Fields.h"
#include "GitKit/repository/FileCopies.h"
#include "GitKit/repository/GitRepository.h"
#include "GitKit/undo/HelperRuns.h"
#include "GitKit/undo/OperationFiles.h"
#include "GitKit/undo/Overlay.h"
#include "GitKit/undo/TreeMove.h"
#include "GitKit/undo/UndoRefused.h"

#include <algorithm>
#include <functional>
#include <future>
#include <sys/stat.h>
#include <system_error>

namespace gitkit {

namespace {

namespace fs = std::filesystem;

constexpr std::size_t mostFiles = 2000;
constexpr std::uintmax_t mostBytes = std::uintmax_t{200} << 20;

HeadPlace headNow(const GitRepository& repo)
{
    const GitOutput both = repo.runner().output({"rev-parse", "HEAD", "--symbolic-full-name", "HEAD"}, helperOptions());
    if (both.status == 0) {
        const std::size_t end = both.stdoutBytes.find('\n');
        std::string branch(withoutLineEnd(both.stdoutBytes.substr(end + 1)));
        if (branch == "HEAD")
            branch.clear();
        return {std::move(branch), both.stdoutBytes.substr(0, end)};
    }
    // Before the first commit.
    const GitOutput branch = repo.runner().output({"symbolic-ref", "--quiet", "HEAD"}, helperOptions());
    return {branch.status == 0 ? std::string(withoutLineEnd(branch.stdoutBytes)) : std::string(), {}};
}

/// Makes sure that not too much would be kept.
void requireRoom(const GitRepository& repo, const std::vector<std::string>& paths)
{
    std::uintmax_t bytes = 0;
    std::uintmax_t files = 0;
    for (const std::string& path : paths) {
        struct stat status{};
        if (::lstat((repo.root() / path).c_str(), &status) != 0 || !S_ISREG(status.st_mode))
            continue;
        ++files;
        bytes += static_cast<std::uintmax_t>(status.st_size);
    }
    if (files > mostFiles || bytes > mostBytes)
        throw UndoTooLarge(files, bytes);
}

void keepBytes(const GitRepository& repo, const UndoScope& scope, UndoPoint& point)
{
    for (const std::string& path : scope.removes) {
        if (kindAt(repo.root() / path) == FileKind::none)
            point.absent.push_back(path);
    }
    std::vector<std::string> paths = scope.overwrites;
    requireRoom(repo, paths);
    for (const std::string& path : scope.changed) {
        if (std::ranges::find(scope.overwrites, path) == scope.overwrites.end())
            paths.push_back(path);
    }
    try {
        requireRoom(repo, paths);
    } catch (const UndoTooLarge&) { // git takes care of them itself
        paths = scope.overwrites;
    }
    if (paths.empty())
        return;
    point.overlay = writeOverlay(repo, paths);
    for (const std::string& path : paths) {
        struct stat status{};
        if (::lstat((repo.root() / path).c_str(), &status) != 0)
            point.absent.push_back(path);
        else if (S_ISREG(status.st_mode))
            point.modes.emplace_back(path, status.st_mode & 07777U);
    }
}

void keepIndex(const GitRepository& repo, const fs::path& gitDirectory, const UndoScope& scope, UndoPoint& point)
{
    IndexContents index = indexContents(repo, gitDirectory);
    point.indexTree = std::move(index.tree);
    point.conflicts = std::move(index.conflicts);
    // The files follow the index but for those in conflict, and those whose bytes are kept.
    if (scope.movesFiles)
        point.filesTree = point.conflicts.empty() && scope.overwrites.empty()
                              ? point.indexTree
                              : levelTree(repo, gitDirectory, scope.overwrites);
}

/// Starts a job on a thread of its own where that is wanted and can be had, and runs it at the end otherwise.
std::future<void> beside(bool isWanted, const std::function<void()>& job)
{
    try {
        return std::async(isWanted ? std::launch::async : std::launch::deferred, job);
    } catch (const std::system_error&) {
        return std::async(std::launch::deferred, job);
    }
}

} // namespace

UndoPoint pointNow(const GitRepository& repo, const fs::path& gitDirectory, const UndoScope& scope)
{
    UndoPoint point;
    // Both take long in a large working tree, and neither needs the other.
    const bool isBoth = !(scope.overwrites.empty() && scope.changed.empty()) && (scope.movesIndex || scope.movesFiles);
    std::future<void> bytes = beside(isBoth, [&] { keepBytes(repo, scope, point); });
    point.head = headNow(repo);
    if (scope.movesIndex || scope.movesFiles)
        keepIndex(repo, gitDirectory, scope, point);
    OperationFiles operation = operationFiles(repo, gitDirectory);
    point.operation = std::move(operation.tree);
    point.operationRefs = std::move(operation.refs);
    if (scope.touchesStashes)
        point.stashes = stashesNow(repo);
    if (scope.touchesSettings)
        point.settings = settingsNow(repo);
    bytes.get();
    return point;
}

std::vector<std::string> changedFiles(const GitRepository& repo)
{
    // Unlike `diff-files`, this looks into files whose times alone differ from those in the index.
    RunOptions options = helperOptions();
    options.settings.emplace_back("diff.autoRefreshIndex=true");
    std::vector<std::string> paths =
        splitNul(repo.runner().bytes({"diff", "--name-only", "-z", "--no-ext-diff", "--no-textconv", "--no-renames",
                                      "--no-relative", "--ignore-submodules=all"},
                                     options));
    std::ranges::sort(paths); // one in conflict stands there more than once
    paths.erase(std::ranges::unique(paths).begin(), paths.end());
    return paths;
}

RefValues refsNow(const GitRepository& repo, const UndoScope& scope)
{
    std::vector<std::string> command{"for-each-ref", "--format=%(objectname)%00%(refname)%00%(symref)%00"};
    // What a fetch moves is not ours to take back.
    if (scope.movesAnyRef)
        command.insert(command.end(), {"refs/heads", "refs/notes", "refs/bisect", "refs/rewritten", "refs/worktree"});
    command.insert(command.end(), scope.refs.begin(), scope.refs.end());
    command.insert(command.end(), scope.refFolders.begin(), scope.refFolders.end());
    if (command.size() == 2)
        return {};
    RefValues refs;
    const std::vector<std::string> fields = splitNul(repo.runner().bytes(command, helperOptions()));
    for (std::size_t index = 0; index + 2 < fields.size(); index += 3) {
        // Each record but the first begins with the line end of the one before.
        std::string hash = fields[index].front() == '\n' ? fields[index].substr(1) : fields[index];
        const std::string& name = fields[index + 1];
        // A name stands for all below it, too.
        const bool isMeant = scope.movesAnyRef || std::ranges::find(scope.refs, name) != scope.refs.end() ||
                             std::ranges::any_of(scope.refFolders, [&name](const std::string& folder) {
                                 return name.starts_with(folder + '/');
                             });
        if (fields[index + 2].empty() && isMeant)
            refs.emplace_back(name, std::move(hash));
    }
    return refs;
}

std::vector<KeptStash> stashesNow(const GitRepository& repo)
{
    if (repo.runner().output({"rev-parse", "--verify", "--quiet", "refs/stash"}, helperOptions()).status != 0)
        return {};
    const std::string log = repo.runner().bytes(
        {"log", "-g", "-z", "--no-decorate", "--format=%H%x1f%gs", "refs/stash", "--"}, helperOptions());
    std::vector<KeptStash> stashes;
    Pieces records(log, '\0');
    while (const auto record = records.next()) {
        const std::size_t end = record->find('\x1f');
        if (end != std::string_view::npos)
            stashes.push_back({std::string(record->substr(0, end)), std::string(record->substr(end + 1))});
    }
    return stashes;
}

namespace {

std::vector<Setting> remoteHeads(const GitRepository& repo)
{
    constexpr std::string_view start = "refs/remotes/";
    constexpr std::string_view end = "/HEAD";
    std::vector<Setting> heads;
    const std::string printed =
        repo.runner().bytes({"for-each-ref", "--format=%(refname) %(symref)", "refs/remotes/**/HEAD"}, helperOptions());
    Pieces lines(printed, '\n');
    while (const auto line = lines.next()) {
        const std::size_t gap = line->find(' ');
        const std::string_view name = line->substr(0, gap);
        if (gap == std::string_view::npos || gap + 1 == line->size() || !name.ends_with(end))
            continue;
        const std::string_view remote = name.substr(start.size(), name.size() - start.size() - end.size());
        heads.push_back(
            {std::string(remoteHeadKey).append(remote).append(remoteHeadKeyEnd), std::string(line->substr(gap + 1))});
    }
    return heads;
}

} // namespace

std::vector<Setting> settingsNow(const GitRepository& repo)
{
    std::vector<Setting> settings;
    for (const std::string& entry :
         splitNul(repo.runner().bytes({"config", "--local", "-z", "--list"}, helperOptions())))
    {
        if (!entry.starts_with("branch.") && !entry.starts_with("remote."))
            continue;
        const std::size_t end = entry.find('\n');
        settings.push_back({entry.substr(0, end), end == std::string::npos ? std::string() : entry.substr(end + 1)});
    }
    for (Setting& head : remoteHeads(repo))
        settings.push_back(std::move(head));
    return settings;
}

} // namespace gitkit
