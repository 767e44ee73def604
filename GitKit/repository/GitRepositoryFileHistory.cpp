// SPDX-License-Identifier: GPL-3.0-or-later
// One file through time: who wrote each line, and which commits touched it.
//
// Where the commands differ from the plain ones:
//   --no-textconv           a converter's output is not shown as the file
//   GIT_LITERAL_PATHSPECS   a path is its bytes, whatever wildcards it holds

#include "GitKit/parsers/BlameParser.h"
#include "GitKit/parsers/LogParser.h"
#include "GitKit/repository/GitRepository.h"
#include "GitKit/runner/GitError.h"

#include <fstream>
#include <sys/stat.h>

namespace gitkit {

namespace {

using Arguments = std::vector<std::string>;

const std::vector<std::pair<std::string, std::string>> literalPaths{{"GIT_LITERAL_PATHSPECS", "1"}};

/// A revision as an argument: nothing that git would take for an option.
std::string revisionArgument(const char* command, std::string revision)
{
    if (revision.starts_with('-'))
        throw GitError(command, 128, "“" + repairedUtf8(revision) + "” is not a revision.");
    return revision;
}

/// A commit that changes the file in no single way (a merge) is listed without a path. The path is what the commits
/// around it call the file.
void completePaths(std::vector<FileRevision>& revisions, const std::string& asked)
{
    std::string path = asked;
    for (FileRevision& revision : revisions) {
        CommitFile& file = revision.file;
        if (file.path == asked && file.status == 'M')
            file.path = path;
        path = file.originalPath.value_or(file.path);
    }
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
    std::string beginning(bytes, '\0');
    std::ifstream stream(path, std::ios::binary);
    stream.read(beginning.data(), static_cast<std::streamsize>(bytes));
    beginning.resize(static_cast<std::size_t>(stream.gcount()));
    return {Kind::file, std::move(beginning)};
}

/// What "mode type hash<tab>path" says of a path that holds no file.
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

FileSample GitRepository::fileSample(const std::string& path, const std::optional<std::string>& revision,
                                     std::size_t bytes) const
{
    if (!revision)
        return workingSample(root_ / path, bytes);
    const std::string commit = revisionArgument("cat-file", *revision);
    const GitOutput output =
        runner_.accepted({"cat-file", "blob", commit + ":" + path},
                         {.accepting = {0, 128}, .limit = OutputLimit{.lines = bytes, .bytes = bytes}});
    if (output.status == 0 || output.cut)
        return {FileSample::Kind::file, output.stdoutBytes.substr(0, bytes)};
    return {kindOf(runner_.bytes({"ls-tree", "-z", "--full-tree", commit, "--", path}, {.environment = literalPaths})),
            {}};
}

std::vector<FileRevision> GitRepository::fileLog(const std::string& path, const std::optional<std::string>& revision,
                                                 int limit) const
{
    Arguments arguments{"log", "--follow", "-M", "--name-status"};
    arguments.insert(arguments.end(), LogParser::decorationArguments.begin(), LogParser::decorationArguments.end());
    arguments.insert(arguments.end(), {"-n", std::to_string(limit), LogParser::fileFormat});
    if (revision)
        arguments.push_back(revisionArgument("log", *revision));
    arguments.insert(arguments.end(), {"--", path});
    auto revisions = LogParser::parseFileLog(runner_.bytes(arguments, {.environment = literalPaths}), path);
    completePaths(revisions, path);
    return revisions;
}

std::vector<BlameLine> GitRepository::blame(const std::string& path, const std::optional<std::string>& revision) const
{
    Arguments arguments{"blame", "--porcelain", "--no-textconv"};
    if (revision)
        arguments.push_back(revisionArgument("blame", *revision));
    arguments.insert(arguments.end(), {"--", path});
    return BlameParser::parse(runner_.bytes(arguments, {.environment = literalPaths}));
}

} // namespace gitkit
