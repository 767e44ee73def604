// SPDX-License-Identifier: GPL-3.0-or-later
#include "GitKit/repository/FileCopies.h"
#include "GitKit/repository/Folders.h"
#include "GitKit/repository/GitRepository.h"
#include "GitKit/repository/InTheWay.h"
#include "GitKit/repository/OperationReader.h"
#include "GitKit/repository/PathCommand.h"
#include "GitKit/repository/ProgramGuard.h"
#include "GitKit/repository/Worktrees.h"

#include "GitKit/Text.h"
#include "GitKit/parsers/Fields.h"
#include "GitKit/runner/GitError.h"

#include <algorithm>
#include <chrono>
#include <memory>
#include <system_error>
#include <utility>

namespace gitkit {

namespace {

namespace fs = std::filesystem;

enum class Others { untracked, ignored };
enum class Folders { whole, opened };

/// Returns the same door to another working tree of the repository. What its own configuration names is not known to the
/// user, and does not run.
GitRepository doorTo(const GitRepository& repo, const fs::path& folder)
{
    RunContext context = repo.runner().context();
    std::erase_if(context.environment, [](const auto& entry) { return entry.first == "GIT_CEILING_DIRECTORIES"; });
    context.requiredTopLevel.clear();
    if (context.guard)
        context.guard = std::make_shared<ProgramGuard>(folder);
    return GitRepository(folder, std::move(context));
}

/// Returns the files that git does not know. Folders of nothing else are named once, or opened.
std::vector<std::string> otherFiles(const GitRepository& tree, Others which, Folders folders)
{
    std::vector<std::string> command{"ls-files", "--others", "--exclude-standard", "-z"};
    if (which == Others::ignored)
        command.emplace_back("--ignored");
    if (folders == Folders::whole)
        command.emplace_back("--directory");
    return splitNul(tree.runner().bytes(command));
}

std::vector<std::string> changedPaths(const GitRepository& tree)
{
    std::vector<std::string> paths;
    for (const FileChange& file : tree.status().files) {
        if (!file.isUntracked())
            paths.push_back(file.path);
    }
    return paths;
}

/// Links are not followed. What may not be read counts nothing.
std::uintmax_t bytesBelow(const fs::path& place)
{
    std::error_code failure;
    const fs::file_status status = fs::symlink_status(place, failure);
    if (fs::is_regular_file(status))
        return fs::file_size(place, failure);
    std::uintmax_t bytes = 0;
    if (!fs::is_directory(status))
        return bytes;
    fs::recursive_directory_iterator each(place, fs::directory_options::skip_permission_denied, failure);
    for (; !failure && each != fs::recursive_directory_iterator(); each.increment(failure)) {
        std::error_code unknown;
        const bool isFile = fs::is_regular_file(each->symlink_status(unknown));
        const std::uintmax_t size = isFile ? each->file_size(unknown) : 0;
        bytes += unknown ? 0 : size;
    }
    return bytes;
}

std::vector<SizedPath> withSizes(const GitRepository& tree, std::vector<std::string> paths)
{
    std::vector<SizedPath> sized;
    for (std::string& path : paths) {
        const std::uintmax_t bytes = bytesBelow(tree.root() / path);
        sized.push_back({std::move(path), bytes});
    }
    return sized;
}

int strayCommits(const GitRepository& repo, const Worktree& tree)
{
    if (!tree.branch.empty() || tree.head.empty())
        return 0;
    return readNumber(withoutLineEnd(
        repo.runner().bytes({"rev-list", "--count", tree.head, "--not", "--branches", "--remotes", "--tags", "--"})));
}

/// Keeps what a working tree has and no commit has, and puts it back unless it is to stay there.
class Saving {
public:
    Saving(const GitRepository& tree, fs::path own, fs::path folder)
        : tree_(tree), own_(std::move(own)), folder_(std::move(folder))
    {}
    ~Saving()
    {
        if (isDone_)
            return;
        std::error_code ignored;
        fs::rename(folder_ / discarded, own_ / "plovik" / "kept", ignored);
        moveBack(tree_, moved_, folder_);
        fs::remove_all(folder_ / staged, ignored);
        fs::remove(folder_, ignored);
    }
    Saving(const Saving&) = delete;
    Saving& operator=(const Saving&) = delete;

    void saveAll()
    {
        saveStaged();
        std::vector<std::string> changed = changedPaths(tree_);
        std::erase_if(changed,
                      [this](const std::string& path) { return kindAt(tree_.root() / path) == FileKind::none; });
        moveThem(changed);
        moveOthers(Others::untracked);
        moveOthers(Others::ignored);
        std::error_code none;
        if (fs::create_directories(folder_, none); fs::exists(own_ / "plovik" / "kept", none))
            fs::rename(own_ / "plovik" / "kept", folder_ / discarded, none);
        if (fs::is_empty(folder_, none))
            fs::remove(folder_, none);
    }

