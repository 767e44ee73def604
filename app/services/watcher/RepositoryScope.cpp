// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/services/watcher/RepositoryScope.h"

#include <algorithm>
#include <array>
#include <exception>
#include <map>
#include <unistd.h>

namespace plovik {

namespace {

bool exists(const std::string& path) { return ::access(path.c_str(), F_OK) == 0; }

std::string_view parentOf(std::string_view path) { return path.substr(0, path.rfind('/')); }

std::string_view nameOf(std::string_view path) { return path.substr(path.rfind('/') + 1); }

/// Returns `otherwise` when git fails, as it does in a folder that is gone or is no repository yet.
template <typename Question>
auto answerOr(Question question, decltype(question()) otherwise) -> decltype(question())
{
    try {
        return question();
    } catch (const std::exception&) {
        return otherwise;
    }
}

} // namespace

RepositoryScope::RepositoryScope(const std::filesystem::path& topLevel, WatcherGit git,
                                 std::shared_ptr<KnownGitDirectories> known)
    : topLevel_(topLevel.string()), git_(std::move(git)), known_(std::move(known)), gitDirectories_{topLevel_ + "/.git"}
{
    known_->set(gitDirectories_);
}

std::vector<std::string> RepositoryScope::roots()
{
    findGitDirectories();
    nested_.clear();
    ignored_.clear();
    findIgnored(topLevel_);
    // Git's own folders come first, in case there are not enough watches for all.
    std::vector<std::string> roots = gitDirectories_;
    roots.push_back(topLevel_);
    return roots;
}

void RepositoryScope::findGitDirectories()
{
    const auto found = answerOr([this] { return git_.directories(topLevel_); }, {});
    if (found.empty())
        return;
    // The private directory of a linked working tree lies in the shared one.
    gitDirectories_.clear();
    for (const auto& directory : found) {
        const std::string path = directory.string();
        std::erase_if(gitDirectories_, [&](const std::string& other) { return liesIn(other, path); });
        if (std::ranges::none_of(gitDirectories_, [&](const std::string& other) { return liesIn(path, other); }))
            gitDirectories_.push_back(path);
    }
    known_->set(gitDirectories_);
}

void RepositoryScope::findIgnored(const std::string& workingTree)
{
    for (const std::string& folder : answerOr([&] { return git_.ignoredFolders(workingTree); }, {}))
        ignored_.insert(workingTree + "/" + folder);
}

void RepositoryScope::keepWatched(std::vector<std::string>& folders, FolderWalk walk)
{
    std::erase_if(folders, [this](const std::string& folder) { return isOfNoInterest(folder); });
    if (walk == FolderWalk::Appeared)
        addIgnoredAmong(folders);
    std::erase_if(folders, [this](const std::string& folder) { return ignored_.contains(folder); });
    for (const std::string& folder : folders) {
        if (!isInGitDirectory(folder, gitDirectories_) && exists(folder + "/.git")) {
            noticeWorkingTree(folder);
            if (walk == FolderWalk::Everything)
                findIgnored(folder);
        }
    }
}

void RepositoryScope::addIgnoredAmong(const std::vector<std::string>& folders)
{
    // Each working tree is asked about its own: git refuses to say anything about a path inside a submodule.
    std::map<std::string, std::vector<std::string>> byWorkingTree;
    for (const std::string& folder : folders) {
        if (isInGitDirectory(folder, gitDirectories_))
            continue;
        ignored_.erase(folder);
        const std::string& workingTree = workingTreeOf(folder);
        byWorkingTree[workingTree].push_back(folder.substr(workingTree.size() + 1));
    }
    for (const auto& entry : byWorkingTree) {
        for (const std::string& name : answerOr([&] { return git_.ignoredAmong(entry.first, entry.second); }, {}))
            ignored_.insert(entry.first + "/" + name);
    }
}

void RepositoryScope::noticeWorkingTree(const std::string& folder)
{
    if (folder != topLevel_)
        nested_.insert(folder);
}

const std::string& RepositoryScope::workingTreeOf(std::string_view folder) const
{
    if (nested_.empty())
        return topLevel_;
    for (folder = parentOf(folder); folder.size() > topLevel_.size(); folder = parentOf(folder)) {
        if (const auto found = nested_.find(std::string(folder)); found != nested_.end())
            return *found;
    }
    return topLevel_;
}

bool RepositoryScope::isGitDirectory(const std::string& folder) const
{
    if (nameOf(folder) == ".git" || std::ranges::find(gitDirectories_, folder) != gitDirectories_.end())
        return true;
    // The git directories of submodules lie deeper inside. A name is not enough: a branch may be called "objects".
    return isInGitDirectory(folder, gitDirectories_) && exists(folder + "/HEAD") && exists(folder + "/refs");
}

bool RepositoryScope::isOfNoInterest(const std::string& folder) const
{
    const std::string_view name = nameOf(folder);
    return (name == "objects" || name == "lfs" || name == "fsmonitor--daemon") &&
           isGitDirectory(std::string(parentOf(folder)));
}

bool RepositoryScope::reports(const std::string& path)
{
    if (nameOf(path) == ".git")
        noticeWorkingTree(std::string(parentOf(path)));
    return !isLockFile(path) && !isOwn(path);
}

/// What this program keeps for itself changes nothing that is shown.
bool RepositoryScope::isOwn(std::string_view path) const
{
    static constexpr std::array<std::string_view, 3> names{"/plovik", "/PLOVIK_UNDO_HEAD", "/logs/PLOVIK_UNDO_HEAD"};
    return std::ranges::any_of(gitDirectories_, [path](const std::string& directory) {
        if (!path.starts_with(directory))
            return false;
        const std::string_view inside = path.substr(directory.size());
        return inside.starts_with("/plovik/") || std::ranges::find(names, inside) != names.end();
    });
}

bool RepositoryScope::reshapedBy(const std::string& path)
{
    if (isInGitDirectory(path, gitDirectories_))
        return path.ends_with("/info/exclude");
    return nameOf(path) == ".gitignore";
}

} // namespace plovik
