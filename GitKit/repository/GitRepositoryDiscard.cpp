// SPDX-License-Identifier: GPL-3.0-or-later
// Bringing files back to HEAD without losing what git does not know.
//
// Where this differs from one plain command a file:
//
//   order                what goes to the Trash goes there before git is told anything, so that at every failure the
//   file
//                        is either in its place or in the Trash, and its index entry stays when it could not be moved.
//   looking first        `checkout HEAD` removes whatever stands at the path, under its parents' names, or at a
//   rename's
//                        old name. Anything there that git does not know goes to the Trash.
//   status               is read again first: the letters that the caller holds may be old.
//   batches              files in a row that need the same command share one, since ten thousand processes take
//   minutes.
//                        A batch that fails is repeated file by file, so that those before the failing one are done.
//   GIT_LITERAL_PATHSPECS, standard input    as for staging (PathCommand.h).
//   conflicted files     that HEAD does not have are forgotten and moved to the Trash, whatever their letters.
//   intended additions   (add -N) are not in HEAD: they go the way of added files.
//   submodules           are refused: no command brings back the files in them.

#include "GitKit/repository/GitRepository.h"
#include "GitKit/repository/PathCommand.h"
#include "GitKit/runner/GitError.h"

#include <algorithm>
#include <sys/stat.h>
#include <unordered_map>

namespace gitkit {

namespace {

namespace fs = std::filesystem;

enum class Standing { nothing, file, folder };

/// What is at a path itself, a symbolic link not followed.
Standing standing(const fs::path& path)
{
    struct stat found{};
    if (::lstat(path.c_str(), &found) != 0)
        return Standing::nothing;
    return S_ISDIR(found.st_mode) ? Standing::folder : Standing::file;
}

std::string quoted(const std::string& path) { return "“" + repairedUtf8(path) + "”"; }

/// Whether discarding leaves nothing of the file in its place, so that it goes to the Trash.
bool isNew(const FileChange& file)
{
    if (file.isConflicted) // deleted or never had on this side
        return file.index == 'D' || (file.index == 'U' && file.worktree == 'A');
    return file.index == '?' || file.index == 'A' || file.index == 'C' ||
           (file.index == '.' && (file.worktree == 'A' || file.worktree == 'C'));
}

bool isRename(const FileChange& file)
{
    return file.originalPath && (file.index == 'R' || (file.index == '.' && file.worktree == 'R'));
}

/// The working tree's changes as they are now, by path. One path may be both deleted in the index and untracked.
class CurrentChanges {
public:
    explicit CurrentChanges(const RepoStatus& status)
    {
        for (const FileChange& file : status.files)
            (file.isUntracked() ? untracked_ : tracked_).emplace(file.path, file);
    }

    /// What has become of `file`; nothing when there is nothing left to discard.
    const FileChange* of(const FileChange& file) const
    {
        const FileChange* untracked = find(untracked_, file.path);
        const FileChange* tracked = find(tracked_, file.path);
        if (file.isUntracked() ? untracked != nullptr : tracked == nullptr)
            return untracked;
        return tracked;
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

/// One discard of a list of files.
class Discard {
public:
    Discard(const fs::path& root, const GitRunner& runner, const Trash& trash)
        : root_(root), runner_(runner), trash_(trash)
    {}

    void add(const FileChange& file)
    {
        if (file.isSubmodule)
            throw GitError("checkout", 1,
                           quoted(file.path) + " is a submodule: its changes are discarded in its own window.");
        if (file.isUntracked())
            moveFile(file.path);
        else if (isNew(file))
            removeNew(file.path);
        else if (isRename(file))
            undoRename(file);
        else
            restore(file.path, file.index == 'D' ? Known::no : Known::yes);
    }

    /// Runs what waits. To be called at the end, and after a failure.
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
    enum class Command { forget, restore };
    enum class Known { no, yes };

    static constexpr std::size_t largestBatch = 500;

    void removeNew(const std::string& path)
    {
        moveFile(path);
        wait(Command::forget, path);
    }

    void undoRename(const FileChange& file)
    {
        finish();
        moveFile(file.path);
        clearTheWay(*file.originalPath, Known::no);
        if (file.index == 'R')
            runOnPaths(runner_, {"reset", "-q"}, {file.path, *file.originalPath});
        else
            runOnPaths(runner_, {"rm", "-q", "--cached", "-f"}, {file.path});
        run(Command::restore, {*file.originalPath});
    }

    void restore(const std::string& path, Known known)
    {
        if (waitingCommand_ == Command::forget)
            finish();
        clearTheWay(path, known);
        wait(Command::restore, path);
    }

    /// Moves away what git would remove to write `path`. `known` tells whether a file there is the one in the index.
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

    /// Moves a file, if it is where `path` says: a link among its parents leads to another. A folder in a file's place
    /// has files of its own, a repository inside this one ends in a slash.
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
            throw GitError("checkout", 1, quoted(path) + " could not be moved to the Trash.");
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
            runOnPaths(runner_, {"rm", "-q", "--cached", "-f"}, paths);
        else
            runOnPaths(runner_, {"checkout", "HEAD"}, paths);
    }

    void runAlone(Command command, const std::string& path)
    {
        // A file that was meant to be added and is gone again looks like any deleted one.
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

} // namespace

void GitRepository::discard(const std::vector<FileChange>& files, const Trash& trash) const
{
    const CurrentChanges current(status());
    Discard discard(root_, runner_, trash);
    try {
        for (const FileChange& file : files) {
            const FileChange* now = current.of(file);
            if (now == nullptr)
                continue;
            // It was to go to the Trash, and now its changes would just be lost.
            if (isNew(file) && !isNew(*now))
                throw GitError("checkout", 1, quoted(file.path) + " has changed since it was shown. Look at it again.");
            discard.add(*now);
        }
    } catch (...) {
        discard.finish();
        throw;
    }
    discard.finish();
}

} // namespace gitkit