    RemovedWorktree done()
    {
        isDone_ = true;
        std::error_code none;
        return {fs::exists(folder_, none) ? folder_ : fs::path(), moved_.size()};
    }

private:
    static constexpr const char* staged = ".staged";
    static constexpr const char* discarded = ".discarded";

    /// Writes what is staged and is in no file.
    void saveStaged()
    {
        std::vector<std::string> paths;
        for (const FileChange& file : tree_.status().files) {
            if (file.hasStaged() && file.hasUnstaged() && !file.isSubmodule && file.index != 'D')
                paths.push_back(file.path);
        }
        runOnExactPaths(tree_.runner(),
                        {"checkout-index", "-z", "--stdin", "--prefix=" + (folder_ / staged).string() + "/"}, paths);
    }

    void moveThem(const std::vector<std::string>& paths)
    {
        moveAside(tree_, paths, folder_);
        moved_.insert(moved_.end(), paths.begin(), paths.end());
    }

    void moveOthers(Others which)
    {
        std::vector<std::string> paths = otherFiles(tree_, which, Folders::whole);
        for (std::string& path : paths)
            path = path.substr(0, path.size() - (path.ends_with('/') ? 1 : 0));
        try {
            moveThem(paths);
        } catch (const GitError&) { // a folder cannot be moved whole onto another file system
            moveThem(otherFiles(tree_, which, Folders::opened));
        }
    }

    const GitRepository& tree_;
    fs::path own_;
    fs::path folder_;
    std::vector<std::string> moved_;
    bool isDone_ = false;
};

fs::path newSavedFolder(const fs::path& common, const fs::path& tree)
{
    const auto time = std::chrono::system_clock::now().time_since_epoch();
    const std::string name = tree.filename().string() + '-' + std::to_string(time / std::chrono::milliseconds(1));
    return common / "plovik" / "saved" / name;
}

void refuse(const Worktree& tree, const char* why)
{
    throw GitError("worktree", 1, inQuotes(tree.folder.filename().string()) + ' ' + why);
}

bool hasSubmodulesIn(const GitRepository& inside, const fs::path& own)
{
    std::error_code none;
    return fs::exists(own / "modules", none) ||
           std::ranges::any_of(submodulePaths(inside), [&](const std::string& path) {
               return fs::exists(fs::symlink_status(inside.root() / path / ".git", none));
           });
}

/// Returns whether the folder of another working tree is inside this one's, and would be moved with it.
bool holdsAnother(const GitRepository& repo, const Worktree& tree)
{
    return std::ranges::any_of(worktrees(repo).trees, [&](const Worktree& other) {
        return !other.isMissing && other.folder.string().starts_with(tree.folder.string() + '/');
    });
}

void checkRemovable(const GitRepository& inside, const GitDirectories& places, const Worktree& tree,
                    const WorktreeRemoval& how)
{
    std::error_code none;
    if (hasSubmodulesIn(inside, places.own))
        refuse(tree, "has submodules, whose repositories would go with it. Remove those first.");
    if (fs::exists(places.own / "locked", none) && !how.evenLocked)
        refuse(tree, "is locked.");
    if (how.evenChanged)
        return;
    if (!changedPaths(inside).empty() || !otherFiles(inside, Others::untracked, Folders::whole).empty())
        refuse(tree, "has changes that are not committed.");
}

} // namespace

WorktreeLosses worktreeLosses(const GitRepository& repo, const Worktree& tree)
{
    WorktreeLosses losses;
    losses.strayCommits = strayCommits(repo, tree);
    if (tree.isMissing)
        return losses;
    const GitRepository inside = doorTo(repo, tree.folder);
    const fs::path own = gitDirectories(inside).own;
    losses.hasSubmodules = hasSubmodulesIn(inside, own);
    losses.isInOperation = readOperation(own).has_value();
    losses.changed = changedPaths(inside);
    losses.untracked = withSizes(inside, otherFiles(inside, Others::untracked, Folders::whole));
    losses.ignored = withSizes(inside, otherFiles(inside, Others::ignored, Folders::whole));
    return losses;
}

RemovedWorktree removeWorktree(const GitRepository& repo, const Worktree& tree, const WorktreeRemoval& how)
{
    const GitRepository inside = doorTo(repo, tree.folder);
    const GitDirectories places = gitDirectories(inside);
    if (places.own == places.common)
        refuse(tree, "is the main working tree.");
    if (holdsAnother(repo, tree))
        refuse(tree, "has another working tree inside. Remove that one first.");
    checkRemovable(inside, places, tree, how);
    Saving saving(inside, places.own, newSavedFolder(places.common, tree.folder));
    saving.saveAll();
    std::vector<std::string> command{"worktree", "remove"};
    // Files that git knows and that were moved away are changes to it, and it refuses for a submodule that is not even
    // here. A lock takes the option twice.
    if (how.evenChanged || how.evenLocked || !submodulePaths(inside).empty())
        command.emplace_back("--force");
    if (how.evenLocked)
        command.emplace_back("--force");
    command.insert(command.end(), {"--", tree.folder.string()});
    repo.runner().accepted(command);
    return saving.done();
}

} // namespace gitkit
