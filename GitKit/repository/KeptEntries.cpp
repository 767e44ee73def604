// SPDX-License-Identifier: GPL-3.0-or-later
#include "GitKit/repository/KeptEntries.h"

#include "GitKit/Text.h"
#include "GitKit/repository/Blobs.h"
#include "GitKit/repository/GitRepository.h"
#include "GitKit/repository/PathCommand.h"

#include <algorithm>
#include <iterator>
#include <set>
#include <span>

namespace gitkit {

namespace {

constexpr std::size_t longestCommandLine = std::size_t{64} << 10;

/// Larger contents have no copy, and so many are read at once.
constexpr std::size_t largestStaged = std::size_t{4} << 20;
constexpr std::size_t mostAtOnce = 32;

/// An entry is "MODE HASH STAGE\tPATH".
std::string hashIn(const std::string& entry) { return entry.substr(7, entry.find(' ', 7) - 7); }

bool isTakenBlob(const KeptFile& file)
{
    return file.entriesBefore.size() == 1 && file.entriesBefore != file.entriesAfter &&
           !file.entriesBefore.front().starts_with("160000 ");
}

bool hasObjects(const GitRepository& repo, const std::vector<std::string>& entries)
{
    std::string names;
    for (const std::string& entry : entries)
        names += hashIn(entry) + '\n';
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

std::filesystem::path stagedCopy(const std::filesystem::path& folder, const KeptFile& file)
{
    return folder / (file.copy + ".staged");
}

void keepStaged(const GitRepository& repo, const std::filesystem::path& folder, const std::vector<KeptFile>& files)
{
    std::vector<const KeptFile*> taken;
    for (const KeptFile& file : files) {
        if (isTakenBlob(file))
            taken.push_back(&file);
    }
    std::error_code ignored;
    for (std::size_t begin = 0; begin < taken.size(); begin += mostAtOnce) {
        const std::span<const KeptFile*> some =
            std::span(taken).subspan(begin, std::min(mostAtOnce, taken.size() - begin));
        std::vector<std::string> hashes;
        for (const KeptFile* file : some)
            hashes.push_back(hashIn(file->entriesBefore.front()));
        const auto contents = blobs(repo, hashes, largestStaged);
        for (std::size_t index = 0; index < some.size(); ++index) {
            // Without this copy git has the content for some weeks.
            if (contents[index] && !writeNew(*contents[index], stagedCopy(folder, *some[index])))
                std::filesystem::remove(stagedCopy(folder, *some[index]), ignored);
        }
    }
}

bool restoreEntries(const GitRepository& repo, const std::filesystem::path& folder, const KeptFile& file,
                    const std::vector<std::string>& now)
{
    if (file.isIntended) {
        if (now.empty())
            runOnPaths(repo.runner(), {"add", "-N", "-f"}, {file.path});
        return true;
    }
    if (now == file.entriesBefore)
        return true;
    if (!hasObjects(repo, file.entriesBefore)) {
        const auto staged = bytesOf(stagedCopy(folder, file), largestStaged);
        if (!staged)
            return false;
        repo.runner().accepted({"hash-object", "-w", "--no-filters", "--stdin"}, {.input = staged});
    }
    const std::string& any = now.empty() ? file.entriesBefore.front() : now.front();
    const std::size_t digits = any.find(' ', 7) - 7;
    std::string input = "0 " + std::string(digits, '0') + '\t' + file.path + '\0';
    for (const std::string& entry : file.entriesBefore)
        input += entry + '\0';
    repo.runner().accepted({"update-index", "-z", "--index-info"}, {.input = std::move(input)});
    return true;
}

} // namespace gitkit
