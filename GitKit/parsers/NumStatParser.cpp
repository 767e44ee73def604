// SPDX-License-Identifier: GPL-3.0-or-later
#include "GitKit/parsers/NumStatParser.h"

#include "GitKit/parsers/Fields.h"

#include <utility>

namespace gitkit {

namespace {

/// Binary files have a dash in place of each number.
std::optional<int> readCount(std::string_view text)
{
    if (text == "-")
        return std::nullopt;
    return readNumber(text);
}

} // namespace

std::vector<ChangeCounts> NumStatParser::parse(std::string_view output)
{
    std::vector<ChangeCounts> counts;
    Pieces pieces(output, '\0');
    while (auto piece = pieces.next()) {
        while (piece->starts_with('\n'))
            piece->remove_prefix(1);
        const auto fields = splitFields<3>(*piece, '\t');
        if (!fields)
            continue;
        const auto& [added, removed, path] = *fields;
        ChangeCounts file{std::string(path), readCount(added), readCount(removed)};
        if (path.empty()) {
            pieces.next();
            const auto renamed = pieces.next();
            if (!renamed)
                break;
            file.path = *renamed;
        }
        counts.push_back(std::move(file));
    }
    return counts;
}

} // namespace gitkit
