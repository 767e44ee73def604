// SPDX-License-Identifier: GPL-3.0-or-later
// Bringing files back to HEAD without losing what git does not know.
//
// This table says where that differs from one plain command for each file.
//
//   order                 A file goes to the Trash before git is told anything. After a failure it is either in its
//                         place or in the Trash, and its index entry is still there when it could not be moved.
//   looking first         `checkout HEAD` removes whatever is at the path, at the place of one of its parents, or at the
//                         old name of a rename. What git does not know there goes to the Trash.
//   status                is read again first, because the caller's letters may be old.
//   batches               Files in a row that need the same command share one, because ten thousand processes take
//                         minutes. A batch that fails is repeated file by file, so that the files before the failing
//                         one are done.
//   paths                 reach git as for staging (PathCommand.h).
//   conflicted files      that HEAD does not have are removed from the index and moved to the Trash.
//   intended additions    (add -N) are not in HEAD, so they are treated like added files.
//   submodules            are refused, because no command brings back the files in them.

#include "GitKit/Text.h"
#include "GitKit/repository/Discard.h"
#include "GitKit/repository/GitRepository.h"
#include "GitKit/repository/PathCommand.h"
#include "GitKit/repository/StagedPaths.h"
#include "GitKit/runner/GitError.h"

#include <algorithm>
#include <set>
#include <sys/stat.h>
#include <unordered_map>

namespace gitkit {

namespace {

namespace fs = std::filesystem;

enum class Standing { nothing, file, folder };

/// What is at a path. Does not follow a symbolic link.
Standing standing(const fs::path& path)
{
    struct stat found{};
    if (::lstat(path.c_str(), &found) != 0)
        return Standing::nothing;
    return S_ISDIR(found.st_mode) ? Standing::folder : Standing::file;
}

/// Whether HEAD has no such file, so that discarding moves it to the Trash.
bool isNew(const FileChange& file)
{
    if (file.isConflicted) // this side deleted it or never had it
        return file.index == 'D' || (file.index == 'U' && file.worktree == 'A');
    return file.index == '?' || file.index == 'A' || file.index == 'C' ||
           (file.index == '.' && (file.worktree == 'A' || file.worktree == 'C'));
}

bool isRename(const FileChange& file)
{
    return file.originalPath && (file.index == 'R' || (file.index == '.' && file.worktree == 'R'));
}

/// The working tree's current changes, by path. A path can be both deleted in the index and untracked.
class CurrentChanges {
public:
    explicit CurrentChanges(const RepoStatus& status)
    {
        for (const FileChange& file : status.files)
            (file.isUntracked() ? untracked_ : tracked_).emplace(file.path, file);
    }

    /// The current change at the path of `file`; nullptr when there is nothing left to discard.
    const FileChange* of(const FileChange& file) const
    {
        const FileChange* untracked = find(untracked_, file.path);
        const FileChange* tracked = find(tracked_, file.path);
        if (file.isUntracked() ? untracked != nullptr : tracked == nullptr)
            return untracked;
        return tracked;
    }

    /// The files in the index that cannot be there together with `path`: those in a folder of its name, and those that
    /// have the name of a folder above it.
    std::vector<std::string> stagedInPlaceOf(const std::string& path) const
    {
        std::vector<std::string> paths;
        for (const auto& [other, file] : tracked_) {
            if (file.index != 'D' && (other.starts_with(path + '/') || path.starts_with(other + '/')))
                paths.push_back(other);
        }
        return paths;
    }

private:
    using ByPath = std::unordered_map<std::string, FileChange>;

    static const FileChange* find(const ByPath& files, const std::string& path)
    {
        const auto found = files.find(path);
        return found == files.end() ? nullptr : &found->second;
    }

    ByPath tracked_;
    ByPath untracked_;
};

/// Discards a list of files. Made for one call of GitRepository::discard().
class Discard {
public:
    Discard(const fs::path& root, const GitRunner& runner, const Trash& trash)
        : root_(root), runner_(runner), trash_(trash)
    {}

