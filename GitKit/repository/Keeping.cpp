// SPDX-License-Identifier: GPL-3.0-or-later
#include "GitKit/repository/Keeping.h"

#include "GitKit/Text.h"
#include "GitKit/repository/GitRepository.h"
#include "GitKit/repository/KeptEntries.h"
#include "GitKit/repository/KeptFolders.h"
#include "GitKit/repository/KeptList.h"
#include "GitKit/repository/PathCommand.h"
#include "GitKit/runner/GitError.h"

#include <algorithm>
#include <unistd.h>

namespace gitkit {

namespace {

namespace fs = std::filesystem;

/// Of the state after, larger files have no copy. They cannot be merged.
constexpr std::uintmax_t largestMerged = std::uintmax_t{8} << 20;

bool isFile(FileKind kind) { return kind == FileKind::regular || kind == FileKind::link; }

KeptFile described(const std::string& path, const FileChange& change, std::size_t number)
{
    KeptFile file;
    file.path = path;
    file.copy = std::to_string(number);
    const bool isOriginal = path != change.path;
    file.isNew = !isOriginal && (change.isUntracked() || change.index == 'A' || change.index == 'R' ||
                                 change.index == 'C' || change.worktree == 'A');
    file.isIntended = !isOriginal && change.index == '.' && change.worktree == 'A';
    return file;
}

/// Returns the state of `changes` with copies in `folder`. Folders and what is no file are not kept.
std::vector<KeptFile> keepBefore(const GitRepository& repo, const fs::path& folder,
                                 const std::vector<FileChange>& changes)
{
    std::vector<KeptFile> files;
    for (const FileChange& change : changes) {
        for (const std::string& path : change.allPaths()) {
            if (!change.isSubmodule && !path.ends_with('/'))
                files.push_back(described(path, change, files.size()));
        }
    }
    IndexEntries entries = indexEntriesOf(repo, files);
    for (KeptFile& file : files) {
        file.entriesBefore = entries[file.path];
        file.before = kindAt(repo.root() / file.path);
        if (isFile(file.before))
            keepCopy(repo.root() / file.path, folder / file.copy);
    }
    return files;
}

fs::path copyAfter(const fs::path& folder, const KeptFile& file) { return folder / (file.copy + ".after"); }

void noteAfter(const GitRepository& repo, const fs::path& folder, Taking taking, std::vector<KeptFile>& files)
{
    std::error_code ignored;
    IndexEntries entries = indexEntriesOf(repo, files);
    for (KeptFile& file : files) {
        const fs::path place = repo.root() / file.path;
        file.entriesAfter = entries[file.path];
        file.after = kindAt(place);
        file.afterIdentity = identityOf(place);
        const auto bytes = file.after == FileKind::regular ? bytesOf(place, largestMerged) : std::nullopt;
        // Without this copy the file cannot be merged, but it can still come back.
        if (bytes && !writeNew(*bytes, copyAfter(folder, file)))
            fs::remove(copyAfter(folder, file), ignored);
    }
    if (taking == Taking::discard)
        keepStaged(repo, folder, files);
}

/// Whether nothing was taken from the file, so that there is nothing to keep.
bool isUntaken(const GitRepository& repo, const fs::path& folder, const KeptFile& file)
{
    if (file.entriesBefore != file.entriesAfter || file.before != file.after)
        return false;
    return !isFile(file.before) || isSameFile(folder / file.copy, repo.root() / file.path, largestMerged);
}

std::optional<Kept> keptIn(const fs::path& folder)
{
    const std::string name = folder.filename().string();
    Kept kept{name, {}, keptDate(name)};
    for (const KeptFile& file : readKeptList(folder))
        kept.paths.push_back(file.path);
    return kept.paths.empty() ? std::nullopt : std::optional(kept);
}

/// Drops copies that are still other names of the files in place: their contents were not taken, and a program that
/// writes in place would change what is kept. Their index entries stay.
void dropShared(const GitRepository& repo, const fs::path& folder, const std::vector<KeptFile>& files)
{
    std::error_code ignored;
    for (const KeptFile& file : files) {
        if (file.before == FileKind::regular && fs::equivalent(folder / file.copy, repo.root() / file.path, ignored))
            fs::remove(folder / file.copy, ignored);
    }
}

/// Drops what nothing was taken from, and writes the list. Removes the folder when nothing is left.
std::optional<Kept> finishKeeping(const GitRepository& repo, const fs::path& folder, std::vector<KeptFile> files)
{
    std::error_code ignored;
    std::erase_if(files, [&](const KeptFile& file) {
        const bool untaken = isUntaken(repo, folder, file);
        if (untaken) {
            fs::remove(folder / file.copy, ignored);
            fs::remove(copyAfter(folder, file), ignored);
        }
        return untaken;
    });
    if (files.empty()) {
        fs::remove_all(folder, ignored);
        return std::nullopt;
    }
    dropShared(repo, folder, files);
    try {
        writeKeptList(folder, files);
    } catch (const GitError&) { // NOLINT(bugprone-empty-catch): the list of before names the same copies
    }
    return keptIn(folder);
}

bool isAsInHead(const GitRepository& repo, const std::string& path)
{
    return repo.runner().output({"diff", "--quiet", "HEAD", "--", literalPathspec(path)}).status == 0;
}

/// Whether a failure has left a tracked file in between: neither as it was nor as HEAD has it.
bool isHalfDone(const GitRepository& repo, const fs::path& folder, const KeptFile& file)
{
    const fs::path place = repo.root() / file.path;
    return !file.isNew && isFile(file.before) && identityOf(place) != identityOf(folder / file.copy) &&
           kindAt(place) != FileKind::folder && !isAsInHead(repo, file.path);
}

/// Puts back what a failure has left in between; that is kept no longer.
void putBackHalfDone(const GitRepository& repo, const fs::path& folder, std::vector<KeptFile>& files)
{
    IndexEntries entries = indexEntriesOf(repo, files);
    std::erase_if(files, [&](const KeptFile& file) {
        if (!isHalfDone(repo, folder, file) || !makeParents(repo.root(), file.path))
            return false;
        // Moved and not copied: on a full disk there is no room for a copy, and this is the very file that stood there.
        const fs::path place = repo.root() / file.path;
        if (::rename((folder / file.copy).c_str(), place.c_str()) != 0)
            putCopy(folder / file.copy, place);
        return restoreEntries(repo, folder, file, entries[file.path]);
    });
}

enum class Way { put, remove, merge, none, nothing };

/// What brings a file back. Way::none when the user has changed it since, so that nothing does.
Way wayBack(const GitRepository& repo, const fs::path& folder, const KeptFile& file)
{
    const fs::path place = repo.root() / file.path;
    const FileKind now = kindAt(place);
    const auto bytes = isFile(now) ? bytesOf(place, largestMerged) : std::nullopt;
    const auto after = bytesOf(copyAfter(folder, file), largestMerged);
    const bool isUnchanged =
        now == file.after && (identityOf(place) == file.afterIdentity || (after && bytes == after));
    if (file.before == FileKind::none)
        return now == FileKind::none ? Way::nothing : isUnchanged ? Way::remove : Way::none;
    if (!isFile(file.before) || kindAt(folder / file.copy) == FileKind::none)
        return Way::nothing;
    if (now == FileKind::none || isUnchanged)
        return Way::put;
    if (now == file.before && bytes && bytes == bytesOf(folder / file.copy, largestMerged))
        return Way::nothing;
    return now == FileKind::regular && file.before == FileKind::regular && bytes && after ? Way::merge : Way::none;
}

/// Merges what was kept into the file as it is now. Returns false where that makes a conflict.
bool mergeInto(const GitRepository& repo, const fs::path& folder, const KeptFile& file)
{
    const fs::path place = repo.root() / file.path;
    const GitOutput merged = repo.runner().output(
        {"merge-file", "-p", "-q", place.string(), copyAfter(folder, file).string(), (folder / file.copy).string()});
    if (merged.signalled || merged.status != 0)
        return false;
    putBytes(merged.stdoutBytes, place);
    return true;
}

/// Brings the file back. Returns false when it cannot be.
bool takeWay(const GitRepository& repo, const fs::path& folder, const KeptFile& file, Way way)
{
    const fs::path place = repo.root() / file.path;
    switch (way) {
    case Way::nothing:
        return true;
    case Way::none:
        return false;
    case Way::merge:
        return mergeInto(repo, folder, file);
    case Way::remove:
        return ::unlink(place.c_str()) == 0;
    case Way::put:
        break;
    }
    if (!makeParents(repo.root(), file.path))
        return false;
    putCopy(folder / file.copy, place);
    return true;
}

/// Brings a file back with its index entries, which are `now`, and notes in `result` what was done. Returns false when the
/// file must stay kept.
bool bringFileBack(const GitRepository& repo, const fs::path& folder, const KeptFile& file,
                   const std::vector<std::string>& now, BroughtBack& result)
{
    const Way way = wayBack(repo, folder, file);
    if (!takeWay(repo, folder, file, way)) {
        result.left.push_back(file.path);
        return false;
    }
    const bool canStage = now == file.entriesAfter || now == file.entriesBefore;
    if (file.entriesBefore != file.entriesAfter && (!canStage || !restoreEntries(repo, folder, file, now)))
        result.indexChanged.push_back(file.path);
    (way == Way::merge ? result.merged : result.back).push_back(file.path);
    return true;
}

/// Returns the copy of a file, or of what only the index had of it; nullopt when there is neither.
std::optional<fs::path> copyOf(const fs::path& folder, const KeptFile& file)
{
    for (fs::path copy : {folder / file.copy, stagedCopy(folder, file)}) {
        if (isFile(kindAt(copy)))
            return copy;
    }
    return std::nullopt;
}

/// Throws when one of the files would be written over another: nobody was asked about that.
void requireFree(const fs::path& place, const std::vector<KeptFile>& files)
{
    for (const KeptFile& file : files) {
        if (kindAt(place / file.path) != FileKind::none)
            throw GitError("checkout", 1,
                           inQuotes((place / file.path).string()) +
                               " is there already, so nothing was saved. Choose another folder.");
    }
}

} // namespace

Keeping keeping(const GitRepository& repo, const fs::path& gitDirectory, const std::vector<FileChange>& files,
                Taking taking, const std::function<void()>& take)
{
    const fs::path folder = makeKeptFolder(gitDirectory);
    std::vector<KeptFile> kept;
    try {
        kept = keepBefore(repo, folder, files);
        writeKeptList(folder, kept); // also after a crash it is known what the copies are
        // A second name changes a file's times. Git would take the file for changed, and refuse to abort a merge.
        repo.runner().output({"update-index", "-q", "--refresh"});
    } catch (...) {
        std::error_code ignored;
        fs::remove_all(folder, ignored);
        throw;
    }
    Keeping result;
    // What was begun is put in order also after the user has cancelled it, when no further run of `repo` would start.
    const GitRepository calm = repo.in({});
    try {
        take();
    } catch (...) {
        result.failure = std::current_exception();
        if (taking == Taking::discard)
            putBackHalfDone(calm, folder, kept);
    }
    noteAfter(calm, folder, taking, kept);
    if (taking == Taking::step) {
        for (KeptFile& file : kept)
            file.entriesBefore = file.entriesAfter;
    }
    result.kept = finishKeeping(calm, folder, std::move(kept));
    return result;
}

std::vector<Kept> allKept(const fs::path& gitDirectory)
{
    std::vector<Kept> all;
    for (const std::string& name : keptNames(gitDirectory)) {
        if (const auto kept = keptIn(keepingFolder(gitDirectory) / name))
            all.push_back(*kept);
    }
    return all;
}

BroughtBack bringBack(const GitRepository& repo, const fs::path& gitDirectory, const Kept& kept)
{
    const fs::path folder = keepingFolder(gitDirectory) / kept.name;
    std::vector<KeptFile> files = readKeptList(folder);
    if (files.empty())
        throw GitError("checkout", 1, "What was discarded is not kept any more.");
    BroughtBack result;
    IndexEntries entries = indexEntriesOf(repo, files);
    std::vector<KeptFile> left;
    std::exception_ptr failure;
    for (const KeptFile& file : files) {
        try {
            if (!bringFileBack(repo, folder, file, entries[file.path], result))
                left.push_back(file);
        } catch (const GitError&) {
            // One file that cannot be written keeps none of the others from coming back.
            failure = failure ? failure : std::current_exception();
            left.push_back(file);
        }
    }
    repo.runner().output({"update-index", "-q", "--refresh"}); // else every status would read the files whole
    if (left.empty())
        forget(gitDirectory, kept);
    else
        writeKeptList(folder, left);
    if (failure)
        std::rethrow_exception(failure);
    return result;
}

void saveKept(const fs::path& gitDirectory, const Kept& kept, const fs::path& place)
{
    const fs::path folder = keepingFolder(gitDirectory) / kept.name;
    const bool isOne = kept.paths.size() == 1;
    std::vector<KeptFile> files = readKeptList(folder);
    std::erase_if(files, [&](const KeptFile& file) {
        return std::ranges::find(kept.paths, file.path) == kept.paths.end() || !copyOf(folder, file);
    });
    if (!isOne)
        requireFree(place, files);
    for (const KeptFile& file : files) {
        const fs::path to = isOne ? place : place / file.path;
        if (!isOne && !makeParents(place, file.path))
            throw GitError("checkout", 1, inQuotes(to.string()) + " cannot be written: a folder is missing.");
        saveCopy(*copyOf(folder, file), to);
    }
}

void forget(const fs::path& gitDirectory, const Kept& kept)
{
    std::error_code ignored;
    fs::remove_all(keepingFolder(gitDirectory) / kept.name, ignored);
}

} // namespace gitkit
