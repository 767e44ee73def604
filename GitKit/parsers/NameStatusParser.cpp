// SPDX-License-Identifier: GPL-3.0-or-later
#include "GitKit/parsers/NameStatusParser.h"

#include "GitKit/parsers/Fields.h"

#include <utility>

namespace gitkit {

namespace {

bool takesTwoPaths(char status) { return status == 'R' || status == 'C'; }

/// Used only around a status, because a path itself may begin or end with a line feed.
std::string_view withoutLineFeeds(std::string_view text)
{
    while (text.starts_with('\n'))
        text.remove_prefix(1);
    while (text.ends_with('\n'))
        text.remove_suffix(1);
    return text;
}

} // namespace

std::vector<CommitFile> NameStatusParser::parse(std::string_view output)
{
    std::vector<CommitFile> files;
    Pieces pieces(output, '\0');
    while (const auto piece = pieces.next()) {
        const std::string_view status = withoutLineFeeds(*piece);
        if (status.empty())
            continue;
        CommitFile file;
        file.status = status.front();
        if (takesTwoPaths(file.status))
            file.originalPath = pieces.next();
        const auto path = pieces.next();
        if (!path)
            break;
        file.path = *path;
        files.push_back(std::move(file));
    }
    return files;
}

} // namespace gitkit
