// SPDX-License-Identifier: GPL-3.0-or-later
#include "GitKit/parsers/LogParser.h"

#include "GitKit/Text.h"
#include "GitKit/parsers/Fields.h"
#include "GitKit/parsers/NameStatusParser.h"

#include <algorithm>
#include <utility>

namespace gitkit {

namespace {

std::vector<std::string> parents(std::string_view field)
{
    std::vector<std::string> hashes;
    if (field.empty())
        return hashes;
    hashes.reserve(1 + static_cast<std::size_t>(std::ranges::count(field, ' ')));
    Pieces pieces(field, ' ');
    while (const auto hash = pieces.next())
        hashes.emplace_back(*hash);
    return hashes;
}

bool dropPrefix(std::string_view& text, std::string_view prefix)
{
    if (!text.starts_with(prefix))
        return false;
    text.remove_prefix(prefix.size());
    return true;
}

std::optional<RefLabel> decoration(std::string_view piece)
{
    piece = trimmed(piece, " ");
    if (piece == "HEAD")
        return RefLabel{RefLabel::Kind::head, "HEAD", true};
    const bool isHead = dropPrefix(piece, "HEAD -> ");
    dropPrefix(piece, "tag: ");
    if (dropPrefix(piece, "refs/heads/"))
        return RefLabel{RefLabel::Kind::localBranch, std::string(piece), isHead};
    if (dropPrefix(piece, "refs/remotes/") && !piece.ends_with("/HEAD"))
        return RefLabel{RefLabel::Kind::remoteBranch, std::string(piece), false};
    if (dropPrefix(piece, "refs/tags/"))
        return RefLabel{RefLabel::Kind::tag, std::string(piece), false};
    return std::nullopt;
}

constexpr std::size_t listedFields = 7;

using ListedFields = std::array<std::string_view, listedFields>;

/// Reads all fields but the sixth.
Commit commitOf(const ListedFields& fields)
{
    const auto& [hash, parentHashes, name, email, date, sixth, subject] = fields;
    Commit commit;
    commit.hash = hash;
    commit.parents = parents(parentHashes);
    commit.authorName = shownLine(name);
    commit.authorEmail = shownLine(email);
    commit.date = readDate(date);
    commit.subject = shownLine(subject);
    return commit;
}

std::optional<Commit> takeCommit(NulFields& rest)
{
    const auto fields = rest.take<listedFields>();
    // A line feed begins the files of a commit, never a hash.
    if (!fields || fields->front().empty() || fields->front().find('\n') != std::string_view::npos)
        return std::nullopt;
    Commit commit = commitOf(*fields);
    if (const std::string_view labels = (*fields)[5]; !labels.empty())
        commit.refs = LogParser::decorations(labels);
    return commit;
}

/// Whether this is the status of a file, such as "M" or "R087", and not the hash that begins the next record. Git puts a
/// line feed before the first one.
bool isStatus(std::string_view field)
{
    field = trimmed(field, "\n");
    const auto isDigit = [](char character) { return character >= '0' && character <= '9'; };
    return !field.empty() && field.size() <= 4 && field.front() >= 'A' && field.front() <= 'Z' &&
           std::ranges::all_of(field.substr(1), isDigit);
}

/// Takes the files of a record and returns the first of them.
std::optional<CommitFile> takeFiles(NulFields& rest)
{
    std::optional<CommitFile> first;
    while (!rest.atEnd() && isStatus(rest.peek())) {
        CommitFile file;
        file.status = trimmed(*rest.next(), "\n").front();
        if (file.status == 'R' || file.status == 'C')
            file.originalPath = rest.next();
        file.path = rest.next().value_or(std::string_view());
        if (!first && !file.path.empty())
            first = std::move(file);
    }
    return first;
}

/// What stands next in output that may not be complete.
enum class Next { file, somethingElse, unknown };

Next nextIn(std::string_view output)
{
    const std::size_t end = output.find('\0');
    if (end == std::string_view::npos)
        return Next::unknown;
    return isStatus(output.substr(0, end)) ? Next::file : Next::somethingElse;
}

/// Takes one file that stands next. Returns nullopt, and takes nothing, when it is not complete.
std::optional<CommitFile> takeWholeFile(std::string_view& output)
{
    const char status = trimmed(output.substr(0, output.find('\0')), "\n").front();
    const bool isRenamed = status == 'R' || status == 'C';
    std::size_t end = 0;
    for (int field = isRenamed ? 3 : 2; field > 0; --field) {
        end = output.find('\0', end);
        if (end++ == std::string_view::npos)
            return std::nullopt;
    }
    NulFields fields(output.substr(0, end));
    fields.next();
    CommitFile file{.status = status, .path = {}, .originalPath = {}, .source = {}};
    if (isRenamed)
        file.originalPath = fields.next();
    file.path = fields.next().value_or(std::string_view());
    output.remove_prefix(end);
    return file;
}

constexpr char recordBegin = '\x1e';

/// Returns where the next record of `linesFormat` begins, or npos. Texts may have its first byte, but a hash and a NUL
/// follow it only there.
std::size_t endOfRecord(std::string_view output)
{
    for (std::size_t at = output.find(recordBegin, 1); at != std::string_view::npos;
         at = output.find(recordBegin, at + 1))
    {
        const bool isAfterEnd = output[at - 1] == '\n' || output[at - 1] == '\0';
        const std::string_view hash = output.substr(at + 1, output.find('\0', at) - at - 1);
        if (isAfterEnd && hash.size() >= 40 && hash.find_first_not_of("0123456789abcdef") == std::string_view::npos)
            return at;
    }
    return std::string_view::npos;
}

/// Returns the file that a patch of `git log -L` is of, whose names stand in it as they are. Without one it is `path`.
CommitFile fileOfPatch(std::string_view patch, std::string_view path)
{
    const auto nameAfter = [&](std::string_view sign, std::string_view prefix) -> std::string_view {
        const std::size_t begin = patch.find(sign);
        if (begin == std::string_view::npos)
            return {};
        const std::string_view name =
            patch.substr(begin + sign.size(), patch.find('\n', begin + 1) - begin - sign.size());
        return name.starts_with(prefix) ? name.substr(prefix.size()) : std::string_view();
    };
    const std::string_view before = nameAfter("\n--- ", "a/");
    const std::string_view after = nameAfter("\n+++ ", "b/");
    CommitFile file{.status = 'M', .path = std::string(after.empty() ? path : after), .originalPath = {}, .source = {}};
    if (!after.empty() && before.empty())
        file.status = 'A';
    if (!after.empty() && !before.empty() && before != after) {
        file.status = 'R';
        file.originalPath = before;
    }
    return file;
}

} // namespace

std::vector<Commit> LogParser::parse(std::string_view output)
{
    std::vector<Commit> commits;
    // Without this, growing would move a hundred thousand commits several times.
    commits.reserve(static_cast<std::size_t>(std::ranges::count(output, '\0')) / listedFields + 1);
    for (NulFields rest(output); !rest.atEnd();) {
        if (auto commit = takeCommit(rest))
            commits.push_back(std::move(*commit));
    }
    return commits;
}

std::optional<LogParser::Streamed> LogParser::take(std::string_view& output)
{
    ListedFields fields;
    std::size_t begin = 0;
    for (std::string_view& field : fields) {
        const std::size_t end = output.find('\0', begin);
        if (end == std::string_view::npos)
            return std::nullopt;
        field = output.substr(begin, end - begin);
        begin = end + 1;
    }
    output.remove_prefix(begin);
    return Streamed{commitOf(fields), readDate(fields[5])};
}

std::optional<FileRevision> LogParser::takeRevision(std::string_view& output, std::string_view path, bool isAll)
{
    while (nextIn(output) == Next::file && takeWholeFile(output)) {
    }
    std::string_view rest = output;
    std::optional<Streamed> commit = take(rest);
    if (!commit)
        return std::nullopt;
    const Next next = nextIn(rest);
    std::optional<CommitFile> file;
    if (next == Next::file)
        file = takeWholeFile(rest);
    if (!file && next != Next::somethingElse && !isAll)
        return std::nullopt;
    if (!file)
        file = CommitFile{.path = std::string(path), .originalPath = {}, .source = {}};
    // A line feed begins the files of a commit, never a hash.
    if (commit->commit.hash.find('\n') != std::string::npos)
        commit->commit.hash.clear();
    output = rest;
    return FileRevision{std::move(commit->commit), *std::move(file)};
}

std::optional<FileRevision> LogParser::takeLinesRevision(std::string_view& output, std::string_view path, bool isAll)
{
    output.remove_prefix(std::min(output.find(recordBegin), output.size()));
    if (output.empty())
        return std::nullopt;
    const std::size_t end = endOfRecord(output);
    if (end == std::string_view::npos && !isAll)
        return std::nullopt;
    std::string record(output.substr(1, end == std::string_view::npos ? end : end - 1));
    output.remove_prefix(std::min(end, output.size()));
    if (std::ranges::count(record, '\0') < 7) // without a patch
        record += '\0';
    std::string_view left = record;
    std::optional<Streamed> commit = take(left);
    if (!commit)
        return FileRevision{};
    return FileRevision{std::move(commit->commit), fileOfPatch(left, path)};
}

std::vector<FileRevision> LogParser::parseFileLog(std::string_view output, std::string_view path)
{
    std::vector<FileRevision> revisions;
    for (NulFields rest(output); !rest.atEnd();) {
        auto commit = takeCommit(rest);
        CommitFile file =
            takeFiles(rest).value_or(CommitFile{.path = std::string(path), .originalPath = {}, .source = {}});
        if (commit)
            revisions.push_back({std::move(*commit), std::move(file)});
    }
    return revisions;
}

std::optional<CommitDetail> LogParser::parseDetail(std::string_view output)
{
    NulFields rest(output);
    const auto fields = rest.take<8>();
    if (!fields)
        return std::nullopt;
    const auto& [hash, parentHashes, author, email, authorDate, committer, commitDate, message] = *fields;
    CommitDetail detail;
    detail.hash = hash;
    detail.parents = parents(parentHashes);
    detail.authorName = shownLine(author);
    detail.authorEmail = shownLine(email);
    detail.authorDate = readDate(authorDate);
    detail.committerName = shownLine(committer);
    detail.commitDate = readDate(commitDate);
    detail.message = repairedUtf8(std::string(trimmed(message, " \t\r\n\v\f")));
    detail.files = NameStatusParser::parse(rest.rest());
    return detail;
}

std::vector<RefLabel> LogParser::decorations(std::string_view text)
{
    constexpr std::string_view separator = ", ";
    std::vector<RefLabel> labels;
    while (!text.empty()) {
        const std::size_t end = text.find(separator);
        if (auto label = decoration(text.substr(0, end)))
            labels.push_back(std::move(*label));
        text.remove_prefix(end == std::string_view::npos ? text.size() : end + separator.size());
    }
    return labels;
}

} // namespace gitkit
