// SPDX-License-Identifier: GPL-3.0-or-later
#include "GitKit/repository/Stages.h"

#include <algorithm>

namespace gitkit {

std::map<std::string, Stages> parseStages(std::string_view listed)
{
    std::map<std::string, Stages> paths;
    while (!listed.empty()) {
        const std::string_view entry = listed.substr(0, listed.find('\0'));
        listed.remove_prefix(std::min(entry.size() + 1, listed.size()));
        const std::size_t tab = entry.find('\t');
        const std::size_t mode = entry.find(' ');
        if (tab == std::string_view::npos || mode == std::string_view::npos || tab < mode + 4)
            continue;
        const char number = entry[tab - 1];
        if (number < '1' || number > '3')
            continue;
        Stage stage{std::string(entry.substr(0, mode)), std::string(entry.substr(mode + 1, tab - mode - 3))};
        paths[std::string(entry.substr(tab + 1))][static_cast<std::size_t>(number - '0')] = std::move(stage);
    }
    return paths;
}

std::string absentHash(const Stages& stages)
{
    const auto present = std::ranges::find_if(stages, [](const auto& stage) { return stage.has_value(); });
    return std::string(present == stages.end() ? 40 : (*present)->hash.size(), '0');
}

std::string absentEntry(const Stages& stages, const std::string& path)
{
    return "0 " + absentHash(stages) + '\t' + path + '\0';
}

} // namespace gitkit
