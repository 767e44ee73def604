// SPDX-License-Identifier: GPL-3.0-or-later
#include "GitKit/repository/IndexEntries.h"

#include "GitKit/Text.h"
#include "GitKit/repository/PathCommand.h"

namespace gitkit {

std::vector<IndexEntry> parseIndexEntries(std::string_view listed)
{
    std::vector<IndexEntry> entries;
    // "mode hash stage<tab>path"
    for (const std::string& entry : splitNul(listed)) {
        const std::size_t mode = entry.find(' ');
        const std::size_t hash = entry.find(' ', mode == std::string::npos ? mode : mode + 1);
        const std::size_t tab = entry.find('\t');
        if (hash == std::string::npos || tab == std::string::npos || tab < hash)
            continue;
        entries.push_back({entry.substr(0, mode), entry.substr(mode + 1, hash - mode - 1), entry.substr(tab + 1)});
    }
    return entries;
}

EntriesAtPath indexEntries(const GitRunner& runner, const std::string& path, const RunOptions& options)
{
    EntriesAtPath found;
    for (IndexEntry& entry :
         parseIndexEntries(runner.bytes({"ls-files", "-s", "-z", "--", literalPathspec(path)}, options)))
        (entry.path == path ? found.own : found.inside).push_back(std::move(entry));
    return found;
}

} // namespace gitkit
