// SPDX-License-Identifier: GPL-3.0-or-later
#include "GitKit/repository/Ignoring.h"

#include "GitKit/FileReplacement.h"
#include "GitKit/Text.h"
#include "GitKit/parsers/Fields.h"
#include "GitKit/repository/FileCopies.h"
#include "GitKit/repository/Folders.h"
#include "GitKit/repository/GitRepository.h"
#include "GitKit/repository/PathCommand.h"
#include "GitKit/runner/GitError.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <set>

namespace gitkit {

namespace {

namespace fs = std::filesystem;

constexpr std::uintmax_t longestList = 16 << 20;

bool isSayable(std::string_view path) { return path.find('\n') == std::string_view::npos && !path.ends_with('\r'); }

std::string escapedForIgnore(std::string_view path)
{
    std::string escaped;
    for (const char byte : path) {
        if (byte == '\\' || byte == '*' || byte == '?' || byte == '[')
            escaped += '\\';
        escaped += byte;
    }
    // Git leaves out blanks at the end of a line.
    const std::size_t end = escaped.find_last_not_of(' ') + 1;
    const std::size_t blanks = escaped.size() - end;
    escaped.resize(end);
    for (std::size_t blank = 0; blank < blanks; ++blank)
        escaped += "\\ ";
    return escaped;
}

/// Returns the patterns of a list that no exception follows.
std::set<std::string_view> patternsInForce(std::string_view list)
{
    std::set<std::string_view> found;
    Pieces lines(list, '\n');
    while (auto line = lines.next()) {
        if (line->ends_with('\r'))
            line->remove_suffix(1);
        if (line->starts_with('!'))
            found.clear();
        else
            found.insert(*line);
    }
    return found;
}

[[noreturn]] void refuseList(const fs::path& list, const std::string& why)
{
    throw GitError("ignore", 1, inQuotes(list.filename().native()) + why + " Nothing was done.");
}

std::string readList(const fs::path& list)
{
    const FileKind kind = kindAt(list);
    if (kind == FileKind::none)
        return {};
    if (kind == FileKind::link)
        refuseList(list, " is a symbolic link, which Git does not follow.");
    const auto bytes = kind == FileKind::regular ? bytesOf(list, longestList) : std::nullopt;
    if (!bytes)
        refuseList(list, " cannot be read as a list.");
    return *bytes;
}

void writeList(const fs::path& list, const std::string& bytes)
{
    std::error_code failure;
    fs::create_directories(list.parent_path(), failure); // "info" may be missing
    if (!replaceFile(list, bytes))
        refuseList(list, std::string(" could not be written: ") + std::strerror(errno) + '.');
}

/// Returns the files among these that the index has.
std::set<std::string> trackedAmong(const GitRepository& repo, const std::vector<std::string>& files)
{
    std::set<std::string> tracked;
    constexpr std::size_t mostAtOnce = 500;
    for (std::size_t begin = 0; begin < files.size(); begin += mostAtOnce) {
        std::vector<std::string> command{"ls-files", "-z", "--"};
        const std::size_t end = std::min(begin + mostAtOnce, files.size());
        for (std::size_t index = begin; index < end; ++index)
            command.push_back(literalPathspec(files[index]));
        for (std::string& path : splitNul(repo.runner().bytes(command)))
            tracked.insert(std::move(path));
    }
    return tracked;
}

std::vector<NotIgnored> notIgnoredAmong(const GitRepository& repo, const std::vector<std::string>& files)
{
    std::string input;
    for (const std::string& file : files)
        input.append(file).push_back('\0');
    const std::string answers =
        repo.runner().bytes({"check-ignore", "--verbose", "--non-matching", "-z", "--no-index", "--stdin"},
                            {.input = std::move(input), .accepting = {0, 1}});
    std::vector<NotIgnored> found;
    NulFields fields(answers);
    while (const auto rule = fields.take<4>()) {
        const auto& [source, line, pattern, path] = *rule;
        if (pattern.empty() || pattern.starts_with('!'))
            found.push_back({std::string(path), std::string(source), std::string(line), std::string(pattern)});
    }
    return found;
}

} // namespace

std::optional<std::string> ignorePatternOf(std::string_view path)
{
    return isSayable(path) ? std::optional('/' + escapedForIgnore(path)) : std::nullopt;
}

std::optional<std::string> ignorePatternOfEnding(std::string_view path)
{
    const std::string_view name = path.substr(path.rfind('/') + 1);
    const std::size_t dot = name.rfind('.');
    if (dot == std::string_view::npos || dot == 0 || dot + 1 == name.size() || !isSayable(name.substr(dot)))
        return std::nullopt;
    return '*' + escapedForIgnore(name.substr(dot));
}

std::string withPatterns(std::string list, const std::vector<std::string>& patterns)
{
    const std::size_t firstEnd = list.find('\n');
    const bool hasReturns = firstEnd != std::string::npos && firstEnd > 0 && list[firstEnd - 1] == '\r';
    const std::string_view lineEnd = hasReturns ? "\r\n" : "\n";
    const std::string before = list;
    const std::set<std::string_view> known = patternsInForce(before);
    for (const std::string& pattern : patterns) {
        if (known.contains(pattern))
            continue;
        if (!list.empty() && !list.ends_with('\n'))
            list += lineEnd;
        list.append(pattern).append(lineEnd);
    }
    return list;
}

fs::path ignoreList(const GitRepository& repo, IgnorePlace place)
{
    return place == IgnorePlace::repository ? repo.root() / ".gitignore"
                                            : gitDirectories(repo).common / "info" / "exclude";
}

std::vector<NotIgnored> ignore(const GitRepository& repo, const IgnoreRequest& request)
{
    const fs::path list = ignoreList(repo, request.place);
    const std::string before = readList(list);
    const std::string after = withPatterns(before, request.patterns);
    const std::set<std::string> tracked = trackedAmong(repo, request.files);
    const bool isNew = kindAt(list) == FileKind::none;
    if (after != before)
        writeList(list, after);
    if (request.stopsTracking && !tracked.empty()) {
        try {
            runOnPaths(repo.runner(), {"rm", "--cached", "--force", "--quiet"}, {tracked.begin(), tracked.end()});
        } catch (const std::exception&) { // the list alone is not what was asked for
            if (isNew)
                fs::remove(list);
            else
                replaceFile(list, before);
            throw;
        }
    }
    std::vector<std::string> expected = request.files;
    if (!request.stopsTracking)
        std::erase_if(expected, [&tracked](const std::string& file) { return tracked.contains(file); });
    return expected.empty() ? std::vector<NotIgnored>() : notIgnoredAmong(repo, expected);
}

} // namespace gitkit
