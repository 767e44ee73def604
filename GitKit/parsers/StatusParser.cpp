// SPDX-License-Identifier: GPL-3.0-or-later
#include "GitKit/parsers/StatusParser.h"

#include "GitKit/parsers/DisplayOrder.h"
#include "GitKit/parsers/Fields.h"

#include <optional>
#include <utility>

namespace gitkit {

namespace {

void parseHeader(std::string_view line, RepoStatus& status)
{
    const auto fields = splitFields<3>(line, ' ');
    if (!fields)
        return;
    const auto& [mark, key, value] = *fields;
    if (key == "branch.oid" && value != "(initial)")
        status.oid = value;
    else if (key == "branch.head" && value != "(detached)")
        status.branch = value;
    else if (key == "branch.upstream")
        status.upstream = value;
}

/// Reads an entry of `Count` fields: the letters are the second and the path is the last.
template <std::size_t Count>
std::optional<FileChange> parseEntry(std::string_view record)
{
    const auto fields = splitFields<Count>(record, ' ');
    // An empty path could mean everything when it is given back to git.
    if (!fields || fields->back().empty())
        return std::nullopt;
    const std::string_view letters = (*fields)[1];
    FileChange change;
    change.path = fields->back();
    change.index = letters.empty() ? '.' : letters[0];
    change.worktree = letters.size() < 2 ? '.' : letters[1];
    change.isSubmodule = (*fields)[2].starts_with('S');
    change.isDirtyInside = (*fields)[2].starts_with("S.") && change.worktree == 'M';
    return change;
}

std::optional<FileChange> parseRecord(std::string_view record, Pieces& following)
{
    const std::string_view type = record.substr(0, 2);
    if (type == "1 ")
        return parseEntry<9>(record);
    if (type == "2 ") {
        auto change = parseEntry<10>(record);
        if (change)
            change->originalPath = following.next();
        return change;
    }
    if (type == "u ") {
        auto change = parseEntry<11>(record);
        if (change)
            change->isConflicted = true;
        return change;
    }
    if (type == "? " && record.size() > type.size())
        return FileChange{.path = std::string(record.substr(2)), .originalPath = {}, .index = '?', .worktree = '?'};
    return std::nullopt;
}

} // namespace

RepoStatus StatusParser::parse(std::string_view output)
{
    RepoStatus status;
    std::vector<FileChange> files;
    Pieces records(output, '\0');
    while (const auto record = records.next()) {
        if (record->starts_with("# "))
            parseHeader(*record, status);
        else if (auto change = parseRecord(*record, records))
            files.push_back(std::move(*change));
    }
    sortForDisplay(files);
    status.files = std::move(files);
    return status;
}

} // namespace gitkit
