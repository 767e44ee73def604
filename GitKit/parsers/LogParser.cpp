// SPDX-License-Identifier: GPL-3.0-or-later
#include "GitKit/parsers/LogParser.h"

#include "GitKit/Text.h"
#include "GitKit/parsers/Fields.h"
#include "GitKit/parsers/NameStatusParser.h"

#include <algorithm>
#include <utility>

namespace gitkit {

namespace {

std::string shown(std::string_view bytes)
{
    return isUtf8(bytes) ? std::string(bytes) : repairedUtf8(std::string(bytes));
}

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

std::optional<Commit> parseCommit(std::string_view record)
{
    const auto fields = splitFields<7>(record, fieldSeparator);
    if (!fields || fields->front().empty())
        return std::nullopt;
    const auto& [hash, parentHashes, name, email, date, labels, subject] = *fields;
    Commit commit;
    commit.hash = hash;
    commit.parents = parents(parentHashes);
    commit.authorName = shown(name);
    commit.authorEmail = shown(email);
    commit.date = readDate(date);
    commit.subject = shown(subject.substr(0, subject.find(fieldSeparator)));
    if (!labels.empty())
        commit.refs = LogParser::decorations(labels);
    return commit;
}

/// Returns the position of the first record separator that is followed by a line feed or by the end of the output.
std::size_t recordEnd(std::string_view output)
{
    std::size_t end = output.find(recordSeparator);
    while (end != std::string_view::npos && end + 1 < output.size() && output[end + 1] != '\n')
        end = output.find(recordSeparator, end + 1);
    return end;
}

/// Returns an upper bound of the number of records.
std::size_t separatorCount(std::string_view output)
{
    std::size_t count = 0;
    for (std::size_t at = output.find(recordSeparator); at != std::string_view::npos; ++count)
        at = output.find(recordSeparator, at + 1);
    return count;
}

/// Returns the position of the first record separator that follows a line feed.
std::size_t nextRecordStart(std::string_view output)
{
    constexpr std::string_view boundary("\n\x1e");
    const std::size_t found = output.find(boundary);
    return found == std::string_view::npos ? output.size() : found + 1;
}

std::optional<FileRevision> parseRevision(std::string_view record, std::string_view path)
{
    Pieces lines(record, '\n');
    const auto first = lines.next();
    if (!first)
        return std::nullopt;
    auto commit = parseCommit(*first);
    if (!commit)
        return std::nullopt;
    std::optional<CommitFile> file;
    if (const auto line = lines.next())
        file = NameStatusParser::parseLine(*line);
    if (!file) {
        file.emplace();
        file->path = path;
    }
    return FileRevision{std::move(*commit), std::move(*file)};
}

} // namespace

std::vector<Commit> LogParser::parse(std::string_view output)
{
    std::vector<Commit> commits;
    // Without this, growing would move a hundred thousand commits several times.
    commits.reserve(separatorCount(output));
    while (!output.empty()) {
        const std::size_t end = std::min(recordEnd(output), output.size());
        if (auto commit = parseCommit(trimmed(output.substr(0, end), "\n")))
            commits.push_back(std::move(*commit));
        output.remove_prefix(std::min(end + 1, output.size()));
    }
    return commits;
}

std::vector<FileRevision> LogParser::parseFileLog(std::string_view output, std::string_view path)
{
    std::vector<FileRevision> revisions;
    while (!output.empty()) {
        const std::size_t end = nextRecordStart(output);
        std::string_view record = output.substr(0, end);
        if (record.starts_with(recordSeparator))
            record.remove_prefix(1);
        if (auto revision = parseRevision(record, path))
            revisions.push_back(std::move(*revision));
        output.remove_prefix(end);
    }
    return revisions;
}

std::optional<CommitDetail> LogParser::parseDetail(std::string_view output)
{
    const auto fields = splitFields<8>(output, fieldSeparator);
    if (!fields)
        return std::nullopt;
    const auto& [hash, parentHashes, author, email, authorDate, committer, commitDate, message] = *fields;
    CommitDetail detail;
    detail.hash = hash;
    detail.parents = parents(parentHashes);
    detail.authorName = shown(author);
    detail.authorEmail = shown(email);
    detail.authorDate = readDate(authorDate);
    detail.committerName = shown(committer);
    detail.commitDate = readDate(commitDate);
    detail.message = shown(trimmed(message, " \t\r\n\v\f"));
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
