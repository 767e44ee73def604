// SPDX-License-Identifier: GPL-3.0-or-later
#include "GitKit/repository/Glance.h"

#include "GitKit/parsers/Fields.h"
#include "GitKit/repository/Folders.h"
#include "GitKit/repository/GitRepository.h"

#include <limits>
#include <string_view>

namespace gitkit {

namespace {

/// Of more changes than fit into this many bytes the number does not matter.
constexpr OutputLimit mostRead{.lines = std::numeric_limits<std::size_t>::max(), .bytes = 256 * 1024};

void readHeader(std::string_view line, RepositoryGlance& glance)
{
    constexpr std::string_view head = "# branch.head ";
    constexpr std::string_view ahead = "# branch.ab +";
    if (line.starts_with(head) && line.substr(head.size()) != "(detached)")
        glance.branch = line.substr(head.size());
    if (!line.starts_with(ahead))
        return;
    const std::string_view numbers = line.substr(ahead.size());
    const std::size_t gap = numbers.find(" -");
    if (gap == std::string_view::npos)
        return;
    glance.counts = {.ahead = readNumber(numbers.substr(0, gap)), .behind = readNumber(numbers.substr(gap + 2))};
}

} // namespace

RepositoryGlance glance(const GitRepository& repo)
{
    if (const RepoStatus head = isBare(repo.root()) ? repo.status() : RepoStatus(); head.isBare)
        return {.branch = head.branch, .isBare = true};
    RepositoryGlance glance;
    const GitOutput output = repo.runner().accepted(
        {"status", "--porcelain=v2", "--branch", "-z", "--no-renames", "--untracked-files=normal"},
        {.limit = mostRead});
    glance.hasMore = output.cut;
    Pieces records(output.stdoutBytes, '\0');
    while (const auto record = records.next()) {
        if (record->starts_with('#'))
            readHeader(*record, glance);
        else if (!record->empty())
            ++glance.changes;
    }
    return glance;
}

} // namespace gitkit
