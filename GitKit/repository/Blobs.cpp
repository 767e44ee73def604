// SPDX-License-Identifier: GPL-3.0-or-later
#include "GitKit/repository/Blobs.h"

#include "GitKit/RegularFile.h"
#include "GitKit/parsers/Fields.h"
#include "GitKit/repository/GitRepository.h"
#include "GitKit/repository/PathCommand.h"
#include "GitKit/repository/RefArguments.h"
#include "GitKit/runner/GitError.h"

#include <algorithm>
#include <charconv>
#include <cstdint>
#include <sys/stat.h>

namespace gitkit {

namespace {

/// Reads a file of the working tree as git does: the content of a symbolic link is its target.
std::optional<std::string> workingFile(const std::filesystem::path& file, std::size_t limit)
{
    struct stat found{};
    if (::lstat(file.c_str(), &found) != 0)
        return std::nullopt;
    std::error_code failure;
    if (S_ISLNK(found.st_mode)) {
        const std::filesystem::path target = std::filesystem::read_symlink(file, failure);
        return failure ? std::nullopt : std::optional(target.string());
    }
    if (!S_ISREG(found.st_mode) || static_cast<std::uintmax_t>(found.st_size) > limit)
        return std::nullopt;
    std::optional<std::string> bytes = regularFileBytes(file, std::min(limit, SIZE_MAX - 1) + 1);
    return bytes && bytes->size() <= limit ? bytes : std::nullopt;
}

std::optional<std::uint64_t> workingFileSize(const std::filesystem::path& file)
{
    struct stat found{};
    if (::lstat(file.c_str(), &found) != 0 || (!S_ISREG(found.st_mode) && !S_ISLNK(found.st_mode)))
        return std::nullopt;
    return static_cast<std::uint64_t>(found.st_size);
}

/// Reads the size in "hash type size". Returns nullopt when the object is missing and when it is not a blob.
std::optional<std::size_t> blobSize(std::string_view line)
{
    const auto fields = splitFields<3>(line, ' ');
    if (!fields || fields->at(1) != "blob")
        return std::nullopt;
    std::size_t size = 0;
    const std::string_view digits = fields->at(2);
    const auto read = std::from_chars(digits.data(), digits.data() + digits.size(), size);
    return read.ec == std::errc() ? std::optional(size) : std::nullopt;
}

FileSample workingSample(const std::filesystem::path& path, std::size_t bytes)
{
    using Kind = FileSample::Kind;
    struct stat found{};
    if (::lstat(path.c_str(), &found) != 0)
        return {};
    std::error_code failure;
    if (S_ISLNK(found.st_mode))
        return {Kind::file, std::filesystem::read_symlink(path, failure).string()};
    if (S_ISDIR(found.st_mode))
        return {std::filesystem::exists(path / ".git", failure) ? Kind::submodule : Kind::folder, {}};
    if (!S_ISREG(found.st_mode))
        return {};
    return {Kind::file, regularFileBytes(path, bytes).value_or(std::string())};
}

/// Reads the kind in "mode type hash<tab>path".
FileSample::Kind kindOf(std::string_view entry)
{
    using Kind = FileSample::Kind;
    const std::size_t blank = entry.find(' ');
    if (blank == std::string_view::npos)
        return Kind::missing;
    const std::string_view type = entry.substr(blank + 1);
    if (type.starts_with("commit"))
        return Kind::submodule;
    return type.starts_with("tree") ? Kind::folder : Kind::file;
}

} // namespace

std::vector<std::optional<std::string>> blobs(const GitRepository& repo, const std::vector<std::string>& hashes,
                                              std::size_t limit)
{
    std::vector<std::optional<std::string>> found(hashes.size());
    std::string wanted;
    for (const std::string& hash : hashes)
        wanted += hash + '\n';
    // Ask for the sizes first, so that a blob of gigabytes is not read for nothing.
    const std::string sizes = repo.runner().bytes({"cat-file", "--batch-check"}, {.input = wanted});
    std::vector<std::size_t> readable;
    wanted.clear();
    Pieces lines(sizes, '\n');
    for (std::size_t index = 0; index < hashes.size(); ++index) {
        const auto size = blobSize(lines.next().value_or(std::string_view()));
        if (!size || *size > limit)
            continue;
        readable.push_back(index);
        wanted += hashes[index] + '\n';
    }
    if (readable.empty())
        return found;
    // Each is "hash blob size", a line feed, the bytes, and a line feed.
    const std::string contents = repo.runner().bytes({"cat-file", "--batch"}, {.input = wanted});
    std::string_view rest = contents;
    for (const std::size_t index : readable) {
        const std::size_t end = rest.find('\n');
        const auto size = blobSize(rest.substr(0, end));
        if (!size || end == std::string_view::npos || rest.size() < end + 1 + *size)
            break;
        found[index] = std::string(rest.substr(end + 1, *size));
        rest.remove_prefix(std::min(rest.size(), end + 1 + *size + 1));
    }
    return found;
}

DiffSides diffSides(const GitRepository& repo, const DiffSource& source, std::size_t limit)
{
    std::vector<std::string> hashes;
    for (const auto& blob : {source.before, source.after}) {
        if (blob && !isNoHash(*blob))
            hashes.push_back(*blob);
    }
    if (hashes.empty())
        return {};
    const auto found = blobs(repo, hashes, limit);
    DiffSides sides;
    std::size_t next = 0;
    if (source.before && !isNoHash(*source.before))
        sides.before = found[next++];
    if (source.after && !isNoHash(*source.after))
        sides.after = found[next];
    // A file that is only in the working tree has a hash, but git has no object with it.
    if (!sides.after && source.workingPath && source.after && !isNoHash(*source.after))
        sides.after = workingFile(repo.root() / *source.workingPath, limit);
    return sides;
}

SideSizes diffSizes(const GitRepository& repo, const DiffSource& source)
{
    const auto isFile = [](const std::optional<std::string>& blob) { return blob && !isNoHash(*blob); };
    if (!isFile(source.before) && !isFile(source.after))
        return {};
    std::string wanted;
    for (const auto& blob : {source.before, source.after})
        wanted += isFile(blob) ? *blob + '\n' : std::string();
    const std::string sizes = repo.runner().bytes({"cat-file", "--batch-check"}, {.input = wanted});
    Pieces lines(sizes, '\n');
    SideSizes found;
    if (isFile(source.before))
        found.before = blobSize(lines.next().value_or(std::string_view()));
    if (isFile(source.after))
        found.after = blobSize(lines.next().value_or(std::string_view()));
    if (!found.after && source.workingPath && isFile(source.after))
        found.after = workingFileSize(repo.root() / *source.workingPath);
    return found;
}

FileSample fileSample(const GitRepository& repo, const std::string& path, const std::optional<std::string>& revision,
                      std::size_t bytes)
{
    if (!revision)
        return workingSample(repo.root() / path, bytes);
    const std::string commit = revisionArgument("cat-file", *revision);
    const GitOutput output =
        repo.runner().accepted({"cat-file", "blob", commit + ":" + path},
                               {.accepting = {0, 128}, .limit = OutputLimit{.lines = bytes, .bytes = bytes}});
    if (output.status == 0 || output.cut)
        return {FileSample::Kind::file, output.stdoutBytes.substr(0, bytes)};
    const FileSample::Kind kind =
        kindOf(repo.runner().bytes({"ls-tree", "-z", "--full-tree", commit, "--", literalPathspec(path)}));
    // A file that cannot be read is not an empty one.
    if (kind == FileSample::Kind::file)
        throw GitError("cat-file", output.status, output.errorText());
    return {kind, {}};
}

} // namespace gitkit
