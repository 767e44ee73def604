// SPDX-License-Identifier: GPL-3.0-or-later
#include "GitKit/undo/Overlay.h"

#include "GitKit/FileReplacement.h"
#include "GitKit/Text.h"
#include "GitKit/parsers/Fields.h"
#include "GitKit/repository/Blobs.h"
#include "GitKit/repository/FileCopies.h"
#include "GitKit/repository/GitRepository.h"
#include "GitKit/repository/ScratchIndex.h"
#include "GitKit/runner/GitError.h"
#include "GitKit/undo/HelperRuns.h"

#include <algorithm>
#include <span>
#include <sys/stat.h>

namespace gitkit {

namespace {

namespace fs = std::filesystem;

constexpr std::uintmax_t longestTarget = 4096;
constexpr std::size_t largestBlob = std::size_t{1} << 30;
constexpr std::size_t mostAtOnce = 32;
constexpr std::size_t mostLoose = 32;

bool isExecutable(const fs::path& file)
{
    struct stat status{};
    return ::lstat(file.c_str(), &status) == 0 && (status.st_mode & S_IXUSR) != 0;
}

/// Returns whether `hash-object --stdin-paths` reads this name as it is, one a line.
bool isPlainLine(const std::string& path) { return path.find('\n') == std::string::npos && path.front() != '"'; }

std::string storeBytes(const GitRepository& repo, const std::string& bytes)
{
    RunOptions options = helperOptions();
    options.input = bytes;
    return std::string(withoutLineEnd(repo.runner().bytes({"hash-object", "-w", "--no-filters", "--stdin"}, options)));
}

std::string storeFile(const GitRepository& repo, const fs::path& file)
{
    return std::string(withoutLineEnd(
        repo.runner().bytes({"hash-object", "-w", "--no-filters", "--", file.string()}, helperOptions())));
}

/// Notes the hashes that git has printed, one a line.
void noteHashes(std::span<OverlayFile*> files, const std::string& hashes)
{
    Pieces lines(hashes, '\n');
    for (OverlayFile* file : files) {
        const auto hash = lines.next();
        if (!hash)
            throw GitError("hash-object", 1, "Git stored fewer files than it was given.");
        file->hash = *hash;
    }
}

/// Notes the hashes of files.
void hashFiles(const GitRepository& repo, std::span<OverlayFile*> files, const fs::path& folder,
               const std::vector<std::string>& how)
{
    if (files.empty())
        return;
    RunOptions options = helperOptions();
    options.input = std::string();
    for (const OverlayFile* file : files)
        *options.input += (folder / file->path).string() + '\n';
    std::vector<std::string> command{"hash-object", "--no-filters", "--stdin-paths"};
    command.insert(command.end(), how.begin(), how.end());
    noteHashes(files, repo.runner().bytes(command, options));
}

/// Returns the files whose contents the repository does not have.
std::vector<OverlayFile*> missingFrom(const GitRepository& repo, std::span<OverlayFile*> files)
{
    RunOptions options = helperOptions();
    options.input = std::string();
    for (const OverlayFile* file : files)
        *options.input += file->hash + '\n';
    const std::string answers = repo.runner().bytes({"cat-file", "--batch-check"}, options);
    std::vector<OverlayFile*> missing;
    Pieces lines(answers, '\n');
    for (OverlayFile* file : files) {
        if (const auto line = lines.next(); line && line->ends_with(" missing"))
            missing.push_back(file);
    }
    return missing;
}

/// Stores many files at once: a file of its own for each object would take far longer.
void packFiles(const GitRepository& repo, std::span<OverlayFile*> files, const fs::path& folder)
{
    RunOptions options = helperOptions();
    options.settings.emplace_back("fastimport.unpackLimit=1");
    options.input = std::string();
    int mark = 0;
    for (const OverlayFile* file : files) {
        const auto bytes = bytesOf(folder / file->path, largestBlob);
        if (!bytes)
            throw GitError("undo", 1, inQuotes(file->path) + " could not be read.");
        const std::string number = std::to_string(++mark);
        *options.input += "blob\nmark :" + number + "\ndata " + std::to_string(bytes->size()) + '\n';
        *options.input += *bytes;
        *options.input += "\nget-mark :" + number + '\n';
    }
    noteHashes(files, repo.runner().bytes({"fast-import", "--quiet", "--cat-blob-fd=1"}, options));
}

/// Stores the contents of regular files and notes their hashes. The folder is empty for the working tree's root.
void storeFiles(const GitRepository& repo, std::vector<OverlayFile*>& files, const fs::path& folder)
{
    const auto listed =
        std::ranges::partition(files, [&](OverlayFile* file) { return isPlainLine((folder / file->path).string()); });
    for (OverlayFile* file : listed)
        file->hash = storeFile(repo, folder / file->path);
    const std::span<OverlayFile*> plain(files.begin(), listed.begin());
    if (plain.size() <= mostLoose) {
        hashFiles(repo, plain, folder, {"-w"});
        return;
    }
    hashFiles(repo, plain, folder, {});
    std::vector<OverlayFile*> missing = missingFrom(repo, plain);
    if (missing.size() <= mostLoose)
        hashFiles(repo, missing, folder, {"-w"});
    else
        packFiles(repo, missing, folder.empty() ? repo.root() : folder);
}

/// Returns the name that stands for a path in the tree, in which all files lie side by side: a tree for each folder is
/// slow to write.
std::string nameOf(const std::string& path)
{
    std::string name;
    for (const char byte : path) {
        if (byte == '/')
            name += "%2f";
        else if (byte == '%')
            name += "%25";
        else
            name += byte;
    }
    return name;
}

std::string pathOfName(std::string_view name)
{
    std::string path;
    for (std::size_t index = 0; index < name.size(); ++index) {
        if (name[index] != '%') {
            path += name[index];
            continue;
        }
        path += name.substr(index).starts_with("%2f") ? '/' : '%';
        index += 2;
    }
    return path;
}

std::string treeOf(const GitRepository& repo, const std::vector<OverlayFile>& files)
{
    RunOptions options = helperOptions();
    options.input = std::string();
    for (const OverlayFile& file : files)
        *options.input += file.mode + " blob " + file.hash + '\t' + nameOf(file.path) + '\0';
    return std::string(withoutLineEnd(repo.runner().bytes({"mktree", "-z"}, options)));
}

bool restoreFile(const fs::path& root, const OverlayFile& file, const std::string& bytes)
{
    const fs::path place = root / file.path;
    if (!makeParents(root, file.path) || kindAt(place) == FileKind::folder)
        return false;
    if (file.mode == "120000")
        return replaceByLink(place, bytes);
    return replaceFile(place, bytes, file.mode == "100755");
}

} // namespace

std::string writeOverlay(const GitRepository& repo, std::vector<std::string> paths, const fs::path& folder)
{
    std::ranges::sort(paths);
    paths.erase(std::ranges::unique(paths).begin(), paths.end());
    std::vector<OverlayFile> files;
    for (const std::string& path : paths) {
        const fs::path place = (folder.empty() ? repo.root() : folder) / path;
        const FileKind kind = kindAt(place);
        if (kind == FileKind::link) {
            if (const auto target = bytesOf(place, longestTarget))
                files.push_back({path, "120000", storeBytes(repo, *target)});
        } else if (kind == FileKind::regular) {
            files.push_back({path, isExecutable(place) ? "100755" : "100644", {}});
        }
    }
    std::vector<OverlayFile*> regular;
    for (OverlayFile& file : files) {
        if (file.hash.empty())
            regular.push_back(&file);
    }
    storeFiles(repo, regular, folder);
    return treeOf(repo, files);
}

std::vector<OverlayFile> overlayFiles(const GitRepository& repo, const std::string& tree)
{
    std::vector<OverlayFile> files;
    // An entry is "MODE TYPE HASH\tPATH".
    for (const std::string& entry : splitNul(repo.runner().bytes({"ls-tree", "-z", tree}))) {
        const std::size_t type = entry.find(' ');
        const std::size_t hash = entry.find(' ', type + 1);
        const std::size_t path = entry.find('\t');
        if (path != std::string::npos && hash < path)
            files.push_back({pathOfName(std::string_view(entry).substr(path + 1)), entry.substr(0, type),
                             entry.substr(hash + 1, path - hash - 1)});
    }
    return files;
}

std::string overlayInFolders(const GitRepository& repo, const std::string& tree)
{
    // No tree has a name from the root on, nor one of git's own folder.
    const auto comparable = [](const std::string& path) {
        const fs::path whole(path);
        return whole.is_absolute() ? (whole.parent_path().filename() / whole.filename()).string() : path;
    };
    const ScratchIndex index(repo.runner());
    RunOptions options = helperOptions(index.options());
    options.input = std::string();
    for (const OverlayFile& file : overlayFiles(repo, tree))
        *options.input += file.mode + ' ' + file.hash + '\t' + comparable(file.path) + '\0';
    repo.runner().accepted({"update-index", "-z", "--add", "--index-info"}, options);
    return std::string(withoutLineEnd(repo.runner().bytes({"write-tree"}, helperOptions(index.options()))));
}

std::vector<std::string> restoreOverlay(const GitRepository& repo, const std::vector<OverlayFile>& files,
                                        const fs::path& folder)
{
    std::vector<std::string> failed;
    for (std::size_t begin = 0; begin < files.size(); begin += mostAtOnce) {
        const auto some = std::span(files).subspan(begin, std::min(mostAtOnce, files.size() - begin));
        std::vector<std::string> hashes;
        for (const OverlayFile& file : some)
            hashes.push_back(file.hash);
        const auto contents = blobs(repo, hashes, largestBlob);
        for (std::size_t index = 0; index < some.size(); ++index) {
            if (!contents[index] || !restoreFile(folder.empty() ? repo.root() : folder, some[index], *contents[index]))
                failed.push_back(some[index].path);
        }
    }
    return failed;
}

} // namespace gitkit