    void add(const FileChange& file)
    {
        if (file.isSubmodule)
            throw GitError("checkout", 1,
                           inQuotes(file.path) + " is a submodule: its changes are discarded in its own window.");
        if (file.isUntracked())
            moveFile(file.path);
        else if (isNew(file))
            removeNew(file);
        else if (isRename(file))
            undoRename(file);
        else
            restore(file.path, file.index == 'D' ? Known::no : Known::yes);
    }

    /// Brings a file back to what is staged of it.
    void addUnstaged(const FileChange& file)
    {
        const bool hasStaged = file.hasStaged() || (file.worktree != 'A' && file.worktree != 'R');
        if (file.isSubmodule || file.isUntracked() || !hasStaged) {
            add(file);
        } else if (file.worktree != '.') {
            if (waitingCommand_ != Command::unstaged)
                finish();
            clearTheWay(file.path, Known::yes);
            wait(Command::unstaged, file.path);
        }
    }

    /// Runs the commands that wait. Must be called at the end and after a failure.
    void finish()
    {
        const Arguments paths = std::exchange(waiting_, {});
        const Command command = waitingCommand_;
        if (paths.empty())
            return;
        try {
            run(command, paths);
        } catch (const GitError&) {
            for (const std::string& path : paths)
                runAlone(command, path);
        }
    }

private:
    using Arguments = std::vector<std::string>;
    enum class Command { forget, restore, unstaged };
    enum class Known { no, yes };

    static constexpr std::size_t largestBatch = 500;

    void removeNew(const FileChange& file)
    {
        // The Trash was promised, and the index has the only copy.
        if (file.index == 'A' && file.worktree == 'D')
            writeStaged(file.path);
        moveFile(file.path);
        wait(Command::forget, file.path);
    }

    void writeStaged(const std::string& path)
    {
        if (standing(root_ / path) != Standing::nothing)
            throw GitError("checkout", 1,
                           "The staged copy of " + inQuotes(path) +
                               " cannot be moved to the Trash, because a folder has its name.");
        runOnExactPaths(runner_, {"checkout-index", "-q", "-z", "--stdin"}, {path});
    }

    void undoRename(const FileChange& file)
    {
        finish();
        moveFile(file.path);
        clearTheWay(*file.originalPath, Known::no);
        if (file.index == 'R')
            unstagePaths(runner_, {file.path, *file.originalPath});
        else
            forgetPaths(runner_, {file.path});
        runAlone(Command::restore, *file.originalPath);
    }

    void restore(const std::string& path, Known known)
    {
        if (waitingCommand_ != Command::restore)
            finish();
        clearTheWay(path, known);
        wait(Command::restore, path);
    }

    /// Moves away what git would remove to write `path`. `known` says whether the index has a file at that path.
    void clearTheWay(const std::string& path, Known known)
    {
        for (std::size_t end = path.find('/'); end != std::string::npos; end = path.find('/', end + 1)) {
            const std::string parent = path.substr(0, end);
            const Standing found = standing(root_ / parent);
            if (found == Standing::file)
                move(parent);
            if (found != Standing::folder)
                return;
        }
        const Standing found = standing(root_ / path);
        if (found == Standing::folder ? !fs::is_empty(root_ / path) : found == Standing::file && known == Known::no)
            move(path);
    }

    /// Moves a file to the Trash if it really is at `path`: a parent that is a link leads to another file, and a folder
    /// in the file's place holds other files. The path of a repository inside this one ends in a slash.
    void moveFile(const std::string& path)
    {
        const bool isRepository = path.ends_with('/');
        const std::string plain = isRepository ? path.substr(0, path.size() - 1) : path;
        for (std::size_t end = plain.find('/'); end != std::string::npos; end = plain.find('/', end + 1)) {
            if (standing(root_ / plain.substr(0, end)) != Standing::folder)
                return;
        }
        if (standing(root_ / plain) == (isRepository ? Standing::folder : Standing::file))
            move(plain);
    }

