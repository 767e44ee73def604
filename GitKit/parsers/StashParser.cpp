// SPDX-License-Identifier: GPL-3.0-or-later
#include "GitKit/parsers/StashParser.h"

#include "GitKit/Text.h"
#include "GitKit/parsers/Fields.h"

namespace gitkit {

std::vector<Stash> StashParser::parse(std::string_view output)
{
    std::vector<Stash> stashes;
    Pieces lines(output, '\n');
    while (const auto line = lines.next()) {
        const auto fields = splitFields<4>(*line, fieldSeparator);
        if (!fields)
            continue;
        const auto& [ref, hash, date, message] = *fields;
        const std::string_view shown = message.substr(0, message.find(fieldSeparator));
        stashes.push_back({std::string(ref), std::string(hash), readDate(date), repairedUtf8(std::string(shown))});
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
