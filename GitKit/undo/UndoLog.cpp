// SPDX-License-Identifier: GPL-3.0-or-later
#include "GitKit/undo/UndoLog.h"

#include "GitKit/parsers/Fields.h"
#include "GitKit/repository/GitRepository.h"
#include "GitKit/undo/HelperRuns.h"

#include <charconv>
#include <chrono>

namespace gitkit {

void appendUndoEntry(const GitRepository& repo, const std::string& commit, const std::string& text)
{
    repo.runner().accepted({"update-ref", "--create-reflog", "-m", text, undoRef, commit}, helperOptions());
}

std::vector<UndoEntry> undoEntries(const GitRepository& repo, std::size_t most)
{
    // Without a single entry git would fail.
    if (repo.runner().output({"rev-parse", "--verify", "--quiet", undoRef}, helperOptions()).status != 0)
        return {};
    // The two texts may hold any byte but the zero byte. The first is one line, and the second begins with another.
    const std::string log =
        repo.runner().bytes({"log", "-g", "-z", "--no-decorate", "--max-count=" + std::to_string(most),
                             "--format=%H%x1f%ct%x1f%gs%n%B", undoRef, "--"},
                            helperOptions());
    std::vector<UndoEntry> entries;
    Pieces records(log, '\0');
    while (const auto record = records.next()) {
        const std::size_t line = record->find('\n');
        const auto fields = splitFields<3>(record->substr(0, line), '\x1f');
        if (!fields || line == std::string_view::npos)
            continue;
        std::int64_t seconds = 0;
        const std::string_view date = (*fields)[1];
        std::from_chars(date.data(), date.data() + date.size(), seconds);
        entries.push_back({std::string((*fields)[0]), Date(std::chrono::seconds(seconds)), std::string((*fields)[2]),
                           std::string(record->substr(line + 1))});
    }
    return entries;
}

} // namespace gitkit