    void move(const std::string& path)
    {
        trash_(root_ / path);
        if (standing(root_ / path) != Standing::nothing)
            throw GitError("checkout", 1, inQuotes(path) + " could not be moved to the Trash.");
    }

    void wait(Command command, const std::string& path)
    {
        if (command != waitingCommand_ || waiting_.size() >= largestBatch)
            finish();
        waitingCommand_ = command;
        waiting_.push_back(path);
    }

    void run(Command command, const Arguments& paths)
    {
        if (command == Command::forget)
            forgetPaths(runner_, paths);
        else if (command == Command::unstaged)
            runOnPaths(runner_, {"checkout"}, paths);
        else
            runOnPaths(runner_, {"checkout", "HEAD"}, paths);
    }

    void runAlone(Command command, const std::string& path)
    {
        // The status of an intended addition whose file is gone is that of any deleted file, and git may take it for
        // the old name of another one.
        const bool isUnknown = command == Command::restore && standing(root_ / path) == Standing::nothing &&
                               runner_.output({"rev-parse", "--verify", "--quiet", "HEAD:" + path}).status != 0;
        run(isUnknown ? Command::forget : command, {path});
    }

    const fs::path& root_;
    const GitRunner& runner_;
    const Trash& trash_;
    Arguments waiting_;
    Command waitingCommand_ = Command::restore;
};

/// Discards the files of one list, each once.
class DiscardList {
public:
    using Add = void (Discard::*)(const FileChange&);

    DiscardList(const std::vector<FileChange>& files, const CurrentChanges& current, Discard& discard, Add add)
        : files_(files), current_(current), discard_(discard), add_(add)
    {}

    void run()
    {
        for (const FileChange& file : files_)
            take(file);
    }

private:
    void take(const FileChange& file)
    {
        const FileChange* now = current_.of(file);
        if (now == nullptr || !taken_.insert(now).second)
            return;
        // The caller was promised that the file goes to the Trash; now its changes would be lost.
        if (isNew(file) && !isNew(*now))
            throw GitError("checkout", 1, inQuotes(file.path) + " has changed since it was shown. Look at it again.",
                           ErrorKind::changedMeanwhile);
        if (now->index == 'D')
            makePlace(now->path, *now);
        else if (isRename(*now))
            makePlace(*now->originalPath, *now);
        (discard_.*add_)(*now);
    }

    /// Discards first what bringing a file back would drop from the index.
    void makePlace(const std::string& path, const FileChange& file)
    {
        for (const std::string& other : current_.stagedInPlaceOf(path)) {
            if (other == file.path)
                continue;
            const auto listed = std::ranges::find(files_, other, &FileChange::path);
            if (listed == files_.end())
                throw GitError("checkout", 1,
                               inQuotes(path) + " cannot come back alone, because " + inQuotes(other) +
                                   " is staged in its place.");
            take(*listed);
        }
    }

    const std::vector<FileChange>& files_;
    const CurrentChanges& current_;
    Discard& discard_;
    Add add_;
    std::set<const FileChange*> taken_;
};

void discardEach(const GitRepository& repo, const std::vector<FileChange>& files, const Trash& trash,
                 void (Discard::*add)(const FileChange&))
{
    const CurrentChanges current(repo.status());
    Discard discard(repo.root(), repo.runner(), trash);
    try {
        DiscardList(files, current, discard, add).run();
    } catch (...) {
        discard.finish();
        throw;
    }
    discard.finish();
}

} // namespace

void GitRepository::discard(const std::vector<FileChange>& files, const Trash& trash) const
{
    discardEach(*this, files, trash, &Discard::add);
}

void discardUnstaged(const GitRepository& repo, const std::vector<FileChange>& files, const Trash& trash)
{
    discardEach(repo, files, trash, &Discard::addUnstaged);
}

} // namespace gitkit
