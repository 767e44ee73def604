// SPDX-License-Identifier: GPL-3.0-or-later
#include "GitKit/repository/KeptEntries.h"

#include "GitKit/Text.h"
#include "GitKit/repository/GitRepository.h"
#include "GitKit/repository/PathCommand.h"

#include <algorithm>
#include <iterator>
#include <set>

namespace gitkit {

namespace {

constexpr std::size_t longestCommandLine = std::size_t{64} << 10;

bool hasObjects(const GitRepository& repo, const std::vector<std::string>& entries)
{
    std::string names;
    for (const std::string& entry : entries)
        names += entry.substr(7, entry.find(' ', 7) - 7) + '\n';
    return names.empty() ||
           repo.runner().bytes({"cat-file", "--batch-check"}, {.input = names}).find(" missing\n") == std::string::npos;
}

} // namespace

IndexEntries indexEntriesOf(const GitRepository& repo, const std::vector<KeptFile>& files)
{
    std::vector<std::string> arguments{"ls-files", "-s", "-z", "--"};
    std::set<std::string> wanted;
    std::size_t length = 0;
    for (const KeptFile& file : files) {
        wanted.insert(file.path);
        length += file.path.size() + 1;
    }
    if (length <= longestCommandLine)
        std::ranges::transform(wanted, std::back_inserter(arguments), literalPathspec);
    IndexEntries entries;
    for (std::string& entry : splitNul(repo.runner().bytes(arguments))) {
        // A path also names what is in the folder of that name.
        const std::string path = entry.substr(std::min(entry.find('\t'), entry.size() - 1) + 1);
        if (wanted.contains(path))
            entries[path].push_back(std::move(entry));
    }
    return entries;
}

bool restoreEntries(const GitRepository& repo, const KeptFile& file, const std::vector<std::string>& now)
{
    if (file.isIntended) {
        if (now.empty())
            runOnPaths(repo.runner(), {"add", "-N", "-f"}, {file.path});
        return true;
    }
    if (now == file.entriesBefore)
        return true;
    if (!hasObjects(repo, file.entriesBefore))
        return false;
    const std::string& any = now.empty() ? file.entriesBefore.front() : now.front();
    const std::size_t digits = any.find(' ', 7) - 7;
    std::string input = "0 " + std::string(digits, '0') + '\t' + file.path + '\0';
    for (const std::string& entry : file.entriesBefore)
        input += entry + '\0';
    repo.runner().accepted({"update-index", "-z", "--index-info"}, {.input = std::move(input)});
    return true;
}

} // namespace gitkit
