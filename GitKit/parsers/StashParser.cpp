// SPDX-License-Identifier: GPL-3.0-or-later
#include "GitKit/parsers/StashParser.h"

#include "GitKit/Text.h"
#include "GitKit/parsers/Fields.h"

namespace gitkit {

std::vector<Stash> StashParser::parse(std::string_view output)
{
    std::vector<Stash> stashes;
    for (NulFields rest(output); !rest.atEnd();) {
        const auto fields = rest.take<4>();
        if (!fields)
            break;
        const auto& [ref, hash, date, message] = *fields;
        stashes.push_back({std::string(ref), std::string(hash), readDate(date), shownLine(message)});
    }
    return stashes;
}

std::vector<std::string> RemoteParser::parse(std::string_view output)
{
    std::vector<std::string> names;
    Pieces lines(output, '\n');
    while (const auto line = lines.next())
        names.emplace_back(*line);
    return names;
}

} // namespace gitkit
